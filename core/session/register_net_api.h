#pragma once
// Registers a member. The password is the MD5 hex digest; sessionId is the one
// the SMS code request answered.
#include <string>

#include "core/request/net_api.h"

namespace qmv {

class RegisterNetApi : public NetApi<RegisterNetApi> {
 public:
  RegisterNetApi(std::string password, std::string phone, std::string inviteId, std::string userName, std::string code,
                 std::string sessionId);

  std::string requestUrl() const override { return "postUserRegisterWeb"; }
  RequestMethod requestMethod() const override { return RequestMethod::POST; }
  Json requestArgument() const override;

  std::string password;
  std::string phone;
  std::string inviteId;
  std::string userName;
  std::string code;
  std::string sessionId;
};

}  // namespace qmv
