#include "core/session/qx_register_view_controller.h"

#include <algorithm>

#include "core/common/control_util.h"
#include "core/common/settings_keys.h"
#include "core/common/string_util.h"
#include "core/session/account_ports.h"
#include "platform/alerts.h"
#include "platform/camera.h"
#include "platform/main_loop.h"
#include "platform/navigator.h"

namespace qmv {

QXRegisterViewController::QXRegisterViewController()
    : countdown_([this](const std::string&, bool) { notifyChange(); }) {}

QXRegisterViewController::~QXRegisterViewController() {
  countdown_.stopTimer();
  detachRequest(codeApi_);
  detachRequest(registerApi_);
}

void QXRegisterViewController::notifyChange() {
  if (onChange) onChange();
}

void QXRegisterViewController::viewDidLoad() { countdown_.startTimer(*Env::current().mainLoop); }

bool QXRegisterViewController::getCodeAction() {
  if (!codeButtonEnabled()) return false;
  if (!ControlUtil::validatePhone(phoneText)) {
    Env::current().overlay->showImage("", account_texts::kBadPhone);
    return false;
  }
  getPhoneCodeNet(phoneText);
  return true;
}

void QXRegisterViewController::getPhoneCodeNet(const std::string& phone) {
  account_detail::sendCodeRequest(
      codeApi_, *this, phone, codeSessionId_, [this] { codeSent(); },
      [this](bool correct) {
        if (onCodeFinished) onCodeFinished(correct);
      });
}

void QXRegisterViewController::codeSent() {
  countdown_.codeSent();
  notifyChange();
}

const char* QXRegisterViewController::refusal(bool withCode) const {
  if (!ControlUtil::validatePhone(phoneText)) return account_texts::kBadPhone;
  if (passwordText.empty()) return account_texts::kNoPassword;
  if (!ControlUtil::validatePWD(passwordText)) return account_texts::kBadPassword;
  if (confirmText != passwordText) return account_texts::kPasswordsDiffer;
  if (withCode && codeText.empty()) return account_texts::kNoCode;
  return nullptr;
}

bool QXRegisterViewController::checkBeforeCode() {
  if (const char* text = refusal(/*withCode=*/false)) {
    Env::current().overlay->showImage("", text);
    return false;
  }
  return true;
}

bool QXRegisterViewController::submitAction() {
  if (const char* text = refusal(/*withCode=*/true)) {
    Env::current().overlay->showImage("", text);
    return false;
  }
  registerNet();
  return true;
}

void QXRegisterViewController::registerNet() {
  detachRequest(registerApi_);
  sentPassword_ = passwordText;
  registerApi_ = std::make_shared<RegisterNetApi>(StringUtil::getmd5WithString(passwordText), phoneText, inviteText,
                                                  userNameText, codeText, codeSessionId_);
  attachRequest(*registerApi_);
  registerApi_->startWithCompletionBlockWithSuccess(
      [this](BaseRequest&) {
        bool correct = registerApi_->isCorrectResult();
        if (correct) {
          // The fields as sent: the member may have edited them while the request ran.
          correct = account_detail::storeCredentials(registerApi_->phone, sentPassword_);
          Env::current().navigator->popToRoot();
          Env::current().overlay->showImage("", account_texts::kRegistered);
        }
        if (onFinished) onFinished(correct);
      },
      [this](BaseRequest&) {
        if (onFinished) onFinished(false);
      });
}

void QXRegisterViewController::QRCodeAction() {
  const auto& camera = Env::current().camera;
  if (!camera->isAvailable()) {
    Env::current().alerts->show(AlertSpec{account_texts::kNoCamera, "", {account_texts::kNoCameraButton}, {}},
                                [](const AlertAnswer&) {});
    return;
  }
  // A scanner may answer after the screen has gone away.
  camera->scanQrCode([this, alive = std::weak_ptr<int>(alive_)](std::optional<std::string> text) {
    if (alive.lock()) didFinishScanning(text);
  });
}

void QXRegisterViewController::didFinishScanning(const std::optional<std::string>& text) {
  std::string lower = text.value_or("");
  std::transform(lower.begin(), lower.end(), lower.begin(),
                 [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
  const std::string marker = account_texts::kInviteMarker;
  const auto at = lower.find(marker);
  if (at == std::string::npos) {
    Env::current().overlay->showImage("", account_texts::kBadQrCode);
    return;
  }
  // Only the search ignores case; the code is kept as written (ASCII lower-casing keeps
  // every byte where it was).
  inviteText = text->substr(at + marker.size());
  notifyChange();
}

}  // namespace qmv
