#include "features/member/change_phone_view_controller.h"

#include "core/common/control_util.h"
#include "core/common/dictionary.h"
#include "core/common/settings_keys.h"
#include "core/session/account_ports.h"
#include "core/session/change_self_net_api.h"
#include "core/session/form_submission.h"
#include "core/session/global_data.h"
#include "core/session/mobile_check_net_api.h"
#include "core/session/user_info_model.h"
#include "platform/main_loop.h"

namespace qmv {
namespace {

constexpr std::int64_t kChangePhoneCode = 1;

}  // namespace

ChangePhoneViewController::ChangePhoneViewController()
    : countdown_([this](const std::string&, bool) {
        if (onChange) onChange();
      }) {}

ChangePhoneViewController::~ChangePhoneViewController() {
  countdown_.stopTimer();
  detachRequest(codeApi_);
  detachRequest(checkApi_);
  detachRequest(changeApi_);
}

void ChangePhoneViewController::viewDidLoad() { countdown_.startTimer(*Env::current().mainLoop); }

const char* ChangePhoneViewController::phoneRefusal() const {
  if (!ControlUtil::validatePhone(phoneText)) return account_texts::kBadPhone;
  const auto& me = GlobalData::sharedInstance().selfInfo();
  if (me && me->phone == phoneText) return account_centre_texts::kSamePhone;
  return nullptr;
}

bool ChangePhoneViewController::getCodeAction() {
  if (!countdown_.buttonEnabled()) return false;
  if (const char* refused = phoneRefusal()) {
    Env::current().overlay->showImage("", refused);
    return false;
  }
  const std::string phone = phoneText;
  account_detail::sendCodeRequest(
      codeApi_, *this, phone, sentSession_,
      [this, phone] {
        countdown_.codeSent();
        if (onChange) onChange();
        const auto& settings = Env::current().settings;
        const Json pending{{"phone", phone}, {"sessionId", sentSession_}};
        settings->setObject(pending, kChangePhoneCodeKey);
        settings->synchronize();
      },
      [this](bool correct) {
        if (onCodeFinished) onCodeFinished(correct);
      },
      kChangePhoneCode);
  return true;
}

std::string ChangePhoneViewController::pendingSession(const std::string& phone) const {
  const Json pending = Env::current().settings->objectForKey(kChangePhoneCodeKey);
  if (!pending.is_object() || strForKey(pending, "phone") != phone) return {};
  return strForKey(pending, "sessionId");
}

bool ChangePhoneViewController::isSending() const {
  return (checkApi_ && checkApi_->isExecuting()) || (changeApi_ && changeApi_->isExecuting());
}

bool ChangePhoneViewController::submitAction() {
  if (isSending()) return false;
  const char* refused = phoneRefusal();
  const std::string session = pendingSession(phoneText);
  if (refused == nullptr && codeText.empty()) refused = account_texts::kNoCode;
  if (refused == nullptr && session.empty()) refused = account_centre_texts::kNoCodeSent;
  if (refused != nullptr) {
    Env::current().overlay->showImage("", refused);
    return false;
  }
  detachRequest(checkApi_);
  detachRequest(changeApi_);
  sentPhone_ = phoneText;
  checkApi_ = std::make_shared<MobileCheckNetApi>(sentPhone_, codeText, session);
  attachRequest(*checkApi_);
  checkApi_->startWithCompletionBlockWithSuccess(
      [this](MobileCheckNetApi& api) {
        if (api.isCorrectResult()) return sendChange();
        finish(false);
      },
      [this](BaseRequest&) { finish(false); });
  return true;
}

void ChangePhoneViewController::sendChange() {
  submitForm(*this, changeApi_, std::make_shared<ChangeSelfNetApi>("postChangeSelf", "phone", sentPhone_),
             [this] { return storeNewPhone(); }, onFinished);
}

bool ChangePhoneViewController::storeNewPhone() {
  const auto& settings = Env::current().settings;
  settings->removeObjectForKey(kChangePhoneCodeKey);
  const bool stored = settings->setObjects(Json{{kUserPhoneKey, sentPhone_}}).ok() && settings->synchronize();
  if (const auto& me = GlobalData::sharedInstance().selfInfo()) me->phone = sentPhone_;
  Env::current().overlay->showImage("", account_centre_texts::kPhoneChanged);
  // Shown last, so that it is what stays: the next start would sign in with the old number.
  if (!stored) Env::current().overlay->showImage("", account_texts::kAccountNotSaved);
  return stored;
}

void ChangePhoneViewController::finish(bool changed) {
  if (onFinished) onFinished(changed);
}

}  // namespace qmv
