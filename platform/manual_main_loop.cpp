#include "platform/manual_main_loop.h"

#include <chrono>

namespace qmv {

void ManualMainLoop::post(Task task) {
  {
    std::lock_guard lock(mutex_);
    tasks_.push_back(std::move(task));
  }
  cv_.notify_all();
}

MainLoop::TimerId ManualMainLoop::postAfter(Duration delay, Task task) {
  std::lock_guard lock(mutex_);
  const TimerId id = nextId_++;
  timers_.emplace(std::pair{now_ + delay.count(), nextSeq_++}, Timer{id, Duration{0}, std::move(task)});
  return id;
}

MainLoop::TimerId ManualMainLoop::scheduleRepeating(Duration interval, Task task) {
  std::lock_guard lock(mutex_);
  const TimerId id = nextId_++;
  // A zero interval would never let the clock pass; treat it as one millisecond.
  if (interval.count() <= 0) interval = Duration{1};
  timers_.emplace(std::pair{now_ + interval.count(), nextSeq_++}, Timer{id, interval, std::move(task)});
  return id;
}

void ManualMainLoop::cancelTimer(TimerId id) {
  std::lock_guard lock(mutex_);
  std::erase_if(timers_, [id](const auto& entry) { return entry.second.id == id; });
}

bool ManualMainLoop::takeTask(Task& task) {
  std::lock_guard lock(mutex_);
  if (tasks_.empty()) return false;
  task = std::move(tasks_.front());
  tasks_.pop_front();
  return true;
}

int ManualMainLoop::runPending() {
  int count = 0;
  Task task;
  while (takeTask(task)) {
    task();
    ++count;
  }
  return count;
}

void ManualMainLoop::advance(Duration delta) {
  std::int64_t target;
  {
    std::lock_guard lock(mutex_);
    target = now_ + delta.count();
  }
  for (;;) {
    runPending();
    Timer timer;
    {
      std::lock_guard lock(mutex_);
      auto it = timers_.begin();
      if (it == timers_.end() || it->first.first > target) {
        now_ = target;
        break;
      }
      now_ = it->first.first;
      timer = std::move(it->second);
      timers_.erase(it);
      if (timer.interval.count() > 0) {
        // Re-armed before it runs so that the task may cancel itself.
        timers_.emplace(std::pair{now_ + timer.interval.count(), nextSeq_++},
                        Timer{timer.id, timer.interval, timer.task});
      }
    }
    timer.task();
  }
  runPending();
}

void ManualMainLoop::run() {
  {
    std::lock_guard lock(mutex_);
    stopped_ = false;
  }
  for (;;) {
    runPending();
    std::unique_lock lock(mutex_);
    cv_.wait(lock, [this] { return stopped_ || !tasks_.empty(); });
    if (stopped_) {
      stopped_ = false;
      return;
    }
  }
}

bool ManualMainLoop::runUntil(const std::function<bool()>& done, Duration timeout) {
  const auto deadline = std::chrono::steady_clock::now() + timeout;
  for (;;) {
    Task task;
    while (takeTask(task)) {
      task();
      if (done()) return true;
    }
    if (done()) return true;
    std::unique_lock lock(mutex_);
    if (!cv_.wait_until(lock, deadline, [this] { return !tasks_.empty(); })) {
      lock.unlock();
      return done();
    }
  }
}

void ManualMainLoop::stop() {
  {
    std::lock_guard lock(mutex_);
    stopped_ = true;
  }
  cv_.notify_all();
}

std::int64_t ManualMainLoop::nowMillis() const {
  std::lock_guard lock(mutex_);
  return now_;
}

}  // namespace qmv
