#pragma once
// WorkerPool: the threads that serve the sandbox's requests. Each job serves one request
// that has arrived; the pool starts threads as jobs arrive (up to a maximum) instead of
// all at once. REQUIRES: no enqueue after shutdown (the server stops accepting first).
#include <httplib.h>

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

 private:
  void work();

  const size_t maxThreads_;
  std::mutex mutex_;
  std::condition_variable ready_;
  std::deque<std::function<void()>> jobs_;
  std::vector<std::thread> threads_;
  size_t idle_ = 0;
  bool stopping_ = false;
};

}  // namespace qmv::sandbox
