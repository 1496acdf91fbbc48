#pragma once
// The interface thread. Every completion, filter, delegate call, block, timer and
// notification of the core runs on the loop's thread; other threads hand work to it
// with post(). Kept abstract so that an Asio loop, a GLib loop or a test loop with a
// controllable clock can drive the same core.
#include <chrono>
#include <cstdint>
#include <functional>

namespace qmv {

class MainLoop {
 public:
  using Task = std::function<void()>;
  using Duration = std::chrono::milliseconds;
  using TimerId = std::uint64_t;

  virtual ~MainLoop() = default;

  // Thread-safe. Queues `task` to run on the loop thread, after tasks posted before it.
  virtual void post(Task task) = 0;

  // Thread-safe. Runs `task` once on the loop thread after `delay`. The id cancels it.
  virtual TimerId postAfter(Duration delay, Task task) = 0;

  // Thread-safe. Runs `task` every `interval` until cancelled.
  virtual TimerId scheduleRepeating(Duration interval, Task task) = 0;

  // Thread-safe. A cancelled timer never runs again; unknown ids are ignored.
  virtual void cancelTimer(TimerId id) = 0;

  // Runs tasks on the calling thread until stop() is called.
  virtual void run() = 0;

  // Runs tasks until `done` returns true (checked after each task) or `timeout` passes
  // on the loop's clock. Returns whether `done` became true.
  virtual bool runUntil(const std::function<bool()>& done, Duration timeout) = 0;

  // Thread-safe. Makes run() return.
  virtual void stop() = 0;

  // Milliseconds on the loop's clock since an arbitrary origin; test loops control it.
  virtual std::int64_t nowMillis() const = 0;
};

}  // namespace qmv
