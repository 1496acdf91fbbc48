#pragma once
// A fixed pool of worker threads. The newest work runs first: the rows just scrolled into
// view ask last and matter most. Destruction drops work not yet started and joins.
#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

#include "platform/work_queue.h"

namespace qmv {

class ThreadWorkQueue : public WorkQueue {
 public:
  explicit ThreadWorkQueue(int threads = 2);
  ~ThreadWorkQueue() override;
  ThreadWorkQueue(const ThreadWorkQueue&) = delete;
  ThreadWorkQueue& operator=(const ThreadWorkQueue&) = delete;

  void run(std::function<void()> work) override;

 private:
  void serve();

  std::mutex mutex_;
  std::condition_variable cv_;
  std::deque<std::function<void()>> work_;
  bool stopping_ = false;
  std::vector<std::thread> threads_;
};

}  // namespace qmv
