#pragma once
// Unbinds the member's bank card.
#include <string>

#include "core/request/base_net_api.h"

namespace qmv {

class UnbindBankNetApi : public BaseNetApi {
 public:
  UnbindBankNetApi() = default;

  std::string requestUrl() const override { return "unBindingBankCard"; }
  RequestMethod requestMethod() const override { return RequestMethod::POST; }
  Json requestArgument() const override;
  std::string className() const override { return "UnbindBankNetApi"; }
};

}  // namespace qmv
