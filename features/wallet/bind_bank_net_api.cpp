#include "features/wallet/bind_bank_net_api.h"

#include <utility>

#include "core/common/dictionary.h"

namespace qmv {

BindBankNetApi::BindBankNetApi(std::string name, std::string cardId, std::string certifId, std::string identifying)
    : name(std::move(name)),
      cardId(std::move(cardId)),
      certifId(std::move(certifId)),
      identifying(std::move(identifying)) {}

Json BindBankNetApi::requestArgument() const {
  Json arguments = getBaseArgument();
  setCustomString(arguments, name, "name");
  setCustomString(arguments, cardId, "cardId");
  setCustomString(arguments, certifId, "certifId");
  setCustomString(arguments, identifying, "identifying");
  return arguments;
}

}  // namespace qmv
