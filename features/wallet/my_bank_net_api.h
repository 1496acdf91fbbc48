#pragma once
// Reads the bank card bound to the member's account.
#include <string>

#include "core/request/base_net_api.h"

namespace qmv {

class MyBankNetApi : public BaseNetApi {
 public:
  MyBankNetApi() = default;

  std::string requestUrl() const override { return "getBoundBankCard"; }
  RequestMethod requestMethod() const override { return RequestMethod::GET; }
  Json requestArgument() const override;
  std::string className() const override { return "MyBankNetApi"; }
};

}  // namespace qmv
