#pragma once
// Push service for tests: records every (alias, type) set, in order.
#include <string>
#include <utility>
#include <vector>

#include "platform/push_service.h"

namespace qmv {

class RecordingPushService : public PushService {
 public:
  void setAlias(const std::string& alias, const std::string& type) override { aliases_.emplace_back(alias, type); }
  const std::vector<std::pair<std::string, std::string>>& aliases() const { return aliases_; }

 private:
  std::vector<std::pair<std::string, std::string>> aliases_;
};

}  // namespace qmv
