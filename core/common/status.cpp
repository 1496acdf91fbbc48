#include "core/common/status.h"

namespace qmv {

std::string Status::toString() const {
  const char* name = "OK";
  switch (kind_) {
    case Kind::kOk:
      return name;
    case Kind::kNotFound:
      name = "Not found";
      break;
    case Kind::kCorruption:
      name = "Corruption";
      break;
    case Kind::kInvalidArgument:
      name = "Invalid argument";
      break;
    case Kind::kIOError:
      name = "IO error";
      break;
    case Kind::kBusy:
      name = "Busy";
      break;
    case Kind::kUnavailable:
      name = "Unavailable";
      break;
  }
  return std::string(name) + ": " + message_;
}

}  // namespace qmv
