// The loop driver: curl's sockets and timer are watched by the main loop itself (Asio's
// reactor in the CLI, GLib's main context in the graphical client), so transfers, their
// completions and the interface share one thread.
//
// curl stops watching a kept-alive connection after every transfer and watches it again
// for the next. Sockets that curl opens through this driver keep their watch while idle
// (wanting nothing) and lose it only when curl closes them, which saves the loop from
// registering and deregistering them for every request; other descriptors (the
// resolver's) lose it at once.
#include <curl/curl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <chrono>
#include <memory>
#include <mutex>
#include <optional>
#include <type_traits>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

#include "core/common/loop_stall_probe.h"
#include "platform/linux/detail/curl_driver.h"
#include "platform/linux/detail/curl_transfer.h"
#include "platform/linux/io_watcher.h"

namespace qmv::curl_detail {
namespace {

static_assert(std::is_same_v<Clock, IoWatcher::Clock>);

class LoopState : public std::enable_shared_from_this<LoopState> {
 public:
  // Watches and the timer report into `this`: they are owned here and report nothing
  // once destroyed, which happens on the loop's thread.
  LoopState(MainLoop& loop, IoWatcher& watcher, int maxConcurrent)
      : loop_(loop), watcher_(watcher), timer_(watcher.timer([this] { timerFired(); })) {
    initCurlOnce();
    multi_ = curl_multi_init();
    curl_multi_setopt(multi_, CURLMOPT_SOCKETFUNCTION, &LoopState::onSocket);
    curl_multi_setopt(multi_, CURLMOPT_SOCKETDATA, this);
    curl_multi_setopt(multi_, CURLMOPT_TIMERFUNCTION, &LoopState::onTimer);
    curl_multi_setopt(multi_, CURLMOPT_TIMERDATA, this);
    queue_ = std::make_unique<TransferQueue>(
        multi_, maxConcurrent,
        [this](CURL* easy) {
          curl_easy_setopt(easy, CURLOPT_OPENSOCKETFUNCTION, &LoopState::onOpenSocket);
          curl_easy_setopt(easy, CURLOPT_OPENSOCKETDATA, this);
          curl_easy_setopt(easy, CURLOPT_CLOSESOCKETFUNCTION, &LoopState::onCloseSocket);
          curl_easy_setopt(easy, CURLOPT_CLOSESOCKETDATA, this);
        },
        /*completeInPlace=*/true);
  }

  ~LoopState() {
    // Removing handles and closing the connection cache still reports sockets to
    // onSocket, which must find the watches in place.
    queue_.reset();
    curl_multi_cleanup(multi_);
    watches_.clear();
    timer_.reset();
  }

  // Starts the transfers sent since the last batch. curl asks to be called at once after
  // each handle it is given; that call is made here, after the whole batch is on the
  // multi handle, rather than from a task of its own a turn later.
  void pushBatch(std::vector<std::unique_ptr<Transfer>>& transfers) {
    for (auto& transfer : transfers) queue_->push(std::move(transfer));
    queue_->tick();
    inBatch_ = true;
    settle();
    inBatch_ = false;
    if (std::exchange(timeoutDue_, false)) act(CURL_SOCKET_TIMEOUT, 0);
  }

  void cancel(TransferId id) {
    queue_->tick();
    queue_->cancel(id);
    settle();
  }

 private:
  // Lets curl act on a socket, or on its timeouts.
  void act(curl_socket_t fd, int mask) {
    LoopStallProbe::Stretch stretch("curl");
    queue_->tick();
    int running = 0;
    curl_multi_socket_action(multi_, fd, mask, &running);
    settle();
  }

  // Ends what curl reports done, starts what now fits, and runs the completions. Their
  // owners may end the transport from there: every way in holds this state meanwhile.
  void settle() {
    queue_->collectFinished();
    queue_->startQueued();
    if (const auto due = queue_->takeStartedDeadline()) armBy(*due);
    queue_->flush();
  }

  void ready(curl_socket_t fd, int events) {
    const auto keep = shared_from_this();
    int mask = 0;
    if (events & IoWatcher::kReadable) mask |= CURL_CSELECT_IN;
    if (events & IoWatcher::kWritable) mask |= CURL_CSELECT_OUT;
    if (events & IoWatcher::kError) mask |= CURL_CSELECT_ERR;
    act(fd, mask);
  }

  static int onSocket(CURL*, curl_socket_t fd, int what, void* self, void*) {
    auto* state = static_cast<LoopState*>(self);
    auto& watches = state->watches_;
    if (what == CURL_POLL_REMOVE) {
      if (auto it = watches.find(fd); it != watches.end()) {
        if (state->opened_.contains(fd)) {
          it->second->want(0);  // idle until curl wants it again or closes it
        } else {
          watches.erase(it);
        }
      }
      return 0;
    }
    auto& watch = watches[fd];
    if (!watch) {
      watch = state->watcher_.watch(fd, [state, fd](int events) { state->ready(fd, events); });
      if (!watch) {
        watches.erase(fd);
        return -1;  // curl fails the transfers of this multi handle
      }
    }
    int events = 0;
    if (what & CURL_POLL_IN) events |= IoWatcher::kReadable;
    if (what & CURL_POLL_OUT) events |= IoWatcher::kWritable;
    watch->want(events);
    return 0;
  }

  static curl_socket_t onOpenSocket(void* self, curlsocktype, curl_sockaddr* address) {
    const curl_socket_t fd = ::socket(address->family, address->socktype, address->protocol);
    if (fd != CURL_SOCKET_BAD) static_cast<LoopState*>(self)->opened_.insert(fd);
    return fd;
  }

  static int onCloseSocket(void* self, curl_socket_t fd) {
    auto* state = static_cast<LoopState*>(self);
    state->opened_.erase(fd);
    state->watches_.erase(fd);
    return ::close(fd);
  }

  // curl moves its deadline after almost every action, and each move of a loop's timer
  // may be a system call. The timer is therefore only moved earlier; when it fires
  // early, it is set again for the deadline that holds by then. The transfers' idle
  // limits share it the same way. A due deadline is acted on from a task, since curl
  // must not be called back into from here.
  static int onTimer(CURLM*, long timeoutMs, void* self) {
    auto* state = static_cast<LoopState*>(self);
    if (timeoutMs < 0) {
      state->deadline_.reset();
    } else if (timeoutMs == 0) {
      state->deadline_.reset();
      if (state->inBatch_) {
        state->timeoutDue_ = true;
      } else {
        state->postTimeout();
      }
    } else {
      // The queue is gone while the destructor lets curl go.
      const Clock::time_point now = state->queue_ ? state->queue_->now() : Clock::now();
      state->deadline_ = now + std::chrono::milliseconds(timeoutMs);
      state->armBy(*state->deadline_);
    }
    return 0;
  }

  void postTimeout() {
    if (std::exchange(timeoutPosted_, true)) return;
    loop_.post([weak = weak_from_this()] {
      if (auto self = weak.lock()) {
        self->timeoutPosted_ = false;
        self->act(CURL_SOCKET_TIMEOUT, 0);
      }
    });
  }

  // Makes the timer fire by `at`.
  void armBy(Clock::time_point at) {
    if (timerAt_ && *timerAt_ <= at) return;
    timerAt_ = at;
    timer_->expireAt(at);
  }

  void timerFired() {
    const auto keep = shared_from_this();
    timerAt_.reset();
    queue_->tick();
    if (deadline_ && *deadline_ <= queue_->now()) {
      deadline_.reset();
      act(CURL_SOCKET_TIMEOUT, 0);
    }
    const auto idle = queue_->endIdle();
    settle();
    if (deadline_) armBy(*deadline_);
    if (idle) armBy(*idle);
  }

  MainLoop& loop_;
  IoWatcher& watcher_;
  CURLM* multi_ = nullptr;
  std::unique_ptr<TransferQueue> queue_;
  std::unique_ptr<IoWatcher::Timer> timer_;
  std::optional<Clock::time_point> timerAt_;  // when the armed timer fires
  std::optional<Clock::time_point> deadline_;
  bool timeoutPosted_ = false;
  bool inBatch_ = false;     // pushBatch() is handing curl new transfers
  bool timeoutDue_ = false;  // curl asked for a call at once during pushBatch()
  std::unordered_map<curl_socket_t, std::unique_ptr<IoWatcher::Watch>> watches_;
  std::unordered_set<curl_socket_t> opened_;  // sockets curl opened through onOpenSocket
};

// Transfers sent and not yet handed to the loop. Shared with the task that hands them
// over, which may run after the driver is gone.
struct Outgoing {
  std::mutex mutex;
  std::vector<std::unique_ptr<Transfer>> transfers;
  std::vector<std::unique_ptr<Transfer>> spare;  // the last batch's storage, for the next
  std::weak_ptr<LoopState> state;
};

class LoopDriver : public CurlDriver {
 public:
  LoopDriver(MainLoop& loop, IoWatcher& watcher, int maxConcurrent)
      : loop_(loop), state_(std::make_shared<LoopState>(loop, watcher, maxConcurrent)) {
    outgoing_->state = state_;
  }

  // Sends and cancels become tasks of the loop: the sends of one turn start together,
  // in one task (posted by the first of them), and a cancel never overtakes the send it
  // refers to, whose task was posted before the cancel's.
  void send(std::unique_ptr<Transfer> transfer) override {
    bool first;
    {
      std::lock_guard lock(outgoing_->mutex);
      first = outgoing_->transfers.empty();
      outgoing_->transfers.push_back(std::move(transfer));
    }
    if (!first) return;
    loop_.post([outgoing = outgoing_] {
      LoopStallProbe::Stretch stretch("curl send");
      std::vector<std::unique_ptr<Transfer>> batch;
      {
        std::lock_guard lock(outgoing->mutex);
        batch.swap(outgoing->transfers);
        outgoing->transfers.swap(outgoing->spare);
      }
      if (auto state = outgoing->state.lock()) state->pushBatch(batch);
      batch.clear();
      std::lock_guard lock(outgoing->mutex);
      outgoing->spare.swap(batch);
    });
  }

  void cancel(TransferId id) override {
    loop_.post([weak = std::weak_ptr(state_), id] {
      if (auto state = weak.lock()) state->cancel(id);
    });
  }

 private:
  MainLoop& loop_;
  std::shared_ptr<LoopState> state_;
  std::shared_ptr<Outgoing> outgoing_ = std::make_shared<Outgoing>();
};

}  // namespace

std::unique_ptr<CurlDriver> makeLoopDriver(MainLoop& loop, IoWatcher& watcher, int maxConcurrent) {
  return std::make_unique<LoopDriver>(loop, watcher, maxConcurrent);
}

}  // namespace qmv::curl_detail
