#include "features/wallet/unbind_bank_net_api.h"

#include "core/common/dictionary.h"

namespace qmv {

Json UnbindBankNetApi::requestArgument() const { return getBaseArgument(); }

}  // namespace qmv
