#pragma once
// A main loop for tests whose clock moves only when told: advance(ms) runs the posted
// tasks and the timers that fall due, in due order. post() is thread-safe, so transports
// can post real completions from their workers; runUntil() waits (in wall time) for such
// work without moving the loop's clock.
#include <condition_variable>
#include <cstdint>
#include <deque>
#include <map>
#include <mutex>
#include <utility>

#include "platform/main_loop.h"

namespace qmv {

class ManualMainLoop : public MainLoop {
 public:
  void post(Task task) override;
  TimerId postAfter(Duration delay, Task task) override;
  TimerId scheduleRepeating(Duration interval, Task task) override;
  void cancelTimer(TimerId id) override;
  // Runs posted tasks (waiting for them) until stop(); timers do not fire by themselves.
  void run() override;
  // Runs posted tasks, waiting up to `timeout` of wall time for more, until `done`.
  bool runUntil(const std::function<bool()>& done, Duration timeout) override;
  void stop() override;
  std::int64_t nowMillis() const override;

  // Moves the clock forward by `delta`, running posted tasks and every timer that falls
  // due on the way, in order of due time (ties in order of scheduling).
  void advance(Duration delta);
  // Runs the tasks posted so far (and those they post). Returns how many ran.
  int runPending();

 private:
  struct Timer {
    TimerId id;
    Duration interval;  // zero for one-shot timers
    Task task;
  };
  bool takeTask(Task& task);

  mutable std::mutex mutex_;
  std::condition_variable cv_;
  std::deque<Task> tasks_;
  // Keyed by (due time, sequence) so that equal due times keep scheduling order.
  std::map<std::pair<std::int64_t, std::uint64_t>, Timer> timers_;
  std::int64_t now_ = 0;
  std::uint64_t nextSeq_ = 1;
  TimerId nextId_ = 1;
  bool stopped_ = false;
};

}  // namespace qmv
