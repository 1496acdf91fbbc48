#include "platform/linux/qr_png.h"

#include <fcntl.h>
#include <png.h>
#include <sys/stat.h>
#include <unistd.h>
#include <zbar.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
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

struct Grey {
  std::vector<unsigned char> pixels;
  unsigned width = 0;
  unsigned height = 0;
};

std::string unreadable(const std::filesystem::path& path, const std::string& why) {
  return "cannot read the picture " + path.string() + ": " + why;
}

// Opens a picture named by the user: a FIFO or a device must not block or be read
// without end, so only a regular file of bounded size is taken.
File openPicture(const std::filesystem::path& path, std::string& error) {
  const int fd = ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY);
  if (fd < 0) {
    error = unreadable(path, std::strerror(errno));
    return nullptr;
  }
  struct stat status {};
  if (::fstat(fd, &status) != 0 || !S_ISREG(status.st_mode)) {
    error = unreadable(path, "it is not a regular file");
  } else if (static_cast<std::uintmax_t>(status.st_size) > kMaxQrImageBytes) {
    error = unreadable(path, "it is larger than " + std::to_string(kMaxQrImageBytes >> 20) + " MiB");
  }
  std::FILE* file = error.empty() ? ::fdopen(fd, "rb") : nullptr;
  if (file == nullptr) {
    if (error.empty()) error = unreadable(path, std::strerror(errno));
    ::close(fd);
  }
  return File(file);
}

// Opens the picture and reads its header, refusing it before anything of its canvas is
// allocated. On success `image` is to be finished or freed while `file` is open.
File openHeader(const std::filesystem::path& path, png_image& image, std::string& error) {
  File file = openPicture(path, error);
  if (!file) return nullptr;
  image = png_image{};
  image.version = PNG_IMAGE_VERSION;
  if (!png_image_begin_read_from_stdio(&image, file.get())) {
    error = unreadable(path, "it is not a PNG picture");
    return nullptr;
  }
  const std::uint64_t pixels = std::uint64_t{image.width} * image.height;
  if (pixels == 0 || pixels > kMaxQrImagePixels) {
    error = unreadable(path, "it declares " + std::to_string(image.width) + "x" + std::to_string(image.height) +
                                 " pixels, more than " + std::to_string(kMaxQrImagePixels) + " in all");
    png_image_free(&image);
    return nullptr;
  }
  return file;
}

// Reads any PNG as 8-bit grey, which is what zbar scans. A file that is a PNG but whose
// canvas is damaged gives an empty picture: it scans as no code.
std::optional<Grey> readGrey(const std::filesystem::path& path, std::string& error) {
  png_image image;
  File file = openHeader(path, image, error);
  if (!file) return std::nullopt;
  image.format = PNG_FORMAT_GRAY;
  Grey grey;
  grey.pixels.resize(PNG_IMAGE_SIZE(image));
  if (!png_image_finish_read(&image, nullptr, grey.pixels.data(), 0, nullptr)) {
    png_image_free(&image);
    return Grey{};
  }
  grey.width = image.width;
  grey.height = image.height;
  return grey;
}

}  // namespace

QrImageScan scanQrImage(const std::filesystem::path& path) {
  QrImageScan scan;
  auto grey = readGrey(path, scan.unreadable);
  if (!grey || grey->pixels.empty()) return scan;

  zbar_image_scanner_t* scanner = zbar_image_scanner_create();
  zbar_image_scanner_set_config(scanner, ZBAR_NONE, ZBAR_CFG_ENABLE, 0);
  zbar_image_scanner_set_config(scanner, ZBAR_QRCODE, ZBAR_CFG_ENABLE, 1);
  zbar_image_t* image = zbar_image_create();
  zbar_image_set_format(image, zbar_fourcc('Y', '8', '0', '0'));
  zbar_image_set_size(image, grey->width, grey->height);
  zbar_image_set_data(image, grey->pixels.data(), grey->pixels.size(), nullptr);

  if (zbar_scan_image(scanner, image) > 0) {
    for (const zbar_symbol_t* s = zbar_image_first_symbol(image); s; s = zbar_symbol_next(s)) {
      if (zbar_symbol_get_type(s) == ZBAR_QRCODE) {
        scan.text = std::string(zbar_symbol_get_data(s), zbar_symbol_get_data_length(s));
        break;
      }
    }
  }
  zbar_image_destroy(image);
  zbar_image_scanner_destroy(scanner);
  return scan;
}

std::optional<std::string> decodeQrFromPng(const std::filesystem::path& path) { return scanQrImage(path).text; }

std::string qrImageProblem(const std::filesystem::path& path) {
  png_image image;
  std::string error;
  if (openHeader(path, image, error)) png_image_free(&image);
  return error;
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
