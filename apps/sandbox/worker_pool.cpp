#include "apps/sandbox/worker_pool.h"

namespace qmv::sandbox {

WorkerPool::WorkerPool(size_t maxThreads) : maxThreads_(maxThreads == 0 ? 1 : maxThreads) {}

WorkerPool::~WorkerPool() { shutdown(); }

void WorkerPool::enqueue(std::function<void()> job) {
  {
    std::lock_guard lock(mutex_);
    jobs_.push_back(std::move(job));
    // A thread is started only when no started one is free to take the job.
    if (idle_ < jobs_.size() && threads_.size() < maxThreads_) threads_.emplace_back([this] { work(); });
  }
  ready_.notify_one();
}

void WorkerPool::shutdown() {
  {
    std::lock_guard lock(mutex_);
    stopping_ = true;
  }
  ready_.notify_all();
  for (auto& thread : threads_) {
    if (thread.joinable()) thread.join();
  }
}

void WorkerPool::work() {
  for (;;) {
    std::function<void()> job;
    {
      std::unique_lock lock(mutex_);
      ++idle_;
      ready_.wait(lock, [this] { return !jobs_.empty() || stopping_; });
      --idle_;
      if (jobs_.empty()) return;  // stopping, nothing left to run
      job = std::move(jobs_.front());
      jobs_.pop_front();
    }
    job();
  }
}

}  // namespace qmv::sandbox
