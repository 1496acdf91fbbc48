#include "core/common/log.h"

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

}  // namespace

void logLine(const std::string& line) {
  static const bool toStderr = std::getenv("QMV_DEBUG") != nullptr;
  if (toStderr) std::fprintf(stderr, "[qmv] %s\n", line.c_str());
  toSink(line);
}

void logWarning(const std::string& line) {
  std::fprintf(stderr, "qmv: %s\n", line.c_str());
  toSink(line);
}

ScopedLogSink::ScopedLogSink(LogSink sink) {
  std::lock_guard lock(sinkMutex());
  previous_ = std::exchange(currentSink(), std::move(sink));
}

ScopedLogSink::~ScopedLogSink() {
  std::lock_guard lock(sinkMutex());
  currentSink() = std::move(previous_);
}

}  // namespace qmv
