#pragma once
// The login screen ("账号登录"), headless. It is presented in its own navigation layer
// (BaseViewController::presentLoginCtrl); a correct login sets the session's member,
// keeps the typed password for the automatic login, names the push alias after the
// member, fetches the portrait from object storage into "headerImage_now" and dismisses
// the layer. A refused login marks the alias invalid and changes no stored key; the
// server's message is shown by the request layer.
//
// The portrait is stored as the bytes object storage holds: JPEG when it holds a JPEG.
// Other formats (the portrait upload sends PNG) are kept as received, since converting
// would need an image codec the core does not carry; readers decode by content.
#include <functional>
#include <memory>

#include "core/session/base_view_controller.h"
#include "core/session/login_net_api.h"
#include "core/session/login_view.h"

namespace qmv {

class LoginViewController : public BaseViewController {
 public:
  static constexpr const char* kTitle = account_texts::kLoginTitle;

  LoginViewController() = default;
  // Stops a login still running; its callbacks never arrive.
  ~LoginViewController() override;
  LoginViewController(const LoginViewController&) = delete;
  LoginViewController& operator=(const LoginViewController&) = delete;

  const char* title() const { return kTitle; }
  LoginView& view() { return view_; }
  const LoginView& view() const { return view_; }

  // Fills the fields from the stored "user_phone" and "password", when present; the
  // password stays empty after a sign-out in this run (sign_out_note).
  void viewWillAppear();

  // Stops a login still running and signs in with the field texts (password as MD5).
  // The outcome arrives through onFinished. REQUIRES: interface thread.
  void loginNet();
  // Closes the navigation layer that presented the login screen.
  void cancel();
  // Fetches "<userName>.png" from object storage and stores it under "headerImage_now".
  // Does nothing when no member is signed in or the platform has no object storage.
  // The portrait is stored even if this screen has gone by then; onHeaderImageFinished
  // is called only while the screen lives.
  void downloadHeaderImage();

  // "新用户注册" and "忘记密码": open the registration and recovery screens.
  void registerAction();
  void forgetAction();

  bool isLoggingIn() const { return loginApi_ && loginApi_->isExecuting(); }

  // After each login attempt: true when a member is signed in and the account is stored
  // for the next start; false for a refusal, a failed connection, an answer without a
  // member record, or an account that could not be stored (the screen said so). Runs
  // after the stored keys, alias and navigation have changed.
  std::function<void(bool correct)> onFinished;
  // After each portrait download: whether a portrait was stored.
  std::function<void(bool stored)> onHeaderImageFinished;

 private:
  void loginFinished(bool correct);

  LoginView view_;
  std::shared_ptr<LoginNetApi> loginApi_;
  std::shared_ptr<int> alive_ = std::make_shared<int>(0);
};

}  // namespace qmv
