#pragma once
// The phone change screen ("更换手机号"), headless: the new number, an SMS code sent to it
// ("getCheckCode4ChgMobile", with the 60-second countdown), then the code's check and the
// change of the record's "phone" through "postChangeSelf". The server takes the new phone
// only from whoever verified a code for it; the check leaves that proof with the client's
// cookies, so the change follows the check at once.
//
// Choices: the checks run in this order and show the first failure: the phone rule
// ("请输入正确的手机号"), the member's own phone ("新手机号与原手机号相同"), then, for
// submitting, an empty code ("请输入验证码") and no code asked for this number
// ("请先获取验证码"). The code's session is kept in the settings with its number until the
// change succeeds, so that a code that arrives after the screen (or the program) was closed
// still counts within its lifetime. A correct change stores the new number under
// "user_phone" and flushes (the next start signs in with it; when the store does not take
// it, "账号信息保存失败,请检查存储空间" follows and the change counts as failed), puts it
// in the member record, shows "手机号修改成功" and pops the screen. A refused check or
// change shows the server's message and changes nothing.
#include <functional>
#include <memory>
#include <string>

#include "core/session/base_view_controller.h"
#include "core/session/code_countdown.h"
#include "features/member/account_centre_texts.h"

namespace qmv {

class ChangeSelfNetApi;
class MobileCheckNetApi;
class MobileCodeNetApi;

class ChangePhoneViewController : public BaseViewController {
 public:
  static constexpr const char* kTitle = account_centre_texts::kChangePhoneTitle;

  ChangePhoneViewController();
  // Stops the timer and any running request; their callbacks never arrive.
  ~ChangePhoneViewController() override;
  ChangePhoneViewController(const ChangePhoneViewController&) = delete;
  ChangePhoneViewController& operator=(const ChangePhoneViewController&) = delete;

  const char* title() const { return kTitle; }

  // Field texts, edited by the front end.
  std::string phoneText;
  std::string codeText;

  // Starts the countdown's one-second timer on the Env main loop.
  void viewDidLoad();
  const CodeCountdown& countdown() const { return countdown_; }

  // The message of the first check the number fails; nullptr when it passes.
  const char* phoneRefusal() const;
  // The code button: refused without a word while the countdown runs; otherwise the
  // number's checks, then the code request. Returns whether it was sent.
  bool getCodeAction();
  // The submit button: the checks, then the code's check and the change. Returns whether
  // the check was sent.
  bool submitAction();
  bool isSending() const;

  // After each code request, and after each submission (true: the phone was changed).
  std::function<void(bool correct)> onCodeFinished;
  std::function<void(bool changed)> onFinished;

 private:
  std::string pendingSession(const std::string& phone) const;
  void sendChange();
  bool storeNewPhone();  // says whether the new number was kept for the next start
  void finish(bool changed);

  CodeCountdown countdown_;
  std::string sentSession_;  // of the last code asked for
  std::string sentPhone_;
  std::shared_ptr<MobileCodeNetApi> codeApi_;
  std::shared_ptr<MobileCheckNetApi> checkApi_;
  std::shared_ptr<ChangeSelfNetApi> changeApi_;
};

}  // namespace qmv
