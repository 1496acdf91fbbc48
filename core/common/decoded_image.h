#pragma once
// Pictures as the codecs hand them over: sizes, the caps checked before any pixel buffer
// exists, decoded pixels, and why a picture was refused. Plain values, so that the ports,
// the codecs and the sandbox all speak of the same picture.
#include <cstddef>
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <string>
#include <utility>

#include "core/common/status.h"

namespace qmv {

struct ImageSize {
  int width = 0;
  int height = 0;
  bool empty() const { return width <= 0 || height <= 0; }
  friend bool operator==(const ImageSize&, const ImageSize&) = default;
};

// `size` shrunk to fit in a square of `longestSide` keeping its proportions (never enlarged,
// never below 1 px a side).
inline ImageSize fitWithin(ImageSize size, int longestSide) {
  const int longest = std::max(size.width, size.height);
  if (size.empty() || longest <= longestSide) return size;
  const double scale = static_cast<double>(longestSide) / longest;
  return {std::max(1, static_cast<int>(std::lround(size.width * scale))),
          std::max(1, static_cast<int>(std::lround(size.height * scale)))};
}

// Checked against the compressed bytes and the size the header declares, and against a
// requested output size, before anything is allocated for pixels.
struct ImageLimits {
  std::size_t maxBytes = 10 * 1024 * 1024;
  int maxSide = 8192;
  std::int64_t maxPixels = 24 * 1024 * 1024;
};

// RGBA, 8 bits a channel, colour premultiplied by alpha; rows `stride` bytes apart.
struct DecodedImage {
  int width = 0;
  int height = 0;
  std::size_t stride = 0;
  std::string pixels;
  ImageSize size() const { return {width, height}; }
};

enum class ImageError {
  kNone = 0,
  kUnsupported,  // not a picture this client reads (magic bytes, animation, colour model)
  kTooLarge,     // bytes or declared size beyond the caps
  kCorrupt,      // truncated or damaged data
};

// A refused picture is a Corruption status whose library code says why.
inline Status imageFailure(ImageError error, std::string message) {
  return Status::corruption(std::move(message), static_cast<int>(error));
}

inline ImageError imageErrorOf(const Status& status) {
  if (status.ok()) return ImageError::kNone;
  const int code = status.libraryCode();
  if (status.isCorruption() && code >= static_cast<int>(ImageError::kUnsupported) &&
      code <= static_cast<int>(ImageError::kCorrupt)) {
    return static_cast<ImageError>(code);
  }
  return ImageError::kCorrupt;
}

}  // namespace qmv
