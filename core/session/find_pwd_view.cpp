#include "core/session/find_pwd_view.h"

#include "core/common/control_util.h"
#include "core/session/account_ports.h"

namespace qmv {

FindPwdView::FindPwdView(std::function<void()> onTitleChange)
    : onTitleChange_(std::move(onTitleChange)), countdown_([this](const std::string&, bool) {
        if (onTitleChange_) onTitleChange_();
      }) {}

bool FindPwdView::getVerifyMsg() {
  if (!codeButtonEnabled()) return false;
  if (!ControlUtil::validatePhone(phoneText)) {
    Env::current().overlay->showImage("", account_texts::kBadPhoneFormat);
    return false;
  }
  if (onGetCode) onGetCode(phoneText);
  return true;
}

bool FindPwdView::nextAction() {
  if (!ControlUtil::validatePhone(phoneText)) {
    Env::current().overlay->showImage("", account_texts::kBadPhoneFormat);
    return false;
  }
  if (codeText.empty()) {
    Env::current().overlay->showImage("", account_texts::kNoCode);
    return false;
  }
  if (onNext) onNext(phoneText, codeText);
  return true;
}

void FindPwdView::codeSent() {
  countdown_.codeSent();
  if (onTitleChange_) onTitleChange_();
}

}  // namespace qmv
