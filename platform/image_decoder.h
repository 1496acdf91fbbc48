#pragma once
// Decodes pictures from outside and encodes JPEG and PNG. Every call checks the caps before any
// pixel buffer exists; a refused picture is a Status that imageErrorOf() explains.
// Thread-safe: a worker may decode while the interface thread does.
#include <string>
#include <string_view>

#include "core/common/decoded_image.h"
#include "core/common/result.h"

namespace qmv {

class ImageDecoder {
 public:
  virtual ~ImageDecoder() = default;
  // The declared size, from the header alone.
  virtual Result<ImageSize> readSize(std::string_view bytes, const ImageLimits& limits) const = 0;
  // At exactly `target`, or at the picture's own size when `target` is empty.
  virtual Result<DecodedImage> decode(std::string_view bytes, const ImageLimits& limits, ImageSize target) const = 0;
  virtual Result<std::string> encodeJpeg(const DecodedImage& image, int quality) const = 0;
  virtual Result<std::string> encodePng(const DecodedImage& image) const = 0;
};

}  // namespace qmv
