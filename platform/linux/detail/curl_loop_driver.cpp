// The loop driver: curl's sockets and timer are watched by the main loop itself (Asio's
// reactor in the CLI, GLib's main context in the graphical client), so transfers, their
// completions and the interface share one thread.
#include <curl/curl.h>
#include <sys/select.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <memory>
#include <mutex>
#include <optional>
#include <type_traits>
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
    // Removing handles and closing the connection cache still closes sockets through
    // onCloseSocket, which must find the watches in place.
    queue_.reset();
    curl_multi_cleanup(multi_);
    sockets_.clear();
    timer_.reset();
  }

  // Starts the transfers sent since the last batch, all in one pass of curl.
  void pushBatch(std::vector<std::unique_ptr<Transfer>>& transfers) {
    for (auto& transfer : transfers) queue_->push(std::move(transfer));
    queue_->tick();
    queue_->startQueued();
    perform();
  }

  void cancel(TransferId id) {
    queue_->tick();
    queue_->cancel(id);
    settle();
  }

 private:
  // Lets curl move every transfer that can move, as one pass.
  void perform() {
    LoopStallProbe::Stretch stretch("curl");
    queue_->tick();
    int running = 0;
    curl_multi_perform(multi_, &running);
    settle();
  }

  // Ends what curl reports done, starts what now fits, runs the completions, and then
  // watches what curl waits for. Their owners may end the transport from there: every
  // way in holds this state meanwhile.
  void settle() {
    queue_->collectFinished();
    if (queue_->hasStartable()) {
      queue_->startQueued();
      performSoon();  // the new transfers' first steps
    }
    if (const auto due = queue_->takeStartedDeadline()) armBy(*due);
    queue_->flush();
    watchWhatCurlWaitsFor();
  }

  // curl is driven by curl_multi_perform, as an application with its own poll() would:
  // the socket interface (curl_multi_socket_action) keeps a table of sockets that curl
  // updates for every transfer, a socket leaving it when its connection goes idle and
  // coming back with the next request, which cost small requests more than the rest of
  // this driver. After each pass the descriptors curl waits for are read with
  // curl_multi_fdset and watched; a report on any of them starts the next pass. Sockets
  // curl opened keep their watch while idle (wanting nothing) and lose it only when curl
  // closes them, which saves the loop from registering them for every request; other
  // descriptors (the resolver's) lose it at once.
  void watchWhatCurlWaitsFor() {
    fd_set readable;
    fd_set writable;
    fd_set failed;
    FD_ZERO(&readable);
    FD_ZERO(&writable);
    FD_ZERO(&failed);
    int maxFd = -1;
    curl_multi_fdset(multi_, &readable, &writable, &failed, &maxFd);
    const auto wantedOf = [&](int fd) {
      if (fd > maxFd) return 0;
      return (FD_ISSET(fd, &readable) ? IoWatcher::kReadable : 0) |
             (FD_ISSET(fd, &writable) ? IoWatcher::kWritable : 0);
    };
    for (auto it = sockets_.begin(); it != sockets_.end();) {
      const int events = wantedOf(it->fd);
      if (events == 0 && !it->opened) {
        it = sockets_.erase(it);
        continue;
      }
      want(*it, events);
      ++it;
    }
    for (int fd = 0; fd <= maxFd; ++fd) {
      const int events = wantedOf(fd);
      if (events == 0 || find(fd) != sockets_.end()) continue;
      auto watch = watcher_.watch(fd, [this, fd](int reported) { onReady(fd, reported); });
      // A descriptor the loop cannot watch is left to curl's own timeouts.
      if (!watch) continue;
      want(sockets_.emplace_back(Socket{fd, /*opened=*/opened_.contains(fd), -1, std::move(watch)}), events);
    }
    long timeoutMs = -1;
    curl_multi_timeout(multi_, &timeoutMs);
    if (timeoutMs == 0) {
      performSoon();
    } else if (timeoutMs > 0) {
      deadline_ = queue_->now() + std::chrono::milliseconds(timeoutMs);
      armBy(*deadline_);
    } else {
      deadline_.reset();
    }
  }

  struct Socket {
    curl_socket_t fd;
    bool opened;  // curl opened it through onOpenSocket: watched until it is closed
    int wanted;   // as last told to the watch; -1 once it must be told again
    std::unique_ptr<IoWatcher::Watch> watch;
  };

  std::vector<Socket>::iterator find(curl_socket_t fd) {
    return std::find_if(sockets_.begin(), sockets_.end(), [fd](const Socket& s) { return s.fd == fd; });
  }

  static void want(Socket& socket, int events) {
    if (std::exchange(socket.wanted, events) != events) socket.watch->want(events);
  }

  void onReady(curl_socket_t fd, int reported) {
    // An error report pauses the watch until it is told again what to wait for.
    if ((reported & IoWatcher::kError) != 0) {
      if (const auto it = find(fd); it != sockets_.end()) it->wanted = -1;
    }
    performSoon();
  }

  // One pass for whatever the loop reported in this turn: the reports of several
  // sockets, and a due timeout, share it.
  void performSoon() {
    if (std::exchange(performPosted_, true)) return;
    loop_.post([weak = weak_from_this()] {
      if (auto self = weak.lock()) {
        self->performPosted_ = false;
        self->perform();
      }
    });
  }

  // curl_multi_fdset names descriptors below FD_SETSIZE only. A socket above would go
  // unwatched until its timeout, so it fails to open instead, at once and with curl's
  // message (socket() returning one there means none is free below).
  static curl_socket_t onOpenSocket(void* self, curlsocktype, curl_sockaddr* address) {
    const curl_socket_t fd = ::socket(address->family, address->socktype, address->protocol);
    if (fd == CURL_SOCKET_BAD) return fd;
    if (fd >= FD_SETSIZE) {
      ::close(fd);
      return CURL_SOCKET_BAD;
    }
    auto* state = static_cast<LoopState*>(self);
    state->opened_.insert(fd);
    // A watch left on this number belongs to a descriptor curl closed itself (the
    // resolver's), and the kernel dropped it from the loop then: the socket gets its own.
    if (const auto it = state->find(fd); it != state->sockets_.end()) state->sockets_.erase(it);
    return fd;
  }

  static int onCloseSocket(void* self, curl_socket_t fd) {
    auto* state = static_cast<LoopState*>(self);
    state->opened_.erase(fd);
    if (const auto it = state->find(fd); it != state->sockets_.end()) state->sockets_.erase(it);
    return ::close(fd);
  }

  // Each move of a loop's timer may be a system call, and curl moves its deadline after
  // almost every pass. The timer is therefore only moved earlier; when it fires early,
  // it is set again for the deadline that holds by then. The transfers' idle limits
  // share it the same way.
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
      perform();
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
  bool performPosted_ = false;
  std::vector<Socket> sockets_;               // the descriptors watched, a handful
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
