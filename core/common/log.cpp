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

}  // namespace

void logLine(const std::string& line) {
  static const bool toStderr = std::getenv("QMV_DEBUG") != nullptr;
  if (toStderr) std::fprintf(stderr, "[qmv] %s\n", line.c_str());
  toSink(line);
}

void logWarning(const std::string& line) {
  if (warningsOnStderr.load(std::memory_order_relaxed)) std::fprintf(stderr, "qmv: %s\n", line.c_str());
  toSink(line);
}

void setWarningsOnStderr(bool on) { warningsOnStderr.store(on, std::memory_order_relaxed); }

ScopedLogSink::ScopedLogSink(LogSink sink) {
  std::lock_guard lock(sinkMutex());
  previous_ = std::exchange(currentSink(), std::move(sink));
}

ScopedLogSink::~ScopedLogSink() {
  std::lock_guard lock(sinkMutex());
  currentSink() = std::move(previous_);
}

}  // namespace qmv
