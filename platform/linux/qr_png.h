#pragma once
// QR codes as PNG files: decoding (zbar) for the invitation scan, and encoding
// (libqrencode) for redemption codes. Bad or unreadable files give nullopt/false.
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

#include "platform/qr_generator.h"

namespace qmv {

// What is read of a picture at most: a small file can declare a huge canvas, and its
// decoded pixels (not its bytes) are what would fill the memory.
inline constexpr std::uintmax_t kMaxQrImageBytes = std::uintmax_t{16} << 20;
inline constexpr std::uint64_t kMaxQrImagePixels = std::uint64_t{4096} * 4096;

struct QrImageScan {
  std::optional<std::string> text;  // the first QR code's text, when one was found
  // Why the file could not be read as a picture at all (missing, not a regular file,
  // larger than the limits above, not a PNG), naming it; "" when it was read.
  std::string unreadable;
};

// Reads the PNG at `path` (checking its size and declared dimensions before decoding)
// and scans it for a QR code.
QrImageScan scanQrImage(const std::filesystem::path& path);

// QrImageScan::unreadable without decoding the picture: a cheap look before a scan.
std::string qrImageProblem(const std::filesystem::path& path);

// The text of the first QR code found in the PNG at `path`, or nullopt.
std::optional<std::string> decodeQrFromPng(const std::filesystem::path& path);

// Writes `code` as a black-on-white PNG, `scale` (1..64) pixels per module with the quiet
// zone around it.
bool writeQrPng(const QrMatrix& code, const std::filesystem::path& path, int scale = 4);
// Encodes `text` (see QrencodeGenerator) and writes it as above.
bool writeQrPng(const std::string& text, const std::filesystem::path& path, int scale = 4);

}  // namespace qmv
