#pragma once
// Reads the logged-in member's record again: the wallet, withdrawal, submit and pay-now
// screens show the balance the server has now, not the one read at login.
#include <string>

#include "core/request/net_api.h"

namespace qmv {

class UserInfoNetApi : public NetApi<UserInfoNetApi> {
 public:
  UserInfoNetApi() = default;

  std::string requestUrl() const override { return "getUserInfo"; }
  RequestMethod requestMethod() const override { return RequestMethod::GET; }
  Json requestArgument() const override;

  // Updates the signed-in member's record from a correct answer's "data". False when the
  // answer was not correct or had no record, or nobody is signed in any more (an expired
  // session has cleared the record by then).
  bool updateSelfInfo() const;
};

}  // namespace qmv
