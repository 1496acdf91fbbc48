#pragma once
// The interface thread on Linux: a standalone Asio io_context driven by run() or
// runUntil() on the calling thread, with steady timers for delayed and repeating tasks.
// Adapters wait on descriptors of their own on its reactor through IoWatcher.
#include <cstdint>
#include <memory>
#include <mutex>
#include <unordered_map>

#include "platform/linux/io_watcher.h"
#include "platform/main_loop.h"

namespace qmv {

class AsioMainLoop : public MainLoop, public IoWatcher {
 public:
  AsioMainLoop();
  ~AsioMainLoop() override;
  AsioMainLoop(const AsioMainLoop&) = delete;
  AsioMainLoop& operator=(const AsioMainLoop&) = delete;

  void post(Task task) override;
  TimerId postAfter(Duration delay, Task task) override;
  TimerId scheduleRepeating(Duration interval, Task task) override;
  void cancelTimer(TimerId id) override;
  void run() override;
  bool runUntil(const std::function<bool()>& done, Duration timeout) override;
  void stop() override;
  std::int64_t nowMillis() const override;

  // The reactor is edge-triggered, but each wait re-arms the descriptor and the kernel
  // then reports one that is ready already, which gives the level-triggered reports
  // IoWatcher promises.
  std::unique_ptr<Watch> watch(int fd, std::function<void(int events)> ready) override;
  std::unique_ptr<Timer> timer(std::function<void()> fired) override;

 private:
  struct TimerState;
  void arm(const std::shared_ptr<TimerState>& state, Duration delay);

  struct Impl;
  std::unique_ptr<Impl> impl_;
  std::mutex mutex_;
  std::unordered_map<TimerId, std::shared_ptr<TimerState>> timers_;
  TimerId nextId_ = 1;
};

}  // namespace qmv
