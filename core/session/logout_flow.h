#pragma once
// Signing out from the member screens: tells the server (LogoutNetApi), then forgets the
// session's member and the cached portrait ("headerImage_now"). The stored phone and
// password stay, so the next start signs in again. The local sign-out happens however
// the request ends: a member who asked to leave is not kept signed in on this device
// because the server could not be reached. The member tab asks first (confirmLogout):
// one stray tap must not end the session. After a sign-out the login screen leaves the
// password field empty for the rest of the run.
#include <functional>
#include <memory>

#include "core/session/base_view_controller.h"
#include "core/session/logout_net_api.h"

namespace qmv {

class LogoutFlow : public BaseViewController {
 public:
  LogoutFlow() = default;
  // Stops a request still running; its callbacks never arrive, nor an alert's answer.
  ~LogoutFlow() override;
  LogoutFlow(const LogoutFlow&) = delete;
  LogoutFlow& operator=(const LogoutFlow&) = delete;

  // Returns false and does nothing when no member is signed in; otherwise sends the
  // request and returns true. REQUIRES: interface thread.
  bool logout();
  // Asks "确定要退出登录吗?" with "取消" and "退出"; "退出" runs logout(). False, and
  // nothing is asked, when no member is signed in. The answer may come after the flow
  // is gone, and then does nothing.
  bool confirmLogout();

  // When the request ends: true when the server confirmed. The member is signed out
  // locally either way.
  std::function<void(bool confirmed)> onFinished;

 private:
  void finished(bool confirmed);

  std::shared_ptr<LogoutNetApi> logoutApi_;
  std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);
};

}  // namespace qmv
