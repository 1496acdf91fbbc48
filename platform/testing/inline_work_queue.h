#pragma once
// Runs work at once on the calling thread, so that a test decides when results arrive
// only through its main loop.
#include <functional>

#include "platform/work_queue.h"

namespace qmv {

class InlineWorkQueue : public WorkQueue {
 public:
  void run(std::function<void()> work) override {
    ++runs_;
    work();
  }
  int runs() const { return runs_; }

 private:
  int runs_ = 0;
};

}  // namespace qmv
