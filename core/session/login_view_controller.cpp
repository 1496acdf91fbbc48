#include "core/session/login_view_controller.h"

#include "core/common/log.h"
#include "core/common/settings_keys.h"
#include "core/common/string_util.h"
#include "core/session/account_ports.h"
#include "core/session/global_data.h"
#include "core/session/self_info_change.h"
#include "core/session/sign_out_note.h"
#include "platform/navigator.h"
#include "platform/object_storage.h"
#include "platform/push_service.h"

namespace qmv {
namespace {

bool isJpeg(const ObjectStorage::Bytes& bytes) {
  return bytes.size() >= 3 && bytes[0] == 0xFF && bytes[1] == 0xD8 && bytes[2] == 0xFF;
}

}  // namespace

LoginViewController::~LoginViewController() { detachRequest(loginApi_); }

void LoginViewController::viewWillAppear() {
  const auto& settings = Env::current().settings;
  if (auto phone = settings->stringForKey(kUserPhoneKey)) view_.phoneText = *phone;
  if (sign_out_note::noted()) {
    view_.passwordText.clear();
  } else if (auto password = settings->stringForKey(kPasswordKey)) {
    view_.passwordText = *password;
  }
  if (onChange) onChange();
}

void LoginViewController::loginNet() {
  detachRequest(loginApi_);
  loginApi_ = std::make_shared<LoginNetApi>(view_.phoneText, StringUtil::getmd5WithString(view_.passwordText));
  attachRequest(*loginApi_);
  loginApi_->startWithCompletionBlockWithSuccess([this](BaseRequest&) { loginFinished(loginApi_->isCorrectResult()); },
                                                 [this](BaseRequest&) { loginFinished(false); });
}

void LoginViewController::loginFinished(bool correct) {
  if (!correct) {
    Env::current().push->setAlias(kInvalidAlias, kAliasType);
    if (onFinished) onFinished(false);
    return;
  }
  auto info = loginApi_->getUserInfo();
  changeSelfInfo(info);
  sign_out_note::forget();
  // The phone and password the member typed are one account: written apart, a crash
  // between them would pair the new phone with the old password. The answer's "phone"
  // is not kept: a server could name another member there.
  const bool stored = account_detail::storeCredentials(loginApi_->userName, view_.passwordText);
  Env::current().push->setAlias(info ? info->userName : std::string(kInvalidAlias), kAliasType);
  downloadHeaderImage();
  cancel();
  if (onFinished) onFinished(info != nullptr && stored);
}

void LoginViewController::cancel() { Env::current().navigator->dismiss(); }

void LoginViewController::downloadHeaderImage() {
  const auto& info = GlobalData::sharedInstance().selfInfo();
  const auto& storage = Env::current().objectStorage;
  if (!info || info->userName.empty()) {
    if (onHeaderImageFinished) onHeaderImageFinished(false);
    return;
  }
  const std::string object = info->userName + ".png";
  // The portrait is stored even when the screen has gone by then; only telling the
  // screen's front end waits for a screen that is still there.
  storage->download(object, [object, done = onHeaderImageFinished,
                             alive = std::weak_ptr<int>(alive_)](std::optional<ObjectStorage::Bytes> bytes) {
    bool stored = false;
    const auto& settings = Env::current().settings;
    if (bytes && !bytes->empty()) {
      if (!isJpeg(*bytes)) logLine("portrait " + object + " is not JPEG; kept as received");
      settings->setData(*bytes, kHeaderImageNowKey);
      settings->synchronize();
      stored = true;
    }
    if (done && alive.lock()) done(stored);
  });
}

void LoginViewController::registerAction() { Env::current().navigator->push(account_texts::kRegisterScreen); }

void LoginViewController::forgetAction() { Env::current().navigator->push(account_texts::kFindPwdScreen); }

}  // namespace qmv
