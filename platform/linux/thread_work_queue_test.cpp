#include "platform/linux/thread_work_queue.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <future>
#include <mutex>
#include <thread>
#include <vector>

namespace qmv {
namespace {

TEST(ThreadWorkQueueTest, RunsNewestFirstAndDropsUnstartedWorkOnDestruction) {
  std::promise<void> release;
  std::shared_future<void> released = release.get_future().share();
  std::atomic<bool> blockerRunning{false};
  std::mutex mutex;
  std::vector<int> order;
  std::atomic<int> late{0};
  std::promise<void> hold;
  std::shared_future<void> held = hold.get_future().share();
  std::thread releaser;
  {
    ThreadWorkQueue queue(1);
    queue.run([&] {
      blockerRunning = true;
      released.wait();
    });
    while (!blockerRunning) std::this_thread::sleep_for(std::chrono::milliseconds(1));
    for (int i = 0; i < 3; ++i) {
      queue.run([&, i] {
        std::lock_guard lock(mutex);
        order.push_back(i);
      });
    }
    release.set_value();
    while (true) {
      std::lock_guard lock(mutex);
      if (order.size() == 3) break;
    }
    EXPECT_EQ(order, (std::vector<int>{2, 1, 0}));

    blockerRunning = false;
    queue.run([&] {
      blockerRunning = true;
      held.wait();
    });
    while (!blockerRunning) std::this_thread::sleep_for(std::chrono::milliseconds(1));
    for (int i = 0; i < 5; ++i) queue.run([&] { ++late; });
    // Released only once destruction has begun, so the five are still waiting then.
    releaser = std::thread([&] {
      std::this_thread::sleep_for(std::chrono::milliseconds(50));
      hold.set_value();
    });
  }
  releaser.join();
  EXPECT_EQ(late.load(), 0);
}

}  // namespace
}  // namespace qmv
