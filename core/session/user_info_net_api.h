#pragma once
// Reads the logged-in member's record again (its "data" updates the session
// record with setWithDict).
#include <string>

#include "core/request/net_api.h"

namespace qmv {

class UserInfoNetApi : public NetApi<UserInfoNetApi> {
 public:
  UserInfoNetApi() = default;

  std::string requestUrl() const override { return "getUserInfo"; }
  RequestMethod requestMethod() const override { return RequestMethod::GET; }
  Json requestArgument() const override;
};

}  // namespace qmv
