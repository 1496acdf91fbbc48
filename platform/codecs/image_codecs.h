#pragma once
// PNG, JPEG and WebP from untrusted bytes. Every call checks the caps against the bytes and
// the header's declared size before any pixel buffer exists, and returns a refused picture
// as a Status (imageErrorOf tells why), never a crash. Thread-safe: no shared state.
#include <string>
#include <string_view>

#include "core/common/decoded_image.h"
#include "core/common/result.h"

namespace qmv {

enum class ImageFormat { kUnknown, kPng, kJpeg, kWebp };

// By magic bytes alone.
ImageFormat sniffImageFormat(std::string_view bytes);

// The size the header declares, refused when it or the byte count is beyond `limits`.
Result<ImageSize> readImageSize(std::string_view bytes, const ImageLimits& limits);

// Decodes and scales to exactly `target`; an empty target keeps the picture's own size.
// JPEG and WebP scale while decoding where they can, a box or bilinear filter does the rest.
Result<DecodedImage> decodeImage(std::string_view bytes, const ImageLimits& limits, ImageSize target = {});

// Baseline JPEG of `image`, composited over white; quality 1-100.
Result<std::string> encodeJpeg(const DecodedImage& image, int quality);
// Lossless, alpha kept.
Result<std::string> encodePng(const DecodedImage& image);

}  // namespace qmv
