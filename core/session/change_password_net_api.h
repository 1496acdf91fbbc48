#pragma once
// Changes the password of the logged-in member. Both passwords are sent as
// MD5 hex digests (the caller hashes them).
#include <string>

#include "core/request/net_api.h"

namespace qmv {

class ChangePasswordNetApi : public NetApi<ChangePasswordNetApi> {
 public:
  ChangePasswordNetApi(std::string newPassword, std::string oldPassword);

  std::string requestUrl() const override { return "postChangePassword"; }
  RequestMethod requestMethod() const override { return RequestMethod::POST; }
  Json requestArgument() const override;

  std::string newPassword;
  std::string oldPassword;
};

}  // namespace qmv
