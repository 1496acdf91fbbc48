#pragma once
// Signs a member in with the phone number and the MD5 hex digest of the password.
// Its answer's "data" is the member record.
#include <memory>
#include <string>

#include "core/request/net_api.h"
#include "core/session/user_info_model.h"

namespace qmv {

class LoginNetApi : public NetApi<LoginNetApi> {
 public:
  LoginNetApi(std::string userName, std::string userPassword);

  std::string requestUrl() const override { return "getUserLogin"; }
  RequestMethod requestMethod() const override { return RequestMethod::GET; }
  Json requestArgument() const override;

  // On a finished request: the member record when "data" is an object, else null.
  // Nothing is stored: the account phone kept for the next start is the one the member
  // typed, never the answer's "phone", so that an answer cannot sign the next start in
  // as another member.
  std::shared_ptr<UserInfoModel> getUserInfo() const;

  std::string userName;
  std::string userPassword;
};

}  // namespace qmv
