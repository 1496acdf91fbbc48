#include "platform/linux/qr_png.h"

#include <gtest/gtest.h>
#include <unistd.h>

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

}  // namespace
}  // namespace qmv
