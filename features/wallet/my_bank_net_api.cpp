#include "features/wallet/my_bank_net_api.h"

#include "core/common/dictionary.h"

namespace qmv {

Json MyBankNetApi::requestArgument() const { return getBaseArgument(); }

std::optional<BankModel> MyBankNetApi::getBank() const {
  const Json& data = responseData();
  if (!data.is_object()) return std::nullopt;
  BankModel bank(data);
  if (bank.cardId.empty()) return std::nullopt;
  return bank;
}

}  // namespace qmv
