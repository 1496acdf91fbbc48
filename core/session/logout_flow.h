#pragma once
// Signing out from the member screens: tells the server (LogoutNetApi), then forgets the
// session's member and the cached portrait ("headerImage_now"). The stored phone and
// password stay, so the next start signs in again. The local sign-out happens however
// the request ends: a member who asked to leave is not kept signed in on this device
// because the server could not be reached.
#include <functional>
#include <memory>

#include "core/session/base_view_controller.h"
#include "core/session/logout_net_api.h"

namespace qmv {

class LogoutFlow : public BaseViewController {
 public:
  LogoutFlow() = default;
  // Stops a request still running; its callbacks never arrive.
  ~LogoutFlow() override;
  LogoutFlow(const LogoutFlow&) = delete;
  LogoutFlow& operator=(const LogoutFlow&) = delete;

  // Returns false and does nothing when no member is signed in; otherwise sends the
  // request and returns true. REQUIRES: interface thread.
  bool logout();

  // When the request ends: true when the server confirmed. The member is signed out
  // locally either way.
  std::function<void(bool confirmed)> onFinished;

 private:
  void finished(bool confirmed);

  std::shared_ptr<LogoutNetApi> logoutApi_;
};

}  // namespace qmv
