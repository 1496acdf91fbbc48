#include "core/session/code_countdown.h"

#include <cstdio>

namespace qmv {

CodeCountdown::CodeCountdown(std::function<void(const std::string&, bool)> onTitle) : onTitle_(std::move(onTitle)) {}

CodeCountdown::~CodeCountdown() { stopTimer(); }

void CodeCountdown::startTimer(MainLoop& loop) {
  stopTimer();
  loop_ = &loop;
  timer_ = loop.scheduleRepeating(std::chrono::seconds(1), [this] { intervalTimerCallback(); });
}

void CodeCountdown::stopTimer() {
  if (loop_ != nullptr) loop_->cancelTimer(timer_);
  loop_ = nullptr;
  timer_ = 0;
}

std::string CodeCountdown::format(int seconds) {
  char text[16];
  std::snprintf(text, sizeof text, "%.2d:%.2d", seconds / 60, seconds % 60);
  return text;
}

void CodeCountdown::intervalTimerCallback() {
  if (count_ > 0) {
    --count_;
    title_ = format(count_);
    if (onTitle_) onTitle_(title_, false);
  } else if (title_ != kIdleTitle) {
    title_ = kIdleTitle;
    if (onTitle_) onTitle_(title_, true);
  }
}

}  // namespace qmv
