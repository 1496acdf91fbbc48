#pragma once
// Reads the current prize wheel of the member.
#include <string>

#include "core/request/base_net_api.h"

namespace qmv {

class WheelNetApi : public BaseNetApi {
 public:
  WheelNetApi() = default;

  std::string requestUrl() const override { return "getWheels"; }
  RequestMethod requestMethod() const override { return RequestMethod::GET; }
  Json requestArgument() const override;
  std::string className() const override { return "WheelNetApi"; }
};

}  // namespace qmv
