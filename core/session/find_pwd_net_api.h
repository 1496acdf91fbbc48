#pragma once
// Sets a new password for a phone confirmed by an SMS code. The password is the
// MD5 hex digest.
#include <string>

#include "core/request/net_api.h"

namespace qmv {

class FindPwdNetApi : public NetApi<FindPwdNetApi> {
 public:
  FindPwdNetApi(std::string phone, std::string newPassword);

  std::string requestUrl() const override { return "postFindPassword"; }
  RequestMethod requestMethod() const override { return RequestMethod::POST; }
  Json requestArgument() const override;

  std::string phone;
  std::string newPassword;
};

}  // namespace qmv
