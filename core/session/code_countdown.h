#pragma once
// The 60-second countdown of an SMS-code button, shared by registration, password
// recovery and card binding. Each tick decrements before it is displayed, so 60 itself
// is never shown and the button returns to "获取验证码" on the tick after 0 is reached.
#include <functional>
#include <string>

#include "core/session/account_texts.h"
#include "platform/main_loop.h"

namespace qmv {

class CodeCountdown {
 public:
  static constexpr int kSeconds = 60;
  static constexpr const char* kIdleTitle = account_texts::kGetCode;

  // `onTitle` receives the button title after every change (on the interface thread).
  explicit CodeCountdown(std::function<void(const std::string& title, bool enabled)> onTitle = {});
  ~CodeCountdown();
  CodeCountdown(const CodeCountdown&) = delete;
  CodeCountdown& operator=(const CodeCountdown&) = delete;

  // Starts the repeating one-second timer on `loop` (the screen loading).
  void startTimer(MainLoop& loop);
  // Invalidates the timer (the screen going away).
  void stopTimer();
  // A correct code response: count from 60.
  void codeSent() { count_ = kSeconds; }  // the system's codeNetSucess
  // One tick of the timer.
  void intervalTimerCallback();

  int count() const { return count_; }
  bool isCounting() const { return count_ > 0; }
  const std::string& title() const { return title_; }
  // The button takes taps again only once it shows "获取验证码" again.
  bool buttonEnabled() const { return !isCounting() && title_ == kIdleTitle; }

  // "%.2d:%.2d" of minutes and seconds.
  static std::string format(int seconds);

 private:
  std::function<void(const std::string&, bool)> onTitle_;
  MainLoop* loop_ = nullptr;
  MainLoop::TimerId timer_ = 0;
  int count_ = 0;
  std::string title_ = kIdleTitle;
};

}  // namespace qmv
