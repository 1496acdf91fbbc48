#include "core/session/find_pwd_step2_view.h"

#include "core/common/control_util.h"
#include "core/session/account_ports.h"

namespace qmv {

bool FindPwdStep2View::submitAction() {
  const char* refusal = nullptr;
  if (passwordText.empty()) {
    refusal = account_texts::kNoNewPassword;
  } else if (!ControlUtil::validatePWD(passwordText)) {
    refusal = account_texts::kBadPassword;
  } else if (confirmText != passwordText) {
    refusal = account_texts::kPasswordsDiffer;
  }
  if (refusal != nullptr) {
    Env::current().overlay->showImage("", refusal);
    return false;
  }
  if (onSubmit) onSubmit(passwordText);
  return true;
}

}  // namespace qmv
