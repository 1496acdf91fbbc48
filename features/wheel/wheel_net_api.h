#pragma once
// Reads the current prize wheel of the member.
#include <optional>
#include <string>

#include "core/request/base_net_api.h"
#include "features/wheel/wheel_model.h"

namespace qmv {

class WheelNetApi : public BaseNetApi {
 public:
  WheelNetApi() = default;

  std::string requestUrl() const override { return "getWheels"; }
  RequestMethod requestMethod() const override { return RequestMethod::GET; }
  Json requestArgument() const override;
  std::string className() const override { return "WheelNetApi"; }

  // The record of the answer's "data" when it is a JSON object, else none.
  std::optional<WheelModel> getWheel() const { return WheelModel::fromData(responseData()); }
};

}  // namespace qmv
