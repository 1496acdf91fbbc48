#pragma once
// The interface thread of the graphical client: a GLib main context (GTK's own by
// default), so that the core's tasks, timers and HTTP transfers run between the toolkit's
// events on one thread. Tasks posted from any thread wait in one queue that a single
// source of the context drains; timers are timeout sources; descriptors and deadlines
// of adapters are unix-fd and ready-time sources.
#include <cstdint>
#include <deque>
#include <memory>
#include <mutex>
#include <unordered_map>

#include "platform/linux/io_watcher.h"
#include "platform/main_loop.h"

typedef struct _GMainContext GMainContext;
typedef struct _GMainLoop GMainLoop;
typedef struct _GSource GSource;

namespace qmv {

class GLibMainLoop : public MainLoop, public IoWatcher {
 public:
  // `context` null: the thread-default main context of the process (GTK's).
  explicit GLibMainLoop(GMainContext* context = nullptr);
  // Drops queued tasks and timers that have not run.
  ~GLibMainLoop() override;
  GLibMainLoop(const GLibMainLoop&) = delete;
  GLibMainLoop& operator=(const GLibMainLoop&) = delete;

  void post(Task task) override;
  TimerId postAfter(Duration delay, Task task) override;
  TimerId scheduleRepeating(Duration interval, Task task) override;
  void cancelTimer(TimerId id) override;
  // Iterates the context until stop(); a front end that runs the toolkit's own loop
  // (g_application_run) never calls it.
  void run() override;
  bool runUntil(const std::function<bool()>& done, Duration timeout) override;
  void stop() override;
  std::int64_t nowMillis() const override;

  std::unique_ptr<Watch> watch(int fd, std::function<void(int events)> ready) override;
  std::unique_ptr<Timer> timer(std::function<void()> fired) override;

  GMainContext* context() const { return context_; }

 private:
  struct TaskSource;
  struct TimerEntry;
  static int runTimer(void* entry);
  void drainTasks();
  TimerId addTimer(Duration delay, Task task, bool repeating);

  GMainContext* context_;
  GMainLoop* loop_;
  GSource* taskSource_;
  std::mutex mutex_;
  std::deque<Task> tasks_;
  std::unordered_map<TimerId, GSource*> timers_;
  TimerId nextId_ = 1;
  bool stopped_ = false;  // set by stop(), cleared when run() or runUntil() begins
};

}  // namespace qmv
