#include "platform/linux/asio_main_loop.h"

#include <asio.hpp>
#include <chrono>

#include "core/common/loop_stall_probe.h"

namespace qmv {

struct AsioMainLoop::Impl {
  // One thread at a time runs the loop and touches its descriptors and timers; only
  // posting comes from other threads. Asio then needs no lock per descriptor event, and
  // queues the loop thread's own posts without taking the scheduler's.
  asio::io_context io{ASIO_CONCURRENCY_HINT_UNSAFE_IO};
  // Keeps run() and runUntil() waiting when no work is queued.
  asio::executor_work_guard<asio::io_context::executor_type> guard{io.get_executor()};
};

struct AsioMainLoop::TimerState {
  TimerState(asio::io_context& io, TimerId id, Duration interval, Task task)
      : timer(io), id(id), interval(interval), task(std::move(task)) {}
  asio::steady_timer timer;
  TimerId id;
  Duration interval;  // zero for one-shot timers
  Task task;
};

AsioMainLoop::AsioMainLoop() : impl_(std::make_unique<Impl>()) {}

AsioMainLoop::~AsioMainLoop() {
  impl_->guard.reset();
  std::lock_guard lock(mutex_);
  timers_.clear();
}

void AsioMainLoop::post(Task task) {
  if (!LoopStallProbe::enabled()) {
    asio::post(impl_->io, std::move(task));
    return;
  }
  asio::post(impl_->io, [task = std::move(task)] {
    LoopStallProbe::Stretch stretch("task");
    task();
  });
}

void AsioMainLoop::arm(const std::shared_ptr<TimerState>& state, Duration delay) {
  state->timer.expires_after(delay);
  state->timer.async_wait([this, weak = std::weak_ptr(state)](const asio::error_code& ec) {
    LoopStallProbe::Stretch stretch("timer");
    auto state = weak.lock();
    if (ec || !state) return;
    {
      std::lock_guard lock(mutex_);
      // Cancelled from another thread after the wait had already completed.
      if (!timers_.contains(state->id)) return;
      if (state->interval.count() == 0) timers_.erase(state->id);
    }
    if (state->interval.count() > 0) arm(state, state->interval);
    state->task();
  });
}

MainLoop::TimerId AsioMainLoop::postAfter(Duration delay, Task task) {
  TimerId id;
  std::shared_ptr<TimerState> state;
  {
    std::lock_guard lock(mutex_);
    id = nextId_++;
    state = std::make_shared<TimerState>(impl_->io, id, Duration{0}, std::move(task));
    timers_.emplace(id, state);
  }
  // Timer objects are not thread-safe: arm them on the loop thread.
  asio::post(impl_->io, [this, state, delay] { arm(state, delay); });
  return id;
}

MainLoop::TimerId AsioMainLoop::scheduleRepeating(Duration interval, Task task) {
  if (interval.count() <= 0) interval = Duration{1};
  TimerId id;
  std::shared_ptr<TimerState> state;
  {
    std::lock_guard lock(mutex_);
    id = nextId_++;
    state = std::make_shared<TimerState>(impl_->io, id, interval, std::move(task));
    timers_.emplace(id, state);
  }
  asio::post(impl_->io, [this, state, interval] { arm(state, interval); });
  return id;
}

void AsioMainLoop::cancelTimer(TimerId id) {
  std::shared_ptr<TimerState> state;
  {
    std::lock_guard lock(mutex_);
    auto it = timers_.find(id);
    if (it == timers_.end()) return;
    state = std::move(it->second);
    timers_.erase(it);
  }
  asio::post(impl_->io, [state] { state->timer.cancel(); });
}

void AsioMainLoop::run() {
  impl_->io.restart();
  impl_->io.run();
}

bool AsioMainLoop::runUntil(const std::function<bool()>& done, Duration timeout) {
  const auto deadline = std::chrono::steady_clock::now() + timeout;
  impl_->io.restart();
  while (!done()) {
    // Nothing run: the deadline passed or the loop was stopped (a stopped loop runs
    // nothing, so a task that stops it ends the wait at the next turn).
    if (impl_->io.run_one_until(deadline) == 0) return done();
  }
  return true;
}

void AsioMainLoop::stop() { impl_->io.stop(); }

std::int64_t AsioMainLoop::nowMillis() const {
  return std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now().time_since_epoch())
      .count();
}

namespace {

// Watches go to Asio's reactor directly rather than through a stream_descriptor: a
// descriptor's async_wait makes the reactor look at the descriptor afresh with a system
// call every time (epoll_ctl), which a socket waiting for each small answer paid once per
// request. A wait of its own may skip that look where nothing can have been missed.
class AsioWatch : public IoWatcher::Watch {
 public:
  // A destroyed watch may still have waits in flight; they find it removed and do
  // nothing, even when the descriptor's number is reused.
  struct State {
    State(asio::io_context& io, int fd, std::function<void(int)> ready)
        : io(io), reactor(asio::use_service<asio::detail::reactor>(io)), fd(fd), ready(std::move(ready)) {
      // Makes the loop run the reactor, as Asio's own descriptor objects do.
      reactor.init_task();
    }
    ~State() {
      if (data != nullptr) reactor.cleanup_descriptor_data(data);
    }
    State(const State&) = delete;
    State& operator=(const State&) = delete;

    bool registerWithReactor() { return reactor.register_descriptor(fd, data) == 0; }
    // Drops the registration; waits in flight complete as aborted.
    void deregister() {
      reactor.deregister_descriptor(fd, data, /*closing=*/false);
      reactor.cleanup_descriptor_data(data);
      data = nullptr;
    }

    asio::io_context& io;
    asio::detail::reactor& reactor;
    asio::detail::reactor::per_descriptor_data data = nullptr;
    const int fd;
    std::function<void(int)> ready;
    int wanted = 0;
    bool waiting[2] = {false, false};  // a wait for reading / for writing is in flight
    // Counts the registrations: a wait of an earlier one, aborted by re-registering,
    // must not mark the current one's as over.
    unsigned registration = 0;
    bool writeRegistered = false;  // the reactor has been asked to report writability
    // The owner was told the descriptor was readable and then stopped wanting to read:
    // what was there it has dealt with, and anything that arrives later wakes the next
    // read wait, which can skip the reactor's fresh look.
    bool readSettled = false;
    bool removed = false;
  };

  explicit AsioWatch(std::shared_ptr<State> state) : state_(std::move(state)) {}
  ~AsioWatch() override {
    state_->removed = true;
    // The owner closes the descriptor; the reactor only lets go of it.
    state_->deregister();
  }

  void want(int events) override {
    state_->wanted = events;
    if ((events & IoWatcher::kWritable) == 0 && state_->writeRegistered && !state_->waiting[1]) {
      dropWritability(state_);
    }
    arm(state_);
  }

 private:
  // One wait for readiness. The reactor completes it when the descriptor is reported, or
  // at once when started while a report it has not handed to a wait is pending.
  class WaitOp : public asio::detail::reactor_op {
   public:
    WaitOp(std::shared_ptr<State> state, int event)
        : reactor_op(asio::error_code(), &WaitOp::perform, &WaitOp::complete),
          state_(std::move(state)),
          event_(event),
          registration_(state_->registration) {}

   private:
    // Readiness is all a wait asks for. "Exhausted" tells the reactor that a later wait
    // needs a new report, not the one this wait took.
    static status perform(reactor_op*) { return done_and_exhausted; }

    static void complete(void* owner, asio::detail::operation* base, const asio::error_code&, std::size_t) {
      std::unique_ptr<WaitOp> op(static_cast<WaitOp*>(base));
      if (owner == nullptr) return;  // the loop is being destroyed: nothing is called
      const std::shared_ptr<State> state = std::move(op->state_);
      const asio::error_code ec = op->ec_;
      const int event = op->event_;
      const unsigned registration = op->registration_;
      op.reset();
      finished(state, event, registration, ec);
    }

    std::shared_ptr<State> state_;
    int event_;
    unsigned registration_;
  };

  static void finished(const std::shared_ptr<State>& state, int event, unsigned registration,
                       const asio::error_code& ec) {
    if (registration != state->registration) return;
    const int slot = event == IoWatcher::kReadable ? 0 : 1;
    state->waiting[slot] = false;
    if (state->removed || ec == asio::error::operation_aborted || (state->wanted & event) == 0) {
      // A report nobody was told of: the next read wait must look afresh.
      if (slot == 0) state->readSettled = false;
      return;
    }
    state->ready(ec ? event | IoWatcher::kError : event);
    if (state->removed) return;
    if (slot == 0 && (state->wanted & IoWatcher::kReadable) == 0) state->readSettled = true;
    // After an error the descriptor would be reported again at once: wait for the owner
    // to say what it wants next rather than spin.
    if (!ec) arm(state);
  }

  // Once asked for writability, the reactor keeps it for the descriptor's life, and a
  // socket is then reported each time the peer acknowledges data, although nobody waits
  // to write: a wake-up of the loop per small request on a kept-alive connection. The
  // descriptor is registered afresh without it once the owner stops wanting it (after a
  // connection is made, for a socket).
  static void dropWritability(const std::shared_ptr<State>& state) {
    state->deregister();
    ++state->registration;
    state->waiting[0] = state->waiting[1] = false;
    state->writeRegistered = false;
    state->readSettled = false;
    if (state->registerWithReactor()) return;
    // The owner hears of it from the loop, as of any failed wait, not from within its
    // own call.
    state->wanted = 0;
    asio::post(state->io, [state] {
      if (!state->removed) state->ready(IoWatcher::kError);
    });
  }

  static void arm(const std::shared_ptr<State>& state) {
    if (state->data == nullptr) return;
    for (const int event : {IoWatcher::kReadable, IoWatcher::kWritable}) {
      const int slot = event == IoWatcher::kReadable ? 0 : 1;
      if ((state->wanted & event) == 0 || state->waiting[slot]) continue;
      state->waiting[slot] = true;
      if (event == IoWatcher::kWritable) state->writeRegistered = true;
      // Without the fresh look, a report the reactor has seen since the last wait
      // completes this one at once; one the owner was not told of cannot be skipped.
      const bool skipLook = slot == 0 && std::exchange(state->readSettled, false);
      state->reactor.start_op(slot == 0 ? asio::detail::reactor::read_op : asio::detail::reactor::write_op, state->fd,
                              state->data, new WaitOp(state, event), /*is_continuation=*/false,
                              /*allow_speculative=*/skipLook);
    }
  }

  std::shared_ptr<State> state_;
};

class AsioTimer : public IoWatcher::Timer {
 public:
  AsioTimer(asio::io_context& io, std::function<void()> fired)
      : state_(std::make_shared<State>(io, std::move(fired))) {}
  ~AsioTimer() override { state_->timer.cancel(); }

  void expireAt(IoWatcher::Clock::time_point at) override {
    state_->timer.expires_at(at);
    state_->timer.async_wait([weak = std::weak_ptr(state_)](const asio::error_code& ec) {
      if (ec == asio::error::operation_aborted) return;
      if (auto state = weak.lock()) state->fired();
    });
  }
  void cancel() override { state_->timer.cancel(); }

 private:
  struct State {
    State(asio::io_context& io, std::function<void()> fired) : timer(io), fired(std::move(fired)) {}
    asio::steady_timer timer;
    std::function<void()> fired;
  };
  std::shared_ptr<State> state_;
};

}  // namespace

std::unique_ptr<IoWatcher::Watch> AsioMainLoop::watch(int fd, std::function<void(int events)> ready) {
  auto state = std::make_shared<AsioWatch::State>(impl_->io, fd, std::move(ready));
  if (!state->registerWithReactor()) return nullptr;
  return std::make_unique<AsioWatch>(std::move(state));
}

std::unique_ptr<IoWatcher::Timer> AsioMainLoop::timer(std::function<void()> fired) {
  return std::make_unique<AsioTimer>(impl_->io, std::move(fired));
}

}  // namespace qmv
