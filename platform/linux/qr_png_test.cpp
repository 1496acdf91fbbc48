#include "platform/linux/qr_png.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <cstdint>
#include <fstream>

#include "platform/linux/image_file_camera.h"

namespace qmv {
namespace {

TEST(QrPngTest, RoundTripsTextAndRefusesBadFiles) {
  const auto dir = std::filesystem::temp_directory_path() / ("qmv_qr_" + std::to_string(::getpid()));
  std::filesystem::create_directories(dir);
  const std::string text = "https://example.test/static/register.html?INVITEID=42&from=分享";
  ASSERT_TRUE(writeQrPng(text, dir / "code.png", 3));
  EXPECT_EQ(decodeQrFromPng(dir / "code.png"), text);

  EXPECT_FALSE(decodeQrFromPng(dir / "missing.png"));
  std::ofstream(dir / "garbage.png") << "\x89PNG\r\n\x1a\n not really a png";
  EXPECT_FALSE(decodeQrFromPng(dir / "garbage.png"));
  // A truncated PNG is refused rather than read past its end.
  ASSERT_TRUE(writeQrPng("x", dir / "tiny.png", 1));
  std::filesystem::resize_file(dir / "tiny.png", 40);
  EXPECT_FALSE(decodeQrFromPng(dir / "tiny.png"));

  ImageFileCamera camera(dir / "code.png");
  EXPECT_TRUE(camera.isAvailable());
  std::optional<std::string> scanned;
  camera.scanQrCode([&](std::optional<std::string> s) { scanned = std::move(s); });
  EXPECT_EQ(scanned, text);
  EXPECT_FALSE(ImageFileCamera("").isAvailable());
  std::filesystem::remove_all(dir);
}

std::uint32_t crc32(const std::string& bytes) {
  std::uint32_t crc = 0xffffffffu;
  for (const char byte : bytes) {
    crc ^= static_cast<unsigned char>(byte);
    for (int bit = 0; bit < 8; ++bit) crc = (crc & 1) ? (crc >> 1) ^ 0xedb88320u : crc >> 1;
  }
  return ~crc;
}

std::string bigEndian(std::uint32_t value) {
  return {static_cast<char>(value >> 24), static_cast<char>(value >> 16), static_cast<char>(value >> 8),
          static_cast<char>(value)};
}

std::string chunk(const std::string& type, const std::string& data) {
  return bigEndian(static_cast<std::uint32_t>(data.size())) + type + data + bigEndian(crc32(type + data));
}

TEST(QrPngTest, PicturesDeclaringHugeCanvasesOrThatAreNoFilesAreRefusedBeforeDecoding) {
  const auto dir = std::filesystem::temp_directory_path() / ("qmv_qr_big_" + std::to_string(::getpid()));
  std::filesystem::create_directories(dir);
  // A few hundred bytes declaring 20000x20000 grey pixels: 400 MB once decoded.
  const std::string header = bigEndian(20000) + bigEndian(20000) + std::string("\x08\x00\x00\x00\x00", 5);
  std::ofstream(dir / "bomb.png", std::ios::binary) << std::string("\x89PNG\r\n\x1a\n", 8) << chunk("IHDR", header)
                                                    << chunk("IDAT", std::string(300, '\0')) << chunk("IEND", "");
  const auto started = std::chrono::steady_clock::now();
  const QrImageScan bomb = scanQrImage(dir / "bomb.png");
  EXPECT_LT(std::chrono::steady_clock::now() - started, std::chrono::milliseconds(500));
  EXPECT_FALSE(bomb.text);
  EXPECT_NE(bomb.unreadable.find("declares 20000x20000 pixels"), std::string::npos) << bomb.unreadable;
  EXPECT_EQ(qrImageProblem(dir / "bomb.png"), bomb.unreadable);

  // Too many bytes, a directory, a FIFO (which must not block), a missing file.
  std::filesystem::resize_file(dir / "bomb.png", kMaxQrImageBytes + 1);
  EXPECT_NE(qrImageProblem(dir / "bomb.png").find("larger than 16 MiB"), std::string::npos);
  EXPECT_NE(qrImageProblem(dir).find("not a regular file"), std::string::npos);
  ASSERT_EQ(::mkfifo((dir / "fifo.png").c_str(), 0600), 0);
  EXPECT_NE(scanQrImage(dir / "fifo.png").unreadable.find("not a regular file"), std::string::npos);
  EXPECT_EQ(qrImageProblem(dir / "missing.png"),
            "cannot read the picture " + (dir / "missing.png").string() + ": No such file or directory");

  // A picture within the limits is read; one without a code has no text but no problem.
  ASSERT_TRUE(writeQrPng("INVITEID=7", dir / "code.png", 2));
  EXPECT_EQ(qrImageProblem(dir / "code.png"), "");
  EXPECT_EQ(scanQrImage(dir / "code.png").text, "INVITEID=7");
  std::filesystem::remove_all(dir);
}

}  // namespace
}  // namespace qmv
