#include "core/session/find_pwd_view_controller.h"

#include "core/session/account_ports.h"
#include "platform/main_loop.h"
#include "platform/navigator.h"

namespace qmv {

FindPwdViewController::FindPwdViewController()
    : view_([this] {
        if (onChange) onChange();
      }) {
  view_.onGetCode = [this](const std::string& phone) { getPhoneCodeNet(phone); };
  view_.onNext = [this](const std::string& phone, const std::string& code) { checkPhoneCodeNet(phone, code); };
}

FindPwdViewController::~FindPwdViewController() {
  view_.stopTimer();
  detachRequest(codeApi_);
  detachRequest(checkApi_);
}

void FindPwdViewController::viewDidLoad() { view_.startTimer(*Env::current().mainLoop); }

void FindPwdViewController::getPhoneCodeNet(const std::string& phone) {
  account_detail::sendCodeRequest(
      codeApi_, *this, phone, codeSessionId_, [this] { view_.codeSent(); },
      [this](bool correct) {
        if (onCodeFinished) onCodeFinished(correct);
      });
}

void FindPwdViewController::checkPhoneCodeNet(const std::string& phone, const std::string& code) {
  detachRequest(checkApi_);
  checkApi_ = std::make_shared<MobileCheckNetApi>(phone, code, codeSessionId_);
  attachRequest(*checkApi_);
  checkApi_->startWithCompletionBlockWithSuccess(
      [this](BaseRequest&) {
        const bool correct = checkApi_->isCorrectResult();
        if (correct) {
          Env::current().navigator->push(account_texts::kFindPwdStep2Screen, Json{{"phone", checkApi_->mobile}});
        }
        if (onFinished) onFinished(correct);
      },
      [this](BaseRequest&) {
        if (onFinished) onFinished(false);
      });
}

}  // namespace qmv
