#pragma once
// Draws one spin of the wheel `wheelId`; an empty id sends no "id".
#include <optional>
#include <string>

#include "core/request/net_api.h"
#include "features/wheel/wheel_model.h"

namespace qmv {

class WheelResultNetApi : public NetApi<WheelResultNetApi> {
 public:
  explicit WheelResultNetApi(std::string wheelId);

  std::string requestUrl() const override { return "getWheelResult"; }
  RequestMethod requestMethod() const override { return RequestMethod::GET; }
  Json requestArgument() const override;

  // The record of the answer's "data" when it is a JSON object, else none.
  std::optional<WheelModel> getWheel() const { return WheelModel::fromData(responseData()); }

  std::string wheelId;
};

}  // namespace qmv
