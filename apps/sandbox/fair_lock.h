#pragma once
// FairLock: a lock handed to its waiters in the order they came. The sandbox's requests all
// pass through one database lock; a plain mutex lets running threads barge past sleeping
// ones, so under load a few requests wait many turns while most wait none.
#include <condition_variable>
#include <deque>
#include <mutex>

namespace qmv::sandbox {

class FairLock {
 public:
  void lock() {
    std::unique_lock guard(mutex_);
    if (!held_) {
      held_ = true;
      return;
    }
    Waiter me;
    waiters_.push_back(&me);
    me.ready.wait(guard, [&me] { return me.granted; });
  }

  // REQUIRES: held by the caller. The lock passes straight to the longest waiter.
  void unlock() {
    std::lock_guard guard(mutex_);
    if (waiters_.empty()) {
      held_ = false;
      return;
    }
    Waiter* next = waiters_.front();
    waiters_.pop_front();
    next->granted = true;
    next->ready.notify_one();  // under the lock: `next` lives until it sees `granted`
  }

 private:
  struct Waiter {
    std::condition_variable ready;
    bool granted = false;
  };
  std::mutex mutex_;
  bool held_ = false;
  std::deque<Waiter*> waiters_;
};

}  // namespace qmv::sandbox
