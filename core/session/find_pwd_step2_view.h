#pragma once
// Step 2 of password recovery, the form: the new password twice and "提交". The view
// checks the input ("请新输入密码", the password rule, equal confirmation) and hands a
// valid password to its controller through onSubmit.
#include <functional>
#include <string>

#include "core/session/account_texts.h"

namespace qmv {

class FindPwdStep2View {
 public:
  static constexpr const char* kPasswordPlaceholder = account_texts::kNewPasswordPlaceholder;
  static constexpr const char* kConfirmPlaceholder = account_texts::kConfirmPlaceholder;
  static constexpr const char* kSubmitButtonTitle = account_texts::kSubmitButton;

  std::string passwordText;
  std::string confirmText;

  // Runs the checks in order; the first failure is shown and ends the action. Returns
  // whether the password was handed on.
  bool submitAction();

  std::function<void(const std::string& newPassword)> onSubmit;
};

}  // namespace qmv
