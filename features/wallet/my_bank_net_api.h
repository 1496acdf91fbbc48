#pragma once
// Reads the bank card bound to the member's account.
#include <optional>
#include <string>

#include "core/request/net_api.h"
#include "features/wallet/bank_model.h"

namespace qmv {

class MyBankNetApi : public NetApi<MyBankNetApi> {
 public:
  MyBankNetApi() = default;

  std::string requestUrl() const override { return "getBoundBankCard"; }
  RequestMethod requestMethod() const override { return RequestMethod::GET; }
  Json requestArgument() const override;

  // The card of the answer's "data" object; nullopt when "data" is not an object or
  // its "cardId" is missing, null or empty (no card is bound).
  std::optional<BankModel> getBank() const;
};

}  // namespace qmv
