#include "core/session/logout_flow.h"

#include "core/common/settings_keys.h"
#include "core/session/account_ports.h"
#include "core/session/global_data.h"

namespace qmv {

LogoutFlow::~LogoutFlow() { detachRequest(logoutApi_); }

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
  GlobalData::sharedInstance().setSelfInfo(nullptr);
  Env::current().settings->removeObjectForKey(kHeaderImageNowKey);
  Env::current().settings->synchronize();
  if (onFinished) onFinished(confirmed);
}

}  // namespace qmv
