#pragma once
// Binds a bank card to the member's account; identifying is the SMS code typed
// on the bind screen.
#include <string>

#include "core/request/base_net_api.h"

namespace qmv {

class BindBankNetApi : public BaseNetApi {
 public:
  BindBankNetApi(std::string name, std::string cardId, std::string certifId, std::string identifying);

  std::string requestUrl() const override { return "bindBankCard"; }
  RequestMethod requestMethod() const override { return RequestMethod::POST; }
  Json requestArgument() const override;
  std::string className() const override { return "BindBankNetApi"; }

  std::string name;
  std::string cardId;
  std::string certifId;
  std::string identifying;
};

}  // namespace qmv
