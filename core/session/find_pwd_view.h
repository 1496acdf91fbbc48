#pragma once
// Step 1 of password recovery, the form: phone and SMS-code fields, the code button with
// its 60-second countdown and "下一步". The view checks what the member typed and hands
// valid input to its controller through onGetCode and onNext; refusals are shown as
// "手机号码格式错误" or "请输入验证码" and go no further.
#include <functional>
#include <string>

#include "core/session/account_texts.h"
#include "core/session/code_countdown.h"

namespace qmv {

class MainLoop;

class FindPwdView {
 public:
  static constexpr const char* kPhonePlaceholder = account_texts::kFindPhonePlaceholder;
  static constexpr const char* kCodePlaceholder = account_texts::kCodePlaceholder;
  static constexpr const char* kNextButtonTitle = account_texts::kNextButton;

  // `onTitleChange` runs whenever the code button's title or state changes.
  explicit FindPwdView(std::function<void()> onTitleChange = {});

  std::string phoneText;
  std::string codeText;

  const std::string& codeButtonTitle() const { return countdown_.title(); }
  bool codeButtonEnabled() const { return countdown_.buttonEnabled(); }
  const CodeCountdown& countdown() const { return countdown_; }

  // Code button: refused without a word while the countdown runs; with a valid phone
  // calls onGetCode, else shows "手机号码格式错误". Returns whether the phone was handed on.
  bool getVerifyMsg();
  // "下一步": phone rule, then a non-empty code; hands both to onNext.
  bool nextAction();

  void startTimer(MainLoop& loop) { countdown_.startTimer(loop); }
  void stopTimer() { countdown_.stopTimer(); }
  void intervalTimerCallback() { countdown_.intervalTimerCallback(); }
  // A correct code answer: count down from 60.
  void codeSent();  // the system's codeNetSucess

  std::function<void(const std::string& phone)> onGetCode;
  std::function<void(const std::string& phone, const std::string& code)> onNext;

 private:
  std::function<void()> onTitleChange_;
  CodeCountdown countdown_;
};

}  // namespace qmv
