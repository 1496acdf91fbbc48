#include "platform/linux/glib_main_loop.h"

#include <glib.h>

#include <chrono>
#include <utility>

namespace qmv {

// ---- the task queue's source ----

struct GLibMainLoop::TaskSource {
  GSource base;
  GLibMainLoop* owner;

  static gboolean ready(GSource* source, gint* timeout) {
    *timeout = -1;
    auto* self = reinterpret_cast<TaskSource*>(source);
    std::lock_guard lock(self->owner->mutex_);
    return self->owner->tasks_.empty() ? FALSE : TRUE;
  }
  static gboolean check(GSource* source) {
    gint ignored;
    return ready(source, &ignored);
  }
  static gboolean dispatch(GSource* source, GSourceFunc, gpointer) {
    reinterpret_cast<TaskSource*>(source)->owner->drainTasks();
    return G_SOURCE_CONTINUE;
  }
};

namespace {

// ---- descriptor watches ----

struct FdPayload {
  std::function<void(int)> ready;
  int fd;
  gpointer tag = nullptr;  // null while nothing is wanted or after an error
};

struct FdSource {
  GSource base;
  FdPayload* payload;
};

gboolean fdDispatch(GSource* source, GSourceFunc, gpointer) {
  FdPayload* p = reinterpret_cast<FdSource*>(source)->payload;
  if (p->tag == nullptr) return G_SOURCE_CONTINUE;
  const GIOCondition condition = g_source_query_unix_fd(source, p->tag);
  int events = 0;
  if (condition & G_IO_IN) events |= IoWatcher::kReadable;
  if (condition & G_IO_OUT) events |= IoWatcher::kWritable;
  if (condition & (G_IO_ERR | G_IO_HUP | G_IO_NVAL)) {
    events |= IoWatcher::kError;
    // poll() reports these whatever is asked for: pause until the owner says again.
    g_source_remove_unix_fd(source, p->tag);
    p->tag = nullptr;
  }
  // The owner may destroy the watch from here; GLib keeps the source (and so the
  // payload) alive until dispatch returns.
  if (events != 0) p->ready(events);
  return G_SOURCE_CONTINUE;
}

void fdFinalize(GSource* source) { delete reinterpret_cast<FdSource*>(source)->payload; }

GSourceFuncs kFdFuncs = {nullptr, nullptr, &fdDispatch, &fdFinalize, nullptr, nullptr};

class GLibWatch : public IoWatcher::Watch {
 public:
  GLibWatch(GMainContext* context, int fd, std::function<void(int)> ready)
      : source_(g_source_new(&kFdFuncs, sizeof(FdSource))) {
    reinterpret_cast<FdSource*>(source_)->payload = new FdPayload{std::move(ready), fd};
    g_source_attach(source_, context);
  }
  ~GLibWatch() override {
    g_source_destroy(source_);
    g_source_unref(source_);
  }

  void want(int events) override {
    FdPayload* p = reinterpret_cast<FdSource*>(source_)->payload;
    int condition = 0;
    if (events & IoWatcher::kReadable) condition |= G_IO_IN;
    if (events & IoWatcher::kWritable) condition |= G_IO_OUT;
    if (condition == 0) {
      // An idle descriptor leaves the poll set: a closed peer would otherwise be
      // reported (as a hang-up) on every iteration.
      if (p->tag != nullptr) g_source_remove_unix_fd(source_, p->tag);
      p->tag = nullptr;
    } else if (p->tag != nullptr) {
      g_source_modify_unix_fd(source_, p->tag, static_cast<GIOCondition>(condition));
    } else {
      p->tag = g_source_add_unix_fd(source_, p->fd, static_cast<GIOCondition>(condition));
    }
  }

 private:
  GSource* source_;
};

// ---- deadline timers ----

struct TimerSource {
  GSource base;
  std::function<void()>* fired;
};

gboolean timerDispatch(GSource* source, GSourceFunc, gpointer) {
  g_source_set_ready_time(source, -1);
  (*reinterpret_cast<TimerSource*>(source)->fired)();
  return G_SOURCE_CONTINUE;
}

void timerFinalize(GSource* source) { delete reinterpret_cast<TimerSource*>(source)->fired; }

GSourceFuncs kTimerFuncs = {nullptr, nullptr, &timerDispatch, &timerFinalize, nullptr, nullptr};

class GLibTimer : public IoWatcher::Timer {
 public:
  GLibTimer(GMainContext* context, std::function<void()> fired)
      : source_(g_source_new(&kTimerFuncs, sizeof(TimerSource))) {
    reinterpret_cast<TimerSource*>(source_)->fired = new std::function<void()>(std::move(fired));
    g_source_attach(source_, context);
  }
  ~GLibTimer() override {
    g_source_destroy(source_);
    g_source_unref(source_);
  }
  // GLib's ready time is on the monotonic clock, as is std::chrono::steady_clock here.
  void expireAt(IoWatcher::Clock::time_point at) override {
    const auto micros = std::chrono::duration_cast<std::chrono::microseconds>(at.time_since_epoch()).count();
    g_source_set_ready_time(source_, micros < 0 ? 0 : micros);
  }
  void cancel() override { g_source_set_ready_time(source_, -1); }

 private:
  GSource* source_;
};

}  // namespace

// ---- timers of the MainLoop port ----

struct GLibMainLoop::TimerEntry {
  GLibMainLoop* owner;
  TimerId id;
  Task task;
  bool repeating;
};

GLibMainLoop::GLibMainLoop(GMainContext* context)
    : context_(context ? g_main_context_ref(context) : g_main_context_ref_thread_default()),
      loop_(g_main_loop_new(context_, FALSE)),
      taskSource_(nullptr) {
  static GSourceFuncs taskFuncs = {&TaskSource::ready, &TaskSource::check, &TaskSource::dispatch,
                                   nullptr,           nullptr,             nullptr};
  taskSource_ = g_source_new(&taskFuncs, sizeof(TaskSource));
  reinterpret_cast<TaskSource*>(taskSource_)->owner = this;
  g_source_attach(taskSource_, context_);
}

GLibMainLoop::~GLibMainLoop() {
  g_source_destroy(taskSource_);
  g_source_unref(taskSource_);
  std::unordered_map<TimerId, GSource*> timers;
  {
    std::lock_guard lock(mutex_);
    timers.swap(timers_);
    tasks_.clear();
  }
  for (auto& [id, source] : timers) {
    g_source_destroy(source);
    g_source_unref(source);
  }
  g_main_loop_unref(loop_);
  g_main_context_unref(context_);
}

void GLibMainLoop::post(Task task) {
  {
    std::lock_guard lock(mutex_);
    tasks_.push_back(std::move(task));
  }
  g_main_context_wakeup(context_);
}

void GLibMainLoop::drainTasks() {
  std::deque<Task> ready;
  {
    std::lock_guard lock(mutex_);
    ready.swap(tasks_);
  }
  // Tasks posted while these run wait for the next dispatch, so the toolkit's events
  // are not starved by a task that keeps posting.
  for (Task& task : ready) task();
}

int GLibMainLoop::runTimer(void* data) {
  auto* entry = static_cast<TimerEntry*>(data);
  GLibMainLoop* self = entry->owner;
  GSource* owned = nullptr;
  {
    std::lock_guard lock(self->mutex_);
    auto it = self->timers_.find(entry->id);
    if (it == self->timers_.end()) return G_SOURCE_REMOVE;  // cancelled meanwhile
    if (!entry->repeating) {
      owned = it->second;
      self->timers_.erase(it);
    }
  }
  // GLib holds the source and its callback data while this runs, so the task may
  // cancel its own timer.
  entry->task();
  if (owned != nullptr) {
    g_source_unref(owned);
    return G_SOURCE_REMOVE;
  }
  return G_SOURCE_CONTINUE;
}

MainLoop::TimerId GLibMainLoop::addTimer(Duration delay, Task task, bool repeating) {
  const auto ms = static_cast<guint>(delay.count() < 0 ? 0 : delay.count());
  GSource* source = g_timeout_source_new(ms);
  TimerId id;
  {
    std::lock_guard lock(mutex_);
    id = nextId_++;
    timers_.emplace(id, source);
  }
  g_source_set_callback(source, &GLibMainLoop::runTimer, new TimerEntry{this, id, std::move(task), repeating},
                        [](gpointer data) { delete static_cast<TimerEntry*>(data); });
  g_source_attach(source, context_);
  return id;
}

MainLoop::TimerId GLibMainLoop::postAfter(Duration delay, Task task) { return addTimer(delay, std::move(task), false); }

MainLoop::TimerId GLibMainLoop::scheduleRepeating(Duration interval, Task task) {
  if (interval.count() <= 0) interval = Duration{1};
  return addTimer(interval, std::move(task), true);
}

void GLibMainLoop::cancelTimer(TimerId id) {
  GSource* source = nullptr;
  {
    std::lock_guard lock(mutex_);
    auto it = timers_.find(id);
    if (it == timers_.end()) return;
    source = it->second;
    timers_.erase(it);
  }
  g_source_destroy(source);
  g_source_unref(source);
}

void GLibMainLoop::run() {
  {
    std::lock_guard lock(mutex_);
    stopped_ = false;
  }
  g_main_loop_run(loop_);
}

bool GLibMainLoop::runUntil(const std::function<bool()>& done, Duration timeout) {
  {
    std::lock_guard lock(mutex_);
    stopped_ = false;
  }
  const auto deadline = std::chrono::steady_clock::now() + timeout;
  // Wakes the blocking iteration when the time is up.
  GSource* wake = g_timeout_source_new(static_cast<guint>(timeout.count() < 0 ? 0 : timeout.count()));
  g_source_set_callback(wake, [](gpointer) -> gboolean { return G_SOURCE_CONTINUE; }, nullptr, nullptr);
  g_source_attach(wake, context_);
  bool result = true;
  while (!done()) {
    bool stopped;
    {
      std::lock_guard lock(mutex_);
      stopped = stopped_;
    }
    if (stopped || std::chrono::steady_clock::now() >= deadline) {
      result = done();
      break;
    }
    g_main_context_iteration(context_, TRUE);
  }
  g_source_destroy(wake);
  g_source_unref(wake);
  return result;
}

void GLibMainLoop::stop() {
  {
    std::lock_guard lock(mutex_);
    stopped_ = true;
  }
  g_main_loop_quit(loop_);
  g_main_context_wakeup(context_);
}

std::int64_t GLibMainLoop::nowMillis() const {
  return std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now().time_since_epoch())
      .count();
}

std::unique_ptr<IoWatcher::Watch> GLibMainLoop::watch(int fd, std::function<void(int events)> ready) {
  if (fd < 0) return nullptr;
  return std::make_unique<GLibWatch>(context_, fd, std::move(ready));
}

std::unique_ptr<IoWatcher::Timer> GLibMainLoop::timer(std::function<void()> fired) {
  return std::make_unique<GLibTimer>(context_, std::move(fired));
}

}  // namespace qmv
