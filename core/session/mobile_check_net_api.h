#pragma once
// Checks an SMS code against the session of the code request.
#include <string>

#include "core/request/net_api.h"

namespace qmv {

class MobileCheckNetApi : public NetApi<MobileCheckNetApi> {
 public:
  MobileCheckNetApi(std::string mobile, std::string code, std::string sessionId);

  std::string requestUrl() const override { return "getCheckCode"; }
  RequestMethod requestMethod() const override { return RequestMethod::GET; }
  Json requestArgument() const override;

  std::string mobile;
  std::string code;
  std::string sessionId;
};

}  // namespace qmv
