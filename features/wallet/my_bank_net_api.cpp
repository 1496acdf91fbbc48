#include "features/wallet/my_bank_net_api.h"

#include "core/common/dictionary.h"

namespace qmv {

Json MyBankNetApi::requestArgument() const { return getBaseArgument(); }

}  // namespace qmv
