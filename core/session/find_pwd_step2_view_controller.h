#pragma once
// Step 2 of password recovery, headless: sets the new password of the phone confirmed in
// step 1. A correct answer stores the phone and the typed password for the automatic
// login, returns to the root screen and shows "密码修改成功".
#include <functional>
#include <memory>
#include <string>

#include "core/session/base_view_controller.h"
#include "core/session/find_pwd_net_api.h"
#include "core/session/find_pwd_step2_view.h"

namespace qmv {

class FindPwdStep2ViewController : public BaseViewController {
 public:
  static constexpr const char* kTitle = account_texts::kFindPwdTitle;

  explicit FindPwdStep2ViewController(std::string phone);
  // Stops a request still running; its callbacks never arrive.
  ~FindPwdStep2ViewController() override;
  FindPwdStep2ViewController(const FindPwdStep2ViewController&) = delete;
  FindPwdStep2ViewController& operator=(const FindPwdStep2ViewController&) = delete;

  const char* title() const { return kTitle; }
  const std::string& phone() const { return phone_; }
  FindPwdStep2View& view() { return view_; }
  const FindPwdStep2View& view() const { return view_; }

  // Stops a request still running and sends the phone with the MD5 of `newPassword`.
  void sendNewPassword(const std::string& newPassword);  // the system's findPwdNetWithNewPwd:

  // After each request: true when the password was changed.
  std::function<void(bool correct)> onFinished;

 private:
  std::string phone_;
  std::string sentPassword_;
  FindPwdStep2View view_;
  std::shared_ptr<FindPwdNetApi> findApi_;
};

}  // namespace qmv
