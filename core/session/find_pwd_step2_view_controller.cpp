#include "core/session/find_pwd_step2_view_controller.h"

#include "core/common/settings_keys.h"
#include "core/common/string_util.h"
#include "core/session/account_ports.h"
#include "platform/navigator.h"

namespace qmv {

FindPwdStep2ViewController::FindPwdStep2ViewController(std::string phone) : phone_(std::move(phone)) {
  view_.onSubmit = [this](const std::string& password) { sendNewPassword(password); };
}

FindPwdStep2ViewController::~FindPwdStep2ViewController() { detachRequest(findApi_); }

void FindPwdStep2ViewController::sendNewPassword(const std::string& newPassword) {
  detachRequest(findApi_);
  sentPassword_ = newPassword;
  findApi_ = std::make_shared<FindPwdNetApi>(phone_, StringUtil::getmd5WithString(newPassword));
  attachRequest(*findApi_);
  findApi_->startWithCompletionBlockWithSuccess(
      [this](BaseRequest&) {
        bool correct = findApi_->isCorrectResult();
        if (correct) {
          correct = account_detail::storeCredentials(phone_, sentPassword_);
          Env::current().navigator->popToRoot();
          Env::current().overlay->showImage("", account_texts::kPasswordChanged);
        }
        if (onFinished) onFinished(correct);
      },
      [this](BaseRequest&) {
        if (onFinished) onFinished(false);
      });
}

}  // namespace qmv
