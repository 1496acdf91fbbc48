#pragma once
// Ends the member's session on the server.
#include <string>

#include "core/request/base_net_api.h"

namespace qmv {

class LogoutNetApi : public BaseNetApi {
 public:
  LogoutNetApi() = default;

  std::string requestUrl() const override { return "getUserLogout"; }
  RequestMethod requestMethod() const override { return RequestMethod::GET; }
  Json requestArgument() const override;
  std::string className() const override { return "LogoutNetApi"; }
};

}  // namespace qmv
