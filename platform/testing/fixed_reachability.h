#pragma once
// Reachability for tests: answers what the test set.
#include <atomic>

#include "platform/reachability.h"

namespace qmv {

class FixedReachability : public Reachability {
 public:
  explicit FixedReachability(bool reachable = true) : reachable_(reachable) {}
  bool isReachable() const override { return reachable_; }
  void set(bool reachable) { reachable_ = reachable; }

 private:
  std::atomic<bool> reachable_;
};

}  // namespace qmv
