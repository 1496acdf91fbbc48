#include "core/session/user_info_net_api.h"

#include "core/common/dictionary.h"

namespace qmv {

Json UserInfoNetApi::requestArgument() const { return getBaseArgument(); }

}  // namespace qmv
