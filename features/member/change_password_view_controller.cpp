#include "features/member/change_password_view_controller.h"

#include "core/common/control_util.h"
#include "core/common/settings_keys.h"
#include "core/common/string_util.h"
#include "core/session/account_texts.h"
#include "core/session/change_password_net_api.h"
#include "core/session/form_submission.h"
#include "platform/env.h"
#include "platform/settings_store.h"
#include "platform/status_overlay.h"

namespace qmv {

ChangePasswordViewController::~ChangePasswordViewController() { detachRequest(request_); }

const char* ChangePasswordViewController::refusal() const {
  if (oldPasswordText.empty()) return account_centre_texts::kNoOldPassword;
  if (newPasswordText.empty()) return account_texts::kNoNewPassword;
  if (!ControlUtil::validatePWD(newPasswordText)) return account_texts::kBadPassword;
  if (confirmText != newPasswordText) return account_texts::kPasswordsDiffer;
  if (newPasswordText == oldPasswordText) return account_centre_texts::kSamePassword;
  return nullptr;
}

bool ChangePasswordViewController::isSending() const { return request_ && request_->isExecuting(); }

bool ChangePasswordViewController::submitAction() {
  if (isSending()) return false;
  if (const char* refused = refusal()) {
    Env::current().overlay->showImage("", refused);
    return false;
  }
  // The field as sent: the member may edit it while the request runs.
  sentPassword_ = newPasswordText;
  submitForm(
      *this, request_,
      std::make_shared<ChangePasswordNetApi>(StringUtil::getmd5WithString(newPasswordText),
                                             StringUtil::getmd5WithString(oldPasswordText)),
      [this] { return storeNewPassword(); }, onFinished);
  return true;
}

bool ChangePasswordViewController::storeNewPassword() {
  const auto& settings = Env::current().settings;
  const bool stored = settings->setObjects(Json{{kPasswordKey, sentPassword_}}).ok() && settings->synchronize();
  Env::current().overlay->showImage("", account_texts::kPasswordChanged);
  // Shown last, so that it is what stays: the server has the new password, the next start
  // would sign in with the old one.
  if (!stored) Env::current().overlay->showImage("", account_texts::kAccountNotSaved);
  return stored;
}

}  // namespace qmv
