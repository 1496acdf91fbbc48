#include "core/common/log.h"

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <mutex>
#include <utility>

namespace qmv {
namespace {

std::mutex& sinkMutex() {
  static std::mutex m;
  return m;
}

LogSink& currentSink() {
  static LogSink sink;
  return sink;
}

void toSink(const std::string& line) {
  LogSink sink;
  {
    std::lock_guard lock(sinkMutex());
    sink = currentSink();
  }
  if (sink) sink(line);
}

std::atomic<bool> warningsOnStderr{true};
std::atomic<WarningFilter> warningFilter{nullptr};
std::atomic<std::size_t> warningsLogged{0};
std::atomic<int> installedSinks{0};  // ScopedLogSink guards alive, empty sinks included

bool debugOnStderr() {
  static const bool on = std::getenv("QMV_DEBUG") != nullptr;
  return on;
}

}  // namespace

void logLine(const std::string& line) {
  if (debugOnStderr()) std::fprintf(stderr, "[qmv] %s\n", line.c_str());
  toSink(line);
}

bool logLineEnabled() { return debugOnStderr() || installedSinks.load(std::memory_order_relaxed) > 0; }

void logWarning(const std::string& line) {
  warningsLogged.fetch_add(1, std::memory_order_relaxed);
  if (warningsOnStderr.load(std::memory_order_relaxed)) {
    const WarningFilter filter = warningFilter.load(std::memory_order_acquire);
    std::fprintf(stderr, "qmv: %s\n", filter != nullptr ? filter(line).c_str() : line.c_str());
  }
  toSink(line);
}

std::size_t warningCount() { return warningsLogged.load(std::memory_order_relaxed); }

void setWarningsOnStderr(bool on) { warningsOnStderr.store(on, std::memory_order_relaxed); }

WarningFilter setWarningFilter(WarningFilter filter) {
  return warningFilter.exchange(filter, std::memory_order_acq_rel);
}

ScopedLogSink::ScopedLogSink(LogSink sink) {
  std::lock_guard lock(sinkMutex());
  previous_ = std::exchange(currentSink(), std::move(sink));
  installedSinks.fetch_add(1, std::memory_order_relaxed);
}

ScopedLogSink::~ScopedLogSink() {
  std::lock_guard lock(sinkMutex());
  currentSink() = std::move(previous_);
  installedSinks.fetch_sub(1, std::memory_order_relaxed);
}

}  // namespace qmv
