#pragma once
// Base of the screens, headless: the three reactions every screen offers the requests
// it owns. An expired session logs the member out and presents the login screen; a
// running request covers the screen with the loading view; a failed connection shows
// the no-network picture or the no-data view when the screen has nothing to show.
// A front end draws cover() and warning(); onChange tells it when they change.
#include <functional>
#include <memory>
#include <string>

#include "core/request/net_api_delegates.h"
#include "core/session/session_texts.h"

namespace qmv {

class BaseViewController : public SessionExpireDelegate, public NetLoadingDelegate, public NoNetWorkingDelegate {
 public:
  static constexpr const char* kLoadingText = session_texts::kLoading;
  static constexpr const char* kLoadingFrames[] = {"loading_1", "loading_2", "loading_3", "loading_4"};
  static constexpr const char* kNoNetworkImage = "wangluocuowu";
  static constexpr const char* kLoginScreen = "LoginViewController";
  static constexpr const char* kInvalidAlias = "un_valid_Alias";
  static constexpr const char* kAliasType = "QMV_User";

  enum class Warning { None, NoNetwork, NoData };

  BaseViewController() = default;
  ~BaseViewController() override = default;

  // Clears the session, marks the push alias invalid, deletes the "sessionID" and
  // "sessionId" cookies and presents the login screen (once, when it is not already
  // on top). REQUIRES: interface thread.
  void sessionExpired(BaseNetApi& request) override;  // the system's sessionIsExpire:
  // Removes any warning and shows the loading view.
  void startLoading() override;
  void stopLoading() override;
  // Removes warnings; without data, shows the no-network picture when the network is
  // unreachable, else the no-data view.
  void networkFailed() override;  // the system's noNetWorking

  // Whether the screen shows content; screens with data keep it on a failure.
  virtual bool hasData() const { return false; }

  bool isLoadingShown() const { return loadingShown_; }
  Warning warning() const { return warning_; }
  // Presents the login screen inside its own navigation layer.
  void presentLoginCtrl();
  // Makes this screen the request's session and no-network delegate and, with
  // `showLoading`, its loading delegate: the screen owns the request's reactions.
  void attachRequest(BaseNetApi& request, bool showLoading = true);

  std::function<void()> onChange;

 private:
  void changed();

  bool loadingShown_ = false;
  Warning warning_ = Warning::None;
};

// Clears every tie from a screen's request back to the screen (blocks and delegates) and
// stops it when it still runs, so no callback reaches a screen that is going away or
// has sent a newer request of the same kind.
template <typename Request>
void detachRequest(const std::shared_ptr<Request>& request) {
  if (!request) return;
  request->clearCompletionBlock();
  request->sessionDelegate = nullptr;
  request->netLoadingDelegate = nullptr;
  request->networkFailedDelegate = nullptr;
  if (request->isExecuting()) request->stop();
}

}  // namespace qmv
