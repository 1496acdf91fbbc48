#pragma once
// The picture port over libpng, libjpeg-turbo and libwebp.
#include "platform/image_decoder.h"

namespace qmv {

class CodecImageDecoder : public ImageDecoder {
 public:
  Result<ImageSize> readSize(std::string_view bytes, const ImageLimits& limits) const override;
  Result<DecodedImage> decode(std::string_view bytes, const ImageLimits& limits, ImageSize target) const override;
  Result<std::string> encodeJpeg(const DecodedImage& image, int quality) const override;
  Result<std::string> encodePng(const DecodedImage& image) const override;
};

}  // namespace qmv
