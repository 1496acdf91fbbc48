#include "platform/linux/thread_work_queue.h"

#include <algorithm>
#include <utility>

namespace qmv {

ThreadWorkQueue::ThreadWorkQueue(int threads) {
  for (int i = 0; i < std::max(1, threads); ++i) threads_.emplace_back([this] { serve(); });
}

ThreadWorkQueue::~ThreadWorkQueue() {
  {
    std::lock_guard lock(mutex_);
    stopping_ = true;
    work_.clear();
  }
  cv_.notify_all();
  for (auto& thread : threads_) thread.join();
}

void ThreadWorkQueue::run(std::function<void()> work) {
  {
    std::lock_guard lock(mutex_);
    if (stopping_) return;
    work_.push_back(std::move(work));
  }
  cv_.notify_one();
}

void ThreadWorkQueue::serve() {
  for (;;) {
    std::function<void()> work;
    {
      std::unique_lock lock(mutex_);
      cv_.wait(lock, [this] { return stopping_ || !work_.empty(); });
      if (stopping_) return;
      work = std::move(work_.back());
      work_.pop_back();
    }
    work();
  }
}

}  // namespace qmv
