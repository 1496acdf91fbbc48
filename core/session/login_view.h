#pragma once
// The login form, headless: the two field texts a front end edits and the titles it
// draws. The controller reads the fields when the member taps "登录".
#include <string>

#include "core/session/account_texts.h"

namespace qmv {

class LoginView {
 public:
  static constexpr const char* kPhonePlaceholder = account_texts::kPhonePlaceholder;
  static constexpr const char* kPasswordPlaceholder = account_texts::kPasswordPlaceholder;
  static constexpr const char* kLoginButtonTitle = account_texts::kLoginButton;
  static constexpr const char* kCancelButtonTitle = account_texts::kCancelButton;
  static constexpr const char* kRegisterButtonTitle = account_texts::kRegisterButton;
  static constexpr const char* kForgetButtonTitle = account_texts::kForgetButton;

  std::string phoneText;
  std::string passwordText;
};

}  // namespace qmv
