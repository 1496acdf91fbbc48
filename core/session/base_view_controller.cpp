#include "core/session/base_view_controller.h"

#include "core/request/base_net_api.h"
#include "core/session/global_data.h"
#include "core/session/login_screen.h"
#include "core/session/self_info_change.h"
#include "platform/cookie_store.h"
#include "platform/env.h"
#include "platform/push_service.h"
#include "platform/reachability.h"

namespace qmv {

void BaseViewController::changed() {
  if (onChange) onChange();
}

void BaseViewController::sessionExpired(BaseNetApi& /*request*/) {
  Env& env = Env::current();
  changeSelfInfo(nullptr);
  env.push->setAlias(kInvalidAlias, kAliasType);
  for (const Cookie& cookie : env.cookies->cookies()) {
    if (cookie.name == "sessionID" || cookie.name == "sessionId") env.cookies->deleteCookie(cookie);
  }
  presentLoginCtrl();
}

void BaseViewController::presentLoginCtrl() { presentLoginScreen(); }

void BaseViewController::startLoading() {
  warning_ = Warning::None;
  loadingShown_ = true;
  changed();
}

void BaseViewController::stopLoading() {
  if (!loadingShown_) return;
  loadingShown_ = false;
  changed();
}

void BaseViewController::networkFailed() {
  warning_ = Warning::None;
  if (!hasData()) {
    warning_ = Env::current().reachability->isReachable() ? Warning::NoData : Warning::NoNetwork;
  }
  changed();
}

void BaseViewController::attachRequest(BaseNetApi& request, bool showLoading) {
  request.sessionDelegate = this;
  request.networkFailedDelegate = this;
  if (showLoading) request.netLoadingDelegate = this;
}

}  // namespace qmv
