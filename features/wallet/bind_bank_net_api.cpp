#include "features/wallet/bind_bank_net_api.h"

#include <utility>

#include "core/common/dictionary.h"

namespace qmv {

BindBankNetApi::BindBankNetApi(BankModel bank) : bank(std::move(bank)) {}

Json BindBankNetApi::requestArgument() const {
  Json arguments = getBaseArgument();
  setCustomString(arguments, bank.name, "name");
  setCustomString(arguments, bank.cardId, "cardId");
  setCustomString(arguments, bank.certifId, "certifId");
  setCustomString(arguments, bank.identifying, "identifying");
  return arguments;
}

}  // namespace qmv
