#include "features/wheel/wheel_net_api.h"

#include "core/common/dictionary.h"

namespace qmv {

Json WheelNetApi::requestArgument() const { return getBaseArgument(); }

}  // namespace qmv
