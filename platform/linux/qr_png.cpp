#include "platform/linux/qr_png.h"

#include <png.h>
#include <zbar.h>

#include <cstdio>
#include <memory>
#include <vector>

#include "platform/linux/qrencode_generator.h"

namespace qmv {
namespace {

using namespace zbar;  // the C++ header wraps the C API in this namespace

struct FileCloser {
  void operator()(std::FILE* f) const { std::fclose(f); }
};
using File = std::unique_ptr<std::FILE, FileCloser>;

// Reads any PNG as 8-bit grey, which is what zbar scans.
std::optional<std::vector<unsigned char>> readGrey(const std::filesystem::path& path, unsigned& width,
                                                   unsigned& height) {
  File file(std::fopen(path.c_str(), "rb"));
  if (!file) return std::nullopt;
  png_image image{};
  image.version = PNG_IMAGE_VERSION;
  if (!png_image_begin_read_from_stdio(&image, file.get())) return std::nullopt;
  image.format = PNG_FORMAT_GRAY;
  // Refuse absurd sizes from a hostile header before allocating.
  if (image.width == 0 || image.height == 0 || image.width > 20000 || image.height > 20000) {
    png_image_free(&image);
    return std::nullopt;
  }
  std::vector<unsigned char> pixels(PNG_IMAGE_SIZE(image));
  if (!png_image_finish_read(&image, nullptr, pixels.data(), 0, nullptr)) {
    png_image_free(&image);
    return std::nullopt;
  }
  width = image.width;
  height = image.height;
  return pixels;
}

}  // namespace

std::optional<std::string> decodeQrFromPng(const std::filesystem::path& path) {
  unsigned width = 0, height = 0;
  auto grey = readGrey(path, width, height);
  if (!grey) return std::nullopt;

  zbar_image_scanner_t* scanner = zbar_image_scanner_create();
  zbar_image_scanner_set_config(scanner, ZBAR_NONE, ZBAR_CFG_ENABLE, 0);
  zbar_image_scanner_set_config(scanner, ZBAR_QRCODE, ZBAR_CFG_ENABLE, 1);
  zbar_image_t* image = zbar_image_create();
  zbar_image_set_format(image, zbar_fourcc('Y', '8', '0', '0'));
  zbar_image_set_size(image, width, height);
  zbar_image_set_data(image, grey->data(), grey->size(), nullptr);

  std::optional<std::string> text;
  if (zbar_scan_image(scanner, image) > 0) {
    for (const zbar_symbol_t* s = zbar_image_first_symbol(image); s; s = zbar_symbol_next(s)) {
      if (zbar_symbol_get_type(s) == ZBAR_QRCODE) {
        text = std::string(zbar_symbol_get_data(s), zbar_symbol_get_data_length(s));
        break;
      }
    }
  }
  zbar_image_destroy(image);
  zbar_image_scanner_destroy(scanner);
  return text;
}

bool writeQrPng(const QrMatrix& code, const std::filesystem::path& path, int scale) {
  if (scale < 1 || scale > 64 || code.width < 1 || code.width > 200 ||
      code.modules.size() != static_cast<std::size_t>(code.width) * code.width) {
    return false;
  }
  const int quiet = QrGenerator::kQuietZone;
  const int side = (code.width + 2 * quiet) * scale;
  std::vector<unsigned char> pixels(static_cast<std::size_t>(side) * side, 255);
  for (int y = 0; y < side; ++y) {
    for (int x = 0; x < side; ++x) {
      if (code.dark(x / scale - quiet, y / scale - quiet)) pixels[static_cast<std::size_t>(y) * side + x] = 0;
    }
  }
  png_image image{};
  image.version = PNG_IMAGE_VERSION;
  image.width = static_cast<png_uint_32>(side);
  image.height = static_cast<png_uint_32>(side);
  image.format = PNG_FORMAT_GRAY;
  return png_image_write_to_file(&image, path.c_str(), 0, pixels.data(), 0, nullptr) != 0;
}

bool writeQrPng(const std::string& text, const std::filesystem::path& path, int scale) {
  const auto code = QrencodeGenerator().encode(text);
  return code && writeQrPng(*code, path, scale);
}

}  // namespace qmv
