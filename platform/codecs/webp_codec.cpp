// libwebp: WebPGetFeatures reads the size and the animation flag from the header; the
// decoder writes premultiplied RGBA straight into our buffer and scales on the way.
#include <webp/decode.h>

#include <string>

#include "platform/codecs/detail/format_codecs.h"

namespace qmv::codecs {
namespace {

Result<WebPBitstreamFeatures> features(std::string_view bytes) {
  WebPBitstreamFeatures found;
  const VP8StatusCode code = WebPGetFeatures(reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size(), &found);
  if (code != VP8_STATUS_OK) return imageFailure(ImageError::kCorrupt, "WebP: unreadable header");
  if (found.has_animation) return imageFailure(ImageError::kUnsupported, "WebP: animations are not shown");
  return found;
}

}  // namespace

Result<ImageSize> webpSize(std::string_view bytes) {
  auto found = features(bytes);
  if (!found.ok()) return found.status();
  return ImageSize{found->width, found->height};
}

Result<DecodedImage> decodeWebp(std::string_view bytes, ImageSize target) {
  WebPDecoderConfig config;
  if (!WebPInitDecoderConfig(&config)) return imageFailure(ImageError::kUnsupported, "WebP: library mismatch");
  auto found = features(bytes);
  if (!found.ok()) return found.status();
  ImageSize size{found->width, found->height};
  if (!target.empty() && target.width <= size.width && target.height <= size.height && !(target == size)) {
    config.options.use_scaling = 1;
    config.options.scaled_width = target.width;
    config.options.scaled_height = target.height;
    size = target;
  }
  DecodedImage decoded = allocateImage(size);
  config.output.colorspace = MODE_rgbA;
  config.output.is_external_memory = 1;
  config.output.u.RGBA.rgba = reinterpret_cast<uint8_t*>(decoded.pixels.data());
  config.output.u.RGBA.stride = static_cast<int>(decoded.stride);
  config.output.u.RGBA.size = decoded.pixels.size();
  const VP8StatusCode code = WebPDecode(reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size(), &config);
  WebPFreeDecBuffer(&config.output);
  if (code != VP8_STATUS_OK) return imageFailure(ImageError::kCorrupt, "WebP: damaged or truncated data");
  return decoded;
}

}  // namespace qmv::codecs
