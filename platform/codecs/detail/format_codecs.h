#pragma once
// One reader per format. The size readers look at the header only; the decoders trust that
// the caller has checked that size against the caps.
#include <string>
#include <string_view>

#include "core/common/decoded_image.h"
#include "core/common/result.h"

namespace qmv::codecs {

Result<ImageSize> pngSize(std::string_view bytes);
Result<DecodedImage> decodePng(std::string_view bytes);
Result<std::string> encodePng(const DecodedImage& image);

Result<ImageSize> jpegSize(std::string_view bytes);
// At the smallest of the decoder's eighths that still covers `target` (own size when empty).
Result<DecodedImage> decodeJpeg(std::string_view bytes, ImageSize target);

// Refuses animations.
Result<ImageSize> webpSize(std::string_view bytes);
// At exactly `target` when that is a reduction, else at its own size.
Result<DecodedImage> decodeWebp(std::string_view bytes, ImageSize target);

// Premultiplied RGBA resampled to `target`: box filter along a shrinking axis, bilinear
// along a growing one.
DecodedImage resample(const DecodedImage& image, ImageSize target);

// Pixels for `size`, rows packed.
DecodedImage allocateImage(ImageSize size);

}  // namespace qmv::codecs
