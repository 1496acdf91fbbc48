#pragma once
// QR codes as PNG files: decoding (zbar) for the invitation scan, and encoding
// (libqrencode) for redemption codes. Bad or unreadable files give nullopt/false.
#include <filesystem>
#include <optional>
#include <string>

namespace qmv {

// The text of the first QR code found in the PNG at `path`, or nullopt.
std::optional<std::string> decodeQrFromPng(const std::filesystem::path& path);

// Writes `text` as a black-on-white QR code PNG, `scale` pixels per module with a quiet zone.
bool writeQrPng(const std::string& text, const std::filesystem::path& path, int scale = 4);

}  // namespace qmv
