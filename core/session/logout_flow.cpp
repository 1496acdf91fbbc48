#include "core/session/logout_flow.h"

#include "core/common/settings_keys.h"
#include "core/session/account_ports.h"
#include "core/session/global_data.h"
#include "core/session/self_info_change.h"
#include "core/session/sign_out_note.h"
#include "platform/alerts.h"

namespace qmv {

LogoutFlow::~LogoutFlow() {
  *alive_ = false;
  detachRequest(logoutApi_);
}

bool LogoutFlow::confirmLogout() {
  if (!GlobalData::sharedInstance().selfInfo()) return false;
  AlertSpec alert{account_texts::kLogoutAlertTitle,
                  account_texts::kLogoutAlertMessage,
                  {account_texts::kLogoutCancel, account_texts::kLogoutConfirm},
                  {}};
  Env::current().alerts->show(alert, [this, alive = std::weak_ptr<bool>(alive_)](const AlertAnswer& answer) {
    if (alive.lock() && answer.buttonIndex == 1) logout();
  });
  return true;
}

bool LogoutFlow::logout() {
  if (!GlobalData::sharedInstance().selfInfo()) return false;
  detachRequest(logoutApi_);
  logoutApi_ = std::make_shared<LogoutNetApi>();
  attachRequest(*logoutApi_);
  // An expired session needs no login screen here: the member is leaving anyway.
  logoutApi_->sessionDelegate = nullptr;
  logoutApi_->startWithCompletionBlockWithSuccess([this](BaseRequest&) { finished(logoutApi_->isCorrectResult()); },
                                                  [this](BaseRequest&) { finished(false); });
  return true;
}

void LogoutFlow::finished(bool confirmed) {
  changeSelfInfo(nullptr);
  sign_out_note::note();
  Env::current().settings->removeObjectForKey(kHeaderImageNowKey);
  Env::current().settings->synchronize();
  if (onFinished) onFinished(confirmed);
}

}  // namespace qmv
