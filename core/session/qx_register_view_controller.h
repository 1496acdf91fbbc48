#pragma once
// The registration screen ("注册账号"), headless. The member asks for an SMS code (the
// button then counts down for 60 seconds), fills phone, code, name, password twice and
// an optional invitation code (typed, or scanned from a QR code holding "inviteid="),
// and submits. Checks run in a fixed order and the first failure is shown and ends the
// action. A correct registration stores the phone and typed password for the automatic
// login, returns to the root screen and shows "注册成功".
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "core/session/account_texts.h"
#include "core/session/base_view_controller.h"
#include "core/session/code_countdown.h"
#include "core/session/mobile_code_net_api.h"
#include "core/session/register_net_api.h"

namespace qmv {

class QXRegisterViewController : public BaseViewController {
 public:
  static constexpr const char* kTitle = account_texts::kRegisterTitle;

  QXRegisterViewController();
  // Stops the timer and any running request; their callbacks never arrive.
  ~QXRegisterViewController() override;
  QXRegisterViewController(const QXRegisterViewController&) = delete;
  QXRegisterViewController& operator=(const QXRegisterViewController&) = delete;

  const char* title() const { return kTitle; }

  // Field texts, edited by the front end.
  std::string phoneText;
  std::string codeText;
  std::string userNameText;
  std::string passwordText;
  std::string confirmText;
  std::string inviteText;

  // The code button: "获取验证码" when idle, else the remaining "%.2d:%.2d"; disabled
  // from a correct code answer until it shows "获取验证码" again.
  const std::string& codeButtonTitle() const { return countdown_.title(); }
  bool codeButtonEnabled() const { return countdown_.buttonEnabled(); }
  const CodeCountdown& countdown() const { return countdown_; }
  // The session identifier of the last correct code answer, sent with the registration.
  const std::string& codeSessionId() const { return codeSessionId_; }

  // The screen loaded: starts the repeating one-second timer on the Env main loop.
  void viewDidLoad();
  // The screen going away: invalidates the timer.
  void stopTimer() { countdown_.stopTimer(); }
  // One timer tick (also driven by the timer itself).
  void intervalTimerCallback() { countdown_.intervalTimerCallback(); }

  // Code button: refused without a word while the countdown runs; then checks the phone
  // ("请输入正确的手机号") and calls getPhoneCodeNet. Returns whether a request was sent.
  bool getCodeAction();
  // Stops a code request still running and asks for a type-0 code for `phone`.
  void getPhoneCodeNet(const std::string& phone);
  // A correct code answer: the countdown starts from 60.
  void codeSent();  // the system's codeNetSucess

  // Submit: runs the checks in order (phone, password, its rule, the confirmation, the
  // code), then registerNet. Returns whether it was sent.
  bool submitAction();
  // For a front end that takes the whole form before the code is asked for: the submit
  // checks that come before the code, in their order, the first failure shown.
  bool checkBeforeCode();
  void registerNet();

  // QR button: without a usable camera shows the alert "您的设备无法拍照，请至设置中打开
  // 相机" with the button "知道了"; otherwise scans and hands the text to didFinishScanning.
  void QRCodeAction();
  // Puts what follows "inviteid=" (searched in the lower-cased text) into the invitation
  // field, else shows "无效二维码". A scan that read nothing counts as an invalid code.
  void didFinishScanning(const std::optional<std::string>& text);  // the system's didFinshedScanning:

  // After each code request ends, and after each registration ends.
  std::function<void(bool correct)> onCodeFinished;
  std::function<void(bool correct)> onFinished;

 private:
  void notifyChange();
  // The message of the first failing submit check, or null.
  const char* refusal(bool withCode) const;

  CodeCountdown countdown_;
  std::string codeSessionId_;
  std::string sentPassword_;
  std::shared_ptr<int> alive_ = std::make_shared<int>(0);
  std::shared_ptr<MobileCodeNetApi> codeApi_;
  std::shared_ptr<RegisterNetApi> registerApi_;
};

}  // namespace qmv
