#pragma once
// Status overlay of the command line: each status is printed on its own line, exactly
// as the core says it. The picture name is not printed.
#include <mutex>
#include <ostream>

#include "platform/status_overlay.h"

namespace qmv {

class StreamStatusOverlay : public StatusOverlay {
 public:
  // REQUIRES: `out` outlives the overlay.
  explicit StreamStatusOverlay(std::ostream& out) : out_(out) {}
  // An empty status prints nothing (the HUD would show only the picture).
  void showImage(const std::string& image, const std::string& status) override;

 private:
  std::mutex mutex_;
  std::ostream& out_;
};

}  // namespace qmv
