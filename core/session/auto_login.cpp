#include "core/session/auto_login.h"

#include "core/common/settings_keys.h"
#include "core/common/string_util.h"
#include "core/session/account_ports.h"
#include "core/session/base_view_controller.h"
#include "core/session/global_data.h"
#include "core/session/self_info_change.h"
#include "platform/env.h"
#include "platform/push_service.h"

namespace qmv {

AutoLogin::~AutoLogin() { detachRequest(loginApi_); }

bool AutoLogin::autoLoginNet() {
  const auto& settings = Env::current().settings;
  // A phone stored from a login answer may be a number or null; only text counts.
  const auto phone = settings->stringForKey(kUserPhoneKey);
  const auto password = settings->stringForKey(kPasswordKey);
  if (!phone || phone->empty() || !password) return false;

  detachRequest(loginApi_);
  loginApi_ = std::make_shared<LoginNetApi>(*phone, StringUtil::getmd5WithString(*password));
  loginApi_->needShowError = false;
  loginApi_->startWithCompletionBlockWithSuccess([this](BaseRequest&) { finished(loginApi_->isCorrectResult()); },
                                                 [this](BaseRequest&) { finished(false); });
  return true;
}

void AutoLogin::finished(bool correct) {
  std::shared_ptr<UserInfoModel> info;
  if (correct) {
    info = loginApi_->getUserInfo();
    changeSelfInfo(info);
  }
  const bool signedIn = info != nullptr;
  failureReason_ = signedIn ? std::string() : correct ? "the answer carried no member" : loginApi_->failureReason();
  Env::current().push->setAlias(signedIn ? info->userName : std::string(BaseViewController::kInvalidAlias),
                               BaseViewController::kAliasType);
  if (onFinished) onFinished(signedIn);
}

}  // namespace qmv
