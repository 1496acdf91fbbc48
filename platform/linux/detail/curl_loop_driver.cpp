// The loop driver: curl's sockets and timer are watched by the Asio reactor of the main
// loop, so transfers, their completions and the interface share one thread.
//
// Asio's reactor is edge-triggered, but each wait re-arms the descriptor, and the kernel
// then reports a descriptor that is ready already: curl is told about every socket it
// waits on that is ready, as it expects.
//
// curl stops watching a kept-alive connection after every transfer and watches it again
// for the next. Sockets that curl opens through this driver stay registered with the
// reactor while idle, and leave it only when curl closes them, which saves registering
// and deregistering them for every request; other descriptors (the resolver's) leave it
// at once.
#include <curl/curl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <asio.hpp>
#include <chrono>
#include <memory>
#include <optional>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "core/common/loop_stall_probe.h"
#include "platform/linux/detail/curl_driver.h"
#include "platform/linux/detail/curl_transfer.h"

namespace qmv::curl_detail {
namespace {

// One socket curl asked to watch. A removed watch may still have waits in flight; they
// find it removed and do nothing, even when curl reuses the descriptor's number.
struct Watch {
  Watch(asio::io_context& io, curl_socket_t fd) : descriptor(io), fd(fd) {}
  asio::posix::stream_descriptor descriptor;
  curl_socket_t fd;
  int wanted = 0;  // CURL_POLL_IN, CURL_POLL_OUT or both
  bool waitingIn = false;
  bool waitingOut = false;
  bool removed = false;

  bool& waiting(int direction) { return direction == CURL_POLL_IN ? waitingIn : waitingOut; }
};

using Clock = std::chrono::steady_clock;

class LoopState : public std::enable_shared_from_this<LoopState> {
 public:
  LoopState(asio::io_context& io, int maxConcurrent) : io_(io), timer_(io) {
    initCurlOnce();
    multi_ = curl_multi_init();
    curl_multi_setopt(multi_, CURLMOPT_SOCKETFUNCTION, &LoopState::onSocket);
    curl_multi_setopt(multi_, CURLMOPT_SOCKETDATA, this);
    curl_multi_setopt(multi_, CURLMOPT_TIMERFUNCTION, &LoopState::onTimer);
    curl_multi_setopt(multi_, CURLMOPT_TIMERDATA, this);
    queue_ = std::make_unique<TransferQueue>(multi_, maxConcurrent, [this](CURL* easy) {
      curl_easy_setopt(easy, CURLOPT_OPENSOCKETFUNCTION, &LoopState::onOpenSocket);
      curl_easy_setopt(easy, CURLOPT_OPENSOCKETDATA, this);
      curl_easy_setopt(easy, CURLOPT_CLOSESOCKETFUNCTION, &LoopState::onCloseSocket);
      curl_easy_setopt(easy, CURLOPT_CLOSESOCKETDATA, this);
    });
  }

  ~LoopState() {
    // Removing handles and closing the connection cache still reports sockets to
    // onSocket, which must find the watches in place.
    queue_.reset();
    curl_multi_cleanup(multi_);
    for (auto& [fd, watch] : watches_) forget(*watch);
    watches_.clear();
    timer_.cancel();
  }

  void push(std::unique_ptr<Transfer> transfer) {
    queue_->push(std::move(transfer));
    settle();
  }

  void cancel(TransferId id) {
    queue_->cancel(id);
    settle();
  }

 private:
  // Lets curl act on a socket, or on its timeouts.
  void act(curl_socket_t fd, int mask) {
    LoopStallProbe::Stretch stretch("curl");
    int running = 0;
    curl_multi_socket_action(multi_, fd, mask, &running);
    settle();
  }

  // Ends what curl reports done, starts what now fits, and posts the completions.
  void settle() {
    queue_->collectFinished();
    queue_->startQueued();
    queue_->flush();
  }

  void arm(const std::shared_ptr<Watch>& watch) {
    for (const int direction : {CURL_POLL_IN, CURL_POLL_OUT}) {
      if ((watch->wanted & direction) == 0 || watch->waiting(direction)) continue;
      watch->waiting(direction) = true;
      watch->descriptor.async_wait(direction == CURL_POLL_IN ? asio::posix::stream_descriptor::wait_read
                                                             : asio::posix::stream_descriptor::wait_write,
                                   [weak = weak_from_this(), watch, direction](const asio::error_code& ec) {
                                     if (auto self = weak.lock()) self->ready(watch, direction, ec);
                                   });
    }
  }

  void ready(const std::shared_ptr<Watch>& watch, int direction, const asio::error_code& ec) {
    watch->waiting(direction) = false;
    if (watch->removed || ec == asio::error::operation_aborted || (watch->wanted & direction) == 0) return;
    int mask = direction == CURL_POLL_IN ? CURL_CSELECT_IN : CURL_CSELECT_OUT;
    if (ec) mask |= CURL_CSELECT_ERR;
    act(watch->fd, mask);
    // A descriptor the reactor reports an error for would report it again at once: wait
    // for curl to say what it wants next rather than spin.
    if (!watch->removed && !ec) arm(watch);
  }

  static void forget(Watch& watch) {
    watch.removed = true;
    asio::error_code ignored;
    watch.descriptor.cancel(ignored);
    // curl owns the descriptor and closes it; asio only lets go of it.
    watch.descriptor.release();
  }

  static int onSocket(CURL*, curl_socket_t fd, int what, void* self, void*) {
    auto* state = static_cast<LoopState*>(self);
    auto& watches = state->watches_;
    if (what == CURL_POLL_REMOVE) {
      if (auto it = watches.find(fd); it != watches.end()) {
        if (state->opened_.contains(fd)) {
          it->second->wanted = 0;  // idle until curl wants it again or closes it
        } else {
          forget(*it->second);
          watches.erase(it);
        }
      }
      return 0;
    }
    auto& watch = watches[fd];
    if (!watch) {
      watch = std::make_shared<Watch>(state->io_, fd);
      asio::error_code ec;
      watch->descriptor.assign(fd, ec);
      if (ec) {
        watches.erase(fd);
        return -1;  // curl fails the transfers of this multi handle
      }
    }
    watch->wanted = what;
    state->arm(watch);
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
    if (auto it = state->watches_.find(fd); it != state->watches_.end()) {
      forget(*it->second);
      state->watches_.erase(it);
    }
    return ::close(fd);
  }

  // curl moves its deadline after almost every action, and each move of an Asio timer
  // is a system call. The timer is therefore only moved earlier; when it fires early, it
  // is set again for the deadline that holds by then. A due deadline is acted on from a
  // task, since curl must not be called back into from here.
  static int onTimer(CURLM*, long timeoutMs, void* self) {
    auto* state = static_cast<LoopState*>(self);
    if (timeoutMs < 0) {
      state->deadline_.reset();
    } else if (timeoutMs == 0) {
      state->deadline_.reset();
      state->postTimeout();
    } else {
      state->deadline_ = Clock::now() + std::chrono::milliseconds(timeoutMs);
      if (!state->timerSet_ || *state->deadline_ < state->timer_.expiry()) state->setTimer(*state->deadline_);
    }
    return 0;
  }

  void postTimeout() {
    if (std::exchange(timeoutPosted_, true)) return;
    asio::post(io_, [weak = weak_from_this()] {
      if (auto self = weak.lock()) {
        self->timeoutPosted_ = false;
        self->act(CURL_SOCKET_TIMEOUT, 0);
      }
    });
  }

  void setTimer(Clock::time_point at) {
    timerSet_ = true;
    timer_.expires_at(at);
    timer_.async_wait([weak = weak_from_this()](const asio::error_code& ec) {
      if (ec == asio::error::operation_aborted) return;
      if (auto self = weak.lock()) self->timerFired();
    });
  }

  void timerFired() {
    timerSet_ = false;
    if (!deadline_) return;
    if (*deadline_ > Clock::now()) {
      setTimer(*deadline_);
      return;
    }
    deadline_.reset();
    act(CURL_SOCKET_TIMEOUT, 0);
  }

  asio::io_context& io_;
  CURLM* multi_ = nullptr;
  std::unique_ptr<TransferQueue> queue_;
  asio::steady_timer timer_;
  bool timerSet_ = false;  // a wait on timer_ is in flight
  std::optional<Clock::time_point> deadline_;
  bool timeoutPosted_ = false;
  std::unordered_map<curl_socket_t, std::shared_ptr<Watch>> watches_;
  std::unordered_set<curl_socket_t> opened_;  // sockets curl opened through onOpenSocket
};

class LoopDriver : public CurlDriver {
 public:
  LoopDriver(asio::io_context& io, int maxConcurrent)
      : io_(io), state_(std::make_shared<LoopState>(io, maxConcurrent)) {}

  // Sends and cancels become tasks of the loop: the sends of one turn start together,
  // and a cancel never overtakes the send it refers to.
  void send(std::unique_ptr<Transfer> transfer) override {
    asio::post(io_, [weak = std::weak_ptr(state_), transfer = std::move(transfer)]() mutable {
      LoopStallProbe::Stretch stretch("curl send");
      if (auto state = weak.lock()) state->push(std::move(transfer));
    });
  }

  void cancel(TransferId id) override {
    asio::post(io_, [weak = std::weak_ptr(state_), id] {
      if (auto state = weak.lock()) state->cancel(id);
    });
  }

 private:
  asio::io_context& io_;
  std::shared_ptr<LoopState> state_;
};

}  // namespace

std::unique_ptr<CurlDriver> makeLoopDriver(asio::io_context& io, int maxConcurrent) {
  return std::make_unique<LoopDriver>(io, maxConcurrent);
}

}  // namespace qmv::curl_detail
