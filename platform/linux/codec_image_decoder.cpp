#include "platform/linux/codec_image_decoder.h"

#include "platform/codecs/image_codecs.h"

namespace qmv {

Result<ImageSize> CodecImageDecoder::readSize(std::string_view bytes, const ImageLimits& limits) const {
  return readImageSize(bytes, limits);
}

Result<DecodedImage> CodecImageDecoder::decode(std::string_view bytes, const ImageLimits& limits,
                                               ImageSize target) const {
  return decodeImage(bytes, limits, target);
}

Result<std::string> CodecImageDecoder::encodeJpeg(const DecodedImage& image, int quality) const {
  return qmv::encodeJpeg(image, quality);
}

Result<std::string> CodecImageDecoder::encodePng(const DecodedImage& image) const { return qmv::encodePng(image); }

}  // namespace qmv
