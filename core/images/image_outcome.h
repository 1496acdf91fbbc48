#pragma once
// What a picture request ends with: the picture and where it came from, or why there is
// none (the screen then keeps its placeholder).
#include <memory>
#include <string>

#include "core/common/decoded_image.h"

namespace qmv {

enum class ImageSource { kMemory, kDisk, kNetwork };

enum class ImageLoadError {
  kNone = 0,
  kNetwork,      // no answer, or an answer other than 200 (or 304 for a kept copy)
  kContentType,  // the answer is not a picture
  kTooLarge,     // body or declared size beyond the caps
  kUnsupported,  // a format this client does not read
  kCorrupt,      // truncated or damaged
  kUnavailable,  // no loader in this environment
};

struct ImageOutcome {
  std::shared_ptr<const DecodedImage> image;  // null on error
  ImageSource source = ImageSource::kNetwork;
  ImageLoadError error = ImageLoadError::kNone;
  std::string message;  // for logs and the CLI; empty on success
  bool ok() const { return image != nullptr; }
};

}  // namespace qmv
