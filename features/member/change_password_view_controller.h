#pragma once
// The password change screen ("修改密码"), headless: the old password, the new one and
// its confirmation. The checks run in this order and the first failure is shown and
// ends the action: old empty ("请输入原密码"), new empty ("请新输入密码", as recovery
// says it), the new one against the registration's password rule with its message,
// confirmation differing ("两次输入密码不一致"), the new one equal to the old
// ("新密码不能与原密码相同"). Both are sent as MD5 hex, as login sends them.
//
// A correct answer stores the new password as typed under "password" and flushes, so
// that the next start signs in with it, shows "密码修改成功" and pops the screen; when
// the store did not take it, "账号信息保存失败,请检查存储空间" follows and the change
// counts as failed, since the next start would sign in with the old password. A refusal
// (a wrong old password) shows the server's message and stores nothing. While a change
// is on its way, the submit button does nothing.
#include <functional>
#include <memory>
#include <string>

#include "core/session/base_view_controller.h"
#include "features/member/account_centre_texts.h"

namespace qmv {

class ChangePasswordNetApi;

class ChangePasswordViewController : public BaseViewController {
 public:
  static constexpr const char* kTitle = account_centre_texts::kChangePasswordTitle;

  ChangePasswordViewController() = default;
  // Stops a change still running; its callbacks never arrive.
  ~ChangePasswordViewController() override;
  ChangePasswordViewController(const ChangePasswordViewController&) = delete;
  ChangePasswordViewController& operator=(const ChangePasswordViewController&) = delete;

  const char* title() const { return kTitle; }

  // Field texts, edited by the front end.
  std::string oldPasswordText;
  std::string newPasswordText;
  std::string confirmText;

  // The message of the first check that the fields fail; nullptr when they pass.
  const char* refusal() const;
  // The submit button: the checks, then the change. Returns whether it was sent.
  bool submitAction();
  bool isSending() const;

  // After each change ends: true when the server took it and the new password is stored.
  std::function<void(bool changed)> onFinished;

 private:
  bool storeNewPassword();

  std::string sentPassword_;
  std::shared_ptr<ChangePasswordNetApi> request_;
};

}  // namespace qmv
