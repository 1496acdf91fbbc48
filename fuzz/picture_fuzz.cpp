// The picture decoders. Input: the bytes of a file offered as a picture (a download, an
// upload, a chosen file). Each is read at its own size and scaled to a small target, as a
// thumbnail is, and what decodes is encoded as JPEG again, as a portrait is.
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "platform/codecs/image_codecs.h"

namespace {
std::size_t g_pixels = 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  // Tighter than the client's caps, so that one input stays cheap to run.
  qmv::ImageLimits limits;
  limits.maxSide = 4096;
  limits.maxPixels = 4 * 1024 * 1024;
  if (auto size = qmv::readImageSize(bytes, limits); size.ok()) g_pixels += static_cast<std::size_t>(size->width);
  if (auto full = qmv::decodeImage(bytes, limits); full.ok()) g_pixels += full->pixels.size();
  auto thumbnail = qmv::decodeImage(bytes, limits, {33, 17});
  if (!thumbnail.ok()) return 0;
  if (auto encoded = qmv::encodeJpeg(*thumbnail, 85); encoded.ok()) g_pixels += encoded->size();
  return 0;
}
