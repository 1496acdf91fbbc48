#pragma once
// The silent sign-in of every start (the home screen's autoLoginNet): the stored phone
// and password are sent again, and a correct answer restores the session's member and
// the push alias. Nothing is shown, not even a refusal or a lost connection, and
// nothing is stored: whatever the answer names as the member's phone, the next start
// signs in with the phone stored now.
#include <functional>
#include <memory>
#include <string>

#include "core/session/login_net_api.h"

namespace qmv {

class AutoLogin {
 public:
  AutoLogin() = default;
  // Stops a login still running; its callbacks never arrive.
  ~AutoLogin();
  AutoLogin(const AutoLogin&) = delete;
  AutoLogin& operator=(const AutoLogin&) = delete;

  // Reads "user_phone" and "password"; when the phone is missing or empty, or the
  // password missing, does nothing and returns false. Otherwise stops a login still
  // running, sends a new one and returns true; onFinished follows once it ends.
  // REQUIRES: interface thread.
  bool autoLoginNet();

  bool isRunning() const { return loginApi_ && loginApi_->isExecuting(); }
  // Why the last login that was sent did not sign the member in (nothing is shown for it,
  // so a front end may tell it where a member is needed); empty after a sign-in.
  const std::string& failureReason() const { return failureReason_; }

  // When a sent login ends: true when the member is signed in.
  std::function<void(bool correct)> onFinished;

 private:
  void finished(bool correct);

  std::shared_ptr<LoginNetApi> loginApi_;
  std::string failureReason_;
};

}  // namespace qmv
