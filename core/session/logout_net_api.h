#pragma once
// Ends the member's session on the server.
#include <string>

#include "core/request/net_api.h"

namespace qmv {

class LogoutNetApi : public NetApi<LogoutNetApi> {
 public:
  LogoutNetApi() = default;

  std::string requestUrl() const override { return "getUserLogout"; }
  RequestMethod requestMethod() const override { return RequestMethod::GET; }
  Json requestArgument() const override;
};

}  // namespace qmv
