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

class AsioWatch : public IoWatcher::Watch {
 public:
  // A destroyed watch may still have waits in flight; they find it removed and do
  // nothing, even when the descriptor's number is reused.
  struct State {
    State(asio::io_context& io, std::function<void(int)> ready) : descriptor(io), ready(std::move(ready)) {}
    asio::posix::stream_descriptor descriptor;
    std::function<void(int)> ready;
    int wanted = 0;
    bool waiting[2] = {false, false};  // a wait for reading / for writing is in flight
    // Counts the registrations: a wait of an earlier one, cancelled by re-registering,
    // must not mark the current one's as over.
    unsigned registration = 0;
    bool writeRegistered = false;  // the reactor has been asked to report writability
    bool removed = false;
  };

  explicit AsioWatch(std::shared_ptr<State> state) : state_(std::move(state)) {}
  ~AsioWatch() override {
    state_->removed = true;
    asio::error_code ignored;
    state_->descriptor.cancel(ignored);
    // The owner closes the descriptor; asio only lets go of it.
    state_->descriptor.release();
  }

  void want(int events) override {
    state_->wanted = events;
    if ((events & IoWatcher::kWritable) == 0 && state_->writeRegistered && !state_->waiting[1]) {
      dropWritability(state_);
    }
    arm(state_);
  }

 private:
  // Once asked for writability, the reactor keeps it for the descriptor's life, and a
  // socket is then reported each time the peer acknowledges data, although nobody waits
  // to write: a wake-up of the loop per small request on a kept-alive connection. The
  // descriptor is registered afresh without it once the owner stops wanting it (after a
  // connection is made, for a socket).
  static void dropWritability(const std::shared_ptr<State>& state) {
    const int fd = state->descriptor.release();
    ++state->registration;
    state->waiting[0] = state->waiting[1] = false;
    state->writeRegistered = false;
    asio::error_code ec;
    state->descriptor.assign(fd, ec);
    if (!ec) return;
    // The owner hears of it from the loop, as of any failed wait, not from within its
    // own call.
    state->wanted = 0;
    asio::post(state->descriptor.get_executor(), [state] {
      if (!state->removed) state->ready(IoWatcher::kError);
    });
  }

  static void arm(const std::shared_ptr<State>& state) {
    for (const int event : {IoWatcher::kReadable, IoWatcher::kWritable}) {
      const int slot = event == IoWatcher::kReadable ? 0 : 1;
      if ((state->wanted & event) == 0 || state->waiting[slot]) continue;
      state->waiting[slot] = true;
      if (event == IoWatcher::kWritable) state->writeRegistered = true;
      state->descriptor.async_wait(
          event == IoWatcher::kReadable ? asio::posix::stream_descriptor::wait_read
                                        : asio::posix::stream_descriptor::wait_write,
          [state, event, slot, registration = state->registration](const asio::error_code& ec) {
            if (registration != state->registration) return;
            state->waiting[slot] = false;
            if (state->removed || ec == asio::error::operation_aborted || (state->wanted & event) == 0) return;
            state->ready(ec ? event | IoWatcher::kError : event);
            // After an error the descriptor would be reported again at once: wait for
            // the owner to say what it wants next rather than spin.
            if (!state->removed && !ec) arm(state);
          });
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
  auto state = std::make_shared<AsioWatch::State>(impl_->io, std::move(ready));
  asio::error_code ec;
  state->descriptor.assign(fd, ec);
  if (ec) return nullptr;
  return std::make_unique<AsioWatch>(std::move(state));
}

std::unique_ptr<IoWatcher::Timer> AsioMainLoop::timer(std::function<void()> fired) {
  return std::make_unique<AsioTimer>(impl_->io, std::move(fired));
}

}  // namespace qmv
