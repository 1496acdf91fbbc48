#include "features/wheel/wheel_result_net_api.h"

#include <utility>

#include "core/common/dictionary.h"

namespace qmv {

WheelResultNetApi::WheelResultNetApi(std::string wheelId) : wheelId(std::move(wheelId)) {}

Json WheelResultNetApi::requestArgument() const {
  Json arguments = getBaseArgument();
  setCustomString(arguments, wheelId, "id");
  return arguments;
}

}  // namespace qmv
