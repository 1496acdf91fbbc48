#pragma once
// Step 1 of password recovery ("找回密码"), headless: asks for a type-0 SMS code (its
// session identifier is kept for the check), then checks phone and code with the server
// and, when they match, pushes step 2 ("FindPwdStep2ViewController" with the payload
// {"phone": ...}).
#include <functional>
#include <memory>
#include <string>

#include "core/session/base_view_controller.h"
#include "core/session/find_pwd_view.h"
#include "core/session/mobile_check_net_api.h"
#include "core/session/mobile_code_net_api.h"

namespace qmv {

class FindPwdViewController : public BaseViewController {
 public:
  static constexpr const char* kTitle = account_texts::kFindPwdTitle;

  FindPwdViewController();
  // Stops the timer and any running request; their callbacks never arrive.
  ~FindPwdViewController() override;
  FindPwdViewController(const FindPwdViewController&) = delete;
  FindPwdViewController& operator=(const FindPwdViewController&) = delete;

  const char* title() const { return kTitle; }
  FindPwdView& view() { return view_; }
  const FindPwdView& view() const { return view_; }
  const std::string& codeSessionId() const { return codeSessionId_; }

  // Starts the countdown's one-second timer on the Env main loop.
  void viewDidLoad();

  // Stops a code request still running and asks for a type-0 code.
  void getPhoneCodeNet(const std::string& phone);
  // Stops a check still running and sends phone, code and the stored session identifier.
  void checkPhoneCodeNet(const std::string& phone, const std::string& code);

  // After each code request, and after each check (true: step 2 was pushed).
  std::function<void(bool correct)> onCodeFinished;
  std::function<void(bool correct)> onFinished;

 private:
  FindPwdView view_;
  std::string codeSessionId_;
  std::shared_ptr<MobileCodeNetApi> codeApi_;
  std::shared_ptr<MobileCheckNetApi> checkApi_;
};

}  // namespace qmv
