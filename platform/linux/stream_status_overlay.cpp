#include "platform/linux/stream_status_overlay.h"

namespace qmv {

void StreamStatusOverlay::showImage(const std::string& /*image*/, const std::string& status) {
  if (status.empty()) return;
  std::lock_guard lock(mutex_);
  out_ << status << '\n' << std::flush;
}

}  // namespace qmv
