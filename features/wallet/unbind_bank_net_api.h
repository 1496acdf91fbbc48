#pragma once
// Unbinds the member's bank card.
#include <string>

#include "core/request/net_api.h"

namespace qmv {

class UnbindBankNetApi : public NetApi<UnbindBankNetApi> {
 public:
  UnbindBankNetApi() = default;

  std::string requestUrl() const override { return "unBindingBankCard"; }
  RequestMethod requestMethod() const override { return RequestMethod::POST; }
  Json requestArgument() const override;
};

}  // namespace qmv
