#include "platform/codecs/image_codecs.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <vector>

#include "platform/codecs/detail/format_codecs.h"

namespace qmv {
namespace {

Status checkSize(ImageSize size, const ImageLimits& limits, const char* what) {
  if (size.empty()) return imageFailure(ImageError::kCorrupt, std::string(what) + " has no pixels");
  if (size.width > limits.maxSide || size.height > limits.maxSide ||
      static_cast<std::int64_t>(size.width) * size.height > limits.maxPixels) {
    return imageFailure(ImageError::kTooLarge, std::string(what) + " of " + std::to_string(size.width) + "x" +
                                                   std::to_string(size.height) + " is beyond the limits");
  }
  return Status::OK();
}

Result<ImageFormat> checkedFormat(std::string_view bytes, const ImageLimits& limits) {
  if (bytes.size() > limits.maxBytes) return imageFailure(ImageError::kTooLarge, "picture file too large");
  const ImageFormat format = sniffImageFormat(bytes);
  if (format == ImageFormat::kUnknown) return imageFailure(ImageError::kUnsupported, "not a PNG, JPEG or WebP picture");
  return format;
}

// Source pixels and weights making up one output pixel along one axis.
struct Taps {
  int first = 0;
  std::vector<float> weights;
};

std::vector<Taps> tapsFor(int from, int to) {
  std::vector<Taps> all(static_cast<std::size_t>(to));
  const double scale = static_cast<double>(from) / to;
  for (int o = 0; o < to; ++o) {
    Taps& taps = all[static_cast<std::size_t>(o)];
    if (scale > 1.0) {
      // Box: the share of each source pixel in [o, o + 1) scaled back.
      const double begin = o * scale, end = std::min<double>(from, (o + 1) * scale);
      taps.first = static_cast<int>(begin);
      for (int i = taps.first; i < end; ++i) {
        const double covered = std::min<double>(i + 1, end) - std::max<double>(i, begin);
        taps.weights.push_back(static_cast<float>(covered / scale));
      }
    } else {
      const double centre = std::clamp((o + 0.5) * scale - 0.5, 0.0, from - 1.0);
      taps.first = static_cast<int>(centre);
      const double fraction = centre - taps.first;
      taps.weights.push_back(static_cast<float>(1.0 - fraction));
      if (taps.first + 1 < from) taps.weights.push_back(static_cast<float>(fraction));
    }
  }
  return all;
}

}  // namespace

namespace codecs {

DecodedImage allocateImage(ImageSize size) {
  DecodedImage image;
  image.width = size.width;
  image.height = size.height;
  image.stride = static_cast<std::size_t>(size.width) * 4;
  image.pixels.assign(image.stride * static_cast<std::size_t>(size.height), '\0');
  return image;
}

DecodedImage resample(const DecodedImage& image, ImageSize target) {
  const std::vector<Taps> across = tapsFor(image.width, target.width);
  const std::vector<Taps> down = tapsFor(image.height, target.height);
  // One output row at a time: its source rows blended down into one row of floats, which is
  // then blended across, so that nothing larger than a source row is held besides the result.
  std::vector<float> row(static_cast<std::size_t>(image.width) * 4);
  DecodedImage result = allocateImage(target);
  for (int y = 0; y < target.height; ++y) {
    const Taps& rows = down[static_cast<std::size_t>(y)];
    std::fill(row.begin(), row.end(), 0.0f);
    for (std::size_t k = 0; k < rows.weights.size(); ++k) {
      const auto* source =
          reinterpret_cast<const unsigned char*>(image.pixels.data()) + (rows.first + k) * image.stride;
      for (std::size_t i = 0; i < row.size(); ++i) row[i] += rows.weights[k] * source[i];
    }
    auto* out = reinterpret_cast<unsigned char*>(result.pixels.data()) + y * result.stride;
    for (int x = 0; x < target.width; ++x) {
      const Taps& columns = across[static_cast<std::size_t>(x)];
      for (int c = 0; c < 4; ++c) {
        float sum = 0;
        for (std::size_t k = 0; k < columns.weights.size(); ++k) {
          sum += columns.weights[k] * row[4 * (columns.first + k) + c];
        }
        out[4 * x + c] = static_cast<unsigned char>(std::clamp(std::lround(sum), 0L, 255L));
      }
    }
  }
  return result;
}

}  // namespace codecs

ImageFormat sniffImageFormat(std::string_view bytes) {
  if (bytes.starts_with("\x89PNG\r\n\x1a\n")) return ImageFormat::kPng;
  if (bytes.starts_with("\xff\xd8\xff")) return ImageFormat::kJpeg;
  if (bytes.size() >= 12 && bytes.starts_with("RIFF") && bytes.substr(8, 4) == "WEBP") return ImageFormat::kWebp;
  return ImageFormat::kUnknown;
}

Result<ImageSize> readImageSize(std::string_view bytes, const ImageLimits& limits) {
  auto format = checkedFormat(bytes, limits);
  if (!format.ok()) return format.status();
  Result<ImageSize> size = *format == ImageFormat::kPng    ? codecs::pngSize(bytes)
                           : *format == ImageFormat::kJpeg ? codecs::jpegSize(bytes)
                                                           : codecs::webpSize(bytes);
  if (!size.ok()) return size;
  if (Status fits = checkSize(*size, limits, "picture"); !fits.ok()) return fits;
  return size;
}

Result<DecodedImage> decodeImage(std::string_view bytes, const ImageLimits& limits, ImageSize target) {
  if (!target.empty()) {
    if (Status fits = checkSize(target, limits, "requested size"); !fits.ok()) return fits;
  }
  auto size = readImageSize(bytes, limits);
  if (!size.ok()) return size.status();
  const ImageFormat format = sniffImageFormat(bytes);
  Result<DecodedImage> decoded = format == ImageFormat::kPng    ? codecs::decodePng(bytes)
                                 : format == ImageFormat::kJpeg ? codecs::decodeJpeg(bytes, target)
                                                                : codecs::decodeWebp(bytes, target);
  if (!decoded.ok() || target.empty() || decoded->size() == target) return decoded;
  return codecs::resample(*decoded, target);
}

Result<std::string> encodePng(const DecodedImage& image) { return codecs::encodePng(image); }

}  // namespace qmv
