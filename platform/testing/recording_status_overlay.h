#pragma once
// Status overlay for tests: records every (image, status) shown, in order.
#include <string>
#include <utility>
#include <vector>

#include "platform/status_overlay.h"

namespace qmv {

class RecordingStatusOverlay : public StatusOverlay {
 public:
  void showImage(const std::string& image, const std::string& status) override { shown_.emplace_back(image, status); }
  const std::vector<std::pair<std::string, std::string>>& shown() const { return shown_; }
  std::vector<std::string> statuses() const {
    std::vector<std::string> out;
    for (const auto& entry : shown_) out.push_back(entry.second);
    return out;
  }

 private:
  std::vector<std::pair<std::string, std::string>> shown_;
};

}  // namespace qmv
