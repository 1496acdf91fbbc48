#pragma once
// WorkerPool: the sandbox server's task queue. Each accepted connection is one job that
// holds a worker for the connection's life, so the pool starts threads as jobs arrive
// (up to a maximum) instead of all at once, and tells the server how many connections
// wait with no worker to take them, so that idle kept-alive connections can make room.
// REQUIRES: no enqueue after shutdown (the server stops accepting first).
#include <httplib.h>

#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

namespace qmv::sandbox {

class WorkerPool : public httplib::TaskQueue {
 public:
  // REQUIRES: maxThreads > 0.
  explicit WorkerPool(size_t maxThreads);
  ~WorkerPool() override;  // shuts down
  WorkerPool(const WorkerPool&) = delete;
  WorkerPool& operator=(const WorkerPool&) = delete;

  void enqueue(std::function<void()> job) override;
  // Runs the jobs still queued, then joins every thread. Safe to call more than once.
  void shutdown() override;

  // Whether a job waits that no worker can take: every thread is started and busy. A job
  // that merely waits for a thread being started does not count. Thread-safe.
  bool starved() const { return starved_.load(std::memory_order_relaxed); }

 private:
  void work();
  // REQUIRES: mutex_ held.
  void noteStarvation();

  const size_t maxThreads_;
  std::mutex mutex_;
  std::condition_variable ready_;
  std::deque<std::function<void()>> jobs_;
  std::vector<std::thread> threads_;
  size_t idle_ = 0;
  bool stopping_ = false;
  std::atomic<bool> starved_{false};
};

}  // namespace qmv::sandbox
