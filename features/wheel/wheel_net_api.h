#pragma once
// Reads the current prize wheel of the member.
#include <optional>
#include <string>

#include "core/request/net_api.h"
#include "features/wheel/wheel_model.h"

namespace qmv {

class WheelNetApi : public NetApi<WheelNetApi> {
 public:
  WheelNetApi() = default;

  std::string requestUrl() const override { return "getWheels"; }
  RequestMethod requestMethod() const override { return RequestMethod::GET; }
  Json requestArgument() const override;

  // The record of the answer's "data" when it is a JSON object, else none.
  std::optional<WheelModel> getWheel() const { return WheelModel::fromData(responseData()); }
};

}  // namespace qmv
