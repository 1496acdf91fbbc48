#pragma once
// Where a picture came from, as the command line says it: the words for people and the
// keys of its --json document.
#include "core/images/image_outcome.h"

namespace qmv::image_texts {

inline constexpr const char* kSourceLabel = "来源: ";
inline constexpr const char* kSizeLabel = "尺寸: ";

inline const char* sourceWord(ImageSource source) {
  switch (source) {
    case ImageSource::kMemory: return "内存";
    case ImageSource::kDisk: return "磁盘";
    case ImageSource::kNetwork: return "网络";
  }
  return "";
}

inline const char* sourceKey(ImageSource source) {
  switch (source) {
    case ImageSource::kMemory: return "memory";
    case ImageSource::kDisk: return "disk";
    case ImageSource::kNetwork: return "network";
  }
  return "";
}

inline const char* errorKey(ImageLoadError error) {
  switch (error) {
    case ImageLoadError::kNone: return "none";
    case ImageLoadError::kNetwork: return "network";
    case ImageLoadError::kContentType: return "content type";
    case ImageLoadError::kTooLarge: return "too large";
    case ImageLoadError::kUnsupported: return "unsupported";
    case ImageLoadError::kCorrupt: return "corrupt";
    case ImageLoadError::kUnavailable: return "unavailable";
  }
  return "";
}

}  // namespace qmv::image_texts
