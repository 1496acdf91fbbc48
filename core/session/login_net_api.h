#pragma once
// Signs a member in with the phone number and the MD5 hex digest of the password.
// Its answer's "data" is the member record.
#include <memory>
#include <string>

#include "core/request/base_net_api.h"
#include "core/session/user_info_model.h"

namespace qmv {

class LoginNetApi : public BaseNetApi {
 public:
  LoginNetApi(std::string userName, std::string userPassword);

  std::string requestUrl() const override { return "getUserLogin"; }
  RequestMethod requestMethod() const override { return RequestMethod::GET; }
  Json requestArgument() const override;
  std::string className() const override { return "LoginNetApi"; }

  // On a finished request: stores "data"."phone" under "user_phone" (whatever it holds,
  // without flushing), then returns the member record when "data" is an object, else
  // null.
  std::shared_ptr<UserInfoModel> getUserInfo() const;

  // The two halves of getUserInfo, for a caller that stores the phone together with
  // other keys: the value to keep under "user_phone" (null when "data" holds none; a
  // number as its text), and the member record or null.
  Json userPhone() const;
  std::shared_ptr<UserInfoModel> userInfo() const;

  std::string userName;
  std::string userPassword;
};

}  // namespace qmv
