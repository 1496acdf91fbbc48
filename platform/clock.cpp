#include "platform/clock.h"

#include <chrono>

namespace qmv {

std::int64_t SystemClock::unixSeconds() const {
  return std::chrono::duration_cast<std::chrono::seconds>(std::chrono::system_clock::now().time_since_epoch()).count();
}

}  // namespace qmv
