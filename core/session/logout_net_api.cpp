#include "core/session/logout_net_api.h"

#include "core/common/dictionary.h"

namespace qmv {

Json LogoutNetApi::requestArgument() const { return getBaseArgument(); }

}  // namespace qmv
