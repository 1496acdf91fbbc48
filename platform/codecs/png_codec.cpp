// libpng's simplified API: it reports every failure in the image's message instead of
// jumping out, and reads the size from IHDR before anything is decoded.
#include <png.h>

#include <algorithm>
#include <cstring>
#include <string>

#include "platform/codecs/detail/format_codecs.h"

namespace qmv::codecs {
namespace {

// Begins a read; the caller frees the image whatever happens.
bool beginRead(png_image& image, std::string_view bytes) {
  std::memset(&image, 0, sizeof image);
  image.version = PNG_IMAGE_VERSION;
  return png_image_begin_read_from_memory(&image, bytes.data(), bytes.size()) != 0;
}

Status failure(const png_image& image) { return imageFailure(ImageError::kCorrupt, std::string("PNG: ") + image.message); }

}  // namespace

Result<ImageSize> pngSize(std::string_view bytes) {
  // libpng itself refuses sides past 1,000,000, so the size fits an int.
  png_image image;
  Result<ImageSize> result = beginRead(image, bytes)
                                 ? Result<ImageSize>(ImageSize{static_cast<int>(image.width), static_cast<int>(image.height)})
                                 : Result<ImageSize>(failure(image));
  png_image_free(&image);
  return result;
}

Result<DecodedImage> decodePng(std::string_view bytes) {
  png_image image;
  if (!beginRead(image, bytes)) {
    Status status = failure(image);
    png_image_free(&image);
    return status;
  }
  image.format = PNG_FORMAT_RGBA;
  DecodedImage decoded = allocateImage({static_cast<int>(image.width), static_cast<int>(image.height)});
  if (png_image_finish_read(&image, nullptr, decoded.pixels.data(), static_cast<png_int_32>(decoded.stride), nullptr) ==
      0) {
    Status status = failure(image);
    png_image_free(&image);
    return status;
  }
  png_image_free(&image);
  // The simplified API hands out straight alpha for 8-bit output.
  for (int y = 0; y < decoded.height; ++y) {
    auto* row = reinterpret_cast<unsigned char*>(decoded.pixels.data()) + y * decoded.stride;
    for (int x = 0; x < decoded.width; ++x) {
      unsigned char* p = row + 4 * x;
      const unsigned alpha = p[3];
      if (alpha == 255) continue;
      for (int c = 0; c < 3; ++c) p[c] = static_cast<unsigned char>((p[c] * alpha + 127) / 255);
    }
  }
  return decoded;
}

Result<std::string> encodePng(const DecodedImage& decoded) {
  if (decoded.width <= 0 || decoded.height <= 0 || decoded.stride < static_cast<std::size_t>(decoded.width) * 4 ||
      decoded.pixels.size() < decoded.stride * static_cast<std::size_t>(decoded.height)) {
    return Status::invalidArgument("no picture to encode");
  }
  // PNG stores straight alpha.
  std::string straight(static_cast<std::size_t>(decoded.width) * 4 * static_cast<std::size_t>(decoded.height), '\0');
  for (int y = 0; y < decoded.height; ++y) {
    const auto* in = reinterpret_cast<const unsigned char*>(decoded.pixels.data()) + y * decoded.stride;
    auto* out = reinterpret_cast<unsigned char*>(straight.data()) + static_cast<std::size_t>(y) * decoded.width * 4;
    for (int x = 0; x < decoded.width * 4; x += 4) {
      const unsigned alpha = in[x + 3];
      for (int c = 0; c < 3; ++c) {
        out[x + c] = alpha == 0 ? 0 : static_cast<unsigned char>(std::min(255u, (in[x + c] * 255u + alpha / 2) / alpha));
      }
      out[x + 3] = static_cast<unsigned char>(alpha);
    }
  }
  png_image image;
  std::memset(&image, 0, sizeof image);
  image.version = PNG_IMAGE_VERSION;
  image.width = static_cast<png_uint_32>(decoded.width);
  image.height = static_cast<png_uint_32>(decoded.height);
  image.format = PNG_FORMAT_RGBA;
  png_alloc_size_t size = 0;
  // The first call measures, the second writes.
  if (!png_image_write_to_memory(&image, nullptr, &size, 0, straight.data(), 0, nullptr)) {
    Status status = Status::ioError(std::string("PNG encoding: ") + image.message);
    png_image_free(&image);
    return status;
  }
  std::string png(size, '\0');
  if (!png_image_write_to_memory(&image, png.data(), &size, 0, straight.data(), 0, nullptr)) {
    Status status = Status::ioError(std::string("PNG encoding: ") + image.message);
    png_image_free(&image);
    return status;
  }
  png_image_free(&image);
  png.resize(size);
  return png;
}

}  // namespace qmv::codecs
