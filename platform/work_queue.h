#pragma once
// Work off the interface thread (decoding, scaling, cache files). Work hands its result
// back with MainLoop::post; it must not touch interface-thread state itself.
#include <functional>

namespace qmv {

class WorkQueue {
 public:
  virtual ~WorkQueue() = default;
  // Thread-safe. Queues `work`; it runs at most once, on some worker, later or at once.
  virtual void run(std::function<void()> work) = 0;
};

}  // namespace qmv
