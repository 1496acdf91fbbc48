#pragma once
// QR codes as PNG files: decoding (zbar) for the invitation scan, and encoding
// (libqrencode) for redemption codes. Bad or unreadable files give nullopt/false.
#include <filesystem>
#include <optional>
#include <string>

#include "platform/qr_generator.h"

namespace qmv {

// The text of the first QR code found in the PNG at `path`, or nullopt.
std::optional<std::string> decodeQrFromPng(const std::filesystem::path& path);

// Writes `code` as a black-on-white PNG, `scale` (1..64) pixels per module with the quiet
// zone around it.
bool writeQrPng(const QrMatrix& code, const std::filesystem::path& path, int scale = 4);
// Encodes `text` (see QrencodeGenerator) and writes it as above.
bool writeQrPng(const std::string& text, const std::filesystem::path& path, int scale = 4);

}  // namespace qmv
