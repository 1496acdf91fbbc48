#pragma once
// Binds a bank card to the member's account: holder name, card number, identity number
// and the SMS code typed on the bind screen (the record's identifying).
#include <string>

#include "core/request/net_api.h"
#include "features/wallet/bank_model.h"

namespace qmv {

class BindBankNetApi : public NetApi<BindBankNetApi> {
 public:
  explicit BindBankNetApi(BankModel bank);

  std::string requestUrl() const override { return "bindBankCard"; }
  RequestMethod requestMethod() const override { return RequestMethod::POST; }
  // Base arguments, then "name", "cardId", "certifId" and "identifying"; empty values
  // are left out.
  Json requestArgument() const override;

  BankModel bank;
};

}  // namespace qmv
