#include "core/common/loop_stall_probe.h"

#include <time.h>

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <mutex>

namespace qmv {
namespace {

bool fromEnvironment() {
  const char* value = std::getenv("QMV_LOOP_STALL");
  return value != nullptr && *value != '\0' && std::string_view(value) != "0";
}

std::atomic<bool>& switchedOn() {
  static std::atomic<bool> on{fromEnvironment()};
  return on;
}

struct Shared {
  std::mutex mutex;
  LoopStallProbe::Summary summary;
};

Shared& shared() {
  static Shared instance;
  return instance;
}

thread_local int depth = 0;
thread_local std::string currentNote;

std::chrono::nanoseconds threadCpu() {
  timespec ts{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &ts);
  return std::chrono::seconds(ts.tv_sec) + std::chrono::nanoseconds(ts.tv_nsec);
}

double millis(std::chrono::nanoseconds span) { return std::chrono::duration<double, std::milli>(span).count(); }

}  // namespace

bool LoopStallProbe::enabled() { return switchedOn().load(std::memory_order_relaxed); }

void LoopStallProbe::setEnabled(bool on) { switchedOn() = on; }

LoopStallProbe::Stretch::Stretch(const char* kind) : kind_(kind) {
  if (!enabled()) return;
  counted_ = true;
  outermost_ = depth++ == 0;
  if (!outermost_) return;
  currentNote.clear();
  startCpu_ = threadCpu();
  start_ = std::chrono::steady_clock::now();
}

LoopStallProbe::Stretch::~Stretch() {
  if (!counted_) return;
  --depth;
  if (!outermost_) return;
  const auto span = std::chrono::steady_clock::now() - start_;
  const auto cpu = threadCpu() - startCpu_;
  const std::string where = currentNote.empty() ? std::string(kind_) : std::string(kind_) + ": " + currentNote;
  Shared& s = shared();
  std::lock_guard lock(s.mutex);
  ++s.summary.callbacks;
  s.summary.total += span;
  if (span > s.summary.longest) {
    s.summary.longest = span;
    s.summary.where = where;
  }
  if (cpu > s.summary.longestCpu) {
    s.summary.longestCpu = cpu;
    s.summary.whereCpu = where;
  }
}

void LoopStallProbe::note(std::string_view what) {
  if (depth > 0) currentNote.assign(what);
}

LoopStallProbe::Summary LoopStallProbe::summary() {
  Shared& s = shared();
  std::lock_guard lock(s.mutex);
  return s.summary;
}

void LoopStallProbe::reset() {
  Shared& s = shared();
  std::lock_guard lock(s.mutex);
  s.summary = {};
}

std::string LoopStallProbe::describe() {
  const Summary s = summary();
  char text[160];
  std::snprintf(text, sizeof text, "longest loop callback: %.3f ms wall (", millis(s.longest));
  std::string out = text + s.where;
  std::snprintf(text, sizeof text, "), %.3f ms CPU (", millis(s.longestCpu));
  out += text + s.whereCpu;
  std::snprintf(text, sizeof text, "); %zu callbacks, %.1f ms in all", s.callbacks, millis(s.total));
  return out + text;
}

}  // namespace qmv
