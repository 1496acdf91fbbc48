#pragma once
// Draws one spin of the wheel `wheelId`; an empty id sends no "id".
#include <string>

#include "core/request/base_net_api.h"

namespace qmv {

class WheelResultNetApi : public BaseNetApi {
 public:
  explicit WheelResultNetApi(std::string wheelId);

  std::string requestUrl() const override { return "getWheelResult"; }
  RequestMethod requestMethod() const override { return RequestMethod::GET; }
  Json requestArgument() const override;
  std::string className() const override { return "WheelResultNetApi"; }

  std::string wheelId;
};

}  // namespace qmv
