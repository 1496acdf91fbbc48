// The worker-thread driver: one thread polls the multi handle; sends and cancels reach
// it through a locked inbox and a wake-up of its poll.
#include <curl/curl.h>

#include <algorithm>
#include <chrono>
#include <mutex>
#include <optional>
#include <thread>
#include <utility>
#include <vector>

#include "platform/linux/detail/curl_driver.h"
#include "platform/linux/detail/curl_transfer.h"

namespace qmv::curl_detail {
namespace {

// Wakes the worker's curl_multi_poll; outlives the worker when a wake is still queued
// on a main loop, and then does nothing.
struct Waker {
  std::mutex mutex;
  CURLM* multi = nullptr;

  void wake() {
    std::lock_guard lock(mutex);
    if (multi != nullptr) curl_multi_wakeup(multi);
  }
  void detach() {
    std::lock_guard lock(mutex);
    multi = nullptr;
  }
};

class ThreadDriver : public CurlDriver {
 public:
  explicit ThreadDriver(int maxConcurrent) {
    initCurlOnce();
    multi_ = curl_multi_init();
    queue_ = std::make_unique<TransferQueue>(multi_, maxConcurrent);
    waker_->multi = multi_;
    thread_ = std::thread([this] { run(); });
  }

  ~ThreadDriver() override {
    {
      std::lock_guard lock(mutex_);
      stopping_ = true;
    }
    curl_multi_wakeup(multi_);
    thread_.join();
    waker_->detach();
    queue_.reset();
    curl_multi_cleanup(multi_);
  }

  void send(std::unique_ptr<Transfer> transfer) override {
    const auto loop = transfer->loop;
    bool wake;
    {
      std::lock_guard lock(mutex_);
      incoming_.push_back(std::move(transfer));
      // A worker that is not waiting will see the inbox before it waits again.
      wake = std::exchange(waiting_, false);
    }
    if (!wake) return;
    if (loop) {
      // Sends made in one turn of the main loop start together: the worker is woken
      // once, after the turn, instead of picking them up one by one.
      loop->post([waker = waker_] { waker->wake(); });
    } else {
      waker_->wake();
    }
  }

  void cancel(TransferId id) override {
    {
      std::lock_guard lock(mutex_);
      cancels_.push_back(id);
    }
    curl_multi_wakeup(multi_);
  }

 private:
  void run() {
    for (;;) {
      std::vector<std::unique_ptr<Transfer>> incoming;
      std::vector<TransferId> cancels;
      {
        std::lock_guard lock(mutex_);
        if (stopping_) return;
        incoming.swap(incoming_);
        cancels.swap(cancels_);
      }
      queue_->tick();
      for (auto& t : incoming) queue_->push(std::move(t));
      for (const TransferId id : cancels) queue_->cancel(id);
      queue_->startQueued();
      int running = 0;
      curl_multi_perform(multi_, &running);
      queue_->collectFinished();
      const auto idle = queue_->endIdle();
      queue_->flush();
      {
        std::lock_guard lock(mutex_);
        if (stopping_) return;
        // Slots freed by finished transfers, or new work: go round again at once.
        if (queue_->hasStartable() || !incoming_.empty() || !cancels_.empty()) continue;
        waiting_ = true;
      }
      curl_multi_poll(multi_, nullptr, 0, waitMs(idle), nullptr);
      std::lock_guard lock(mutex_);
      waiting_ = false;
    }
  }

  // At most a second, and no later than the next idle limit (curl shortens it further
  // for its own timeouts).
  int waitMs(std::optional<Clock::time_point> idle) const {
    constexpr Clock::duration kMaxWait = std::chrono::seconds(1);
    if (!idle) return static_cast<int>(std::chrono::ceil<std::chrono::milliseconds>(kMaxWait).count());
    const Clock::duration left = std::clamp(*idle - queue_->now(), Clock::duration::zero(), kMaxWait);
    return static_cast<int>(std::chrono::ceil<std::chrono::milliseconds>(left).count());
  }

  CURLM* multi_ = nullptr;
  std::unique_ptr<TransferQueue> queue_;  // worker thread only
  std::shared_ptr<Waker> waker_ = std::make_shared<Waker>();
  std::thread thread_;

  std::mutex mutex_;
  std::vector<std::unique_ptr<Transfer>> incoming_;
  std::vector<TransferId> cancels_;
  bool stopping_ = false;
  bool waiting_ = false;  // the worker is in (or about to enter) curl_multi_poll
};

}  // namespace

std::unique_ptr<CurlDriver> makeThreadDriver(int maxConcurrent) {
  return std::make_unique<ThreadDriver>(maxConcurrent);
}

}  // namespace qmv::curl_detail
