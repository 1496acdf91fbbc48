#pragma once
// Withdraws an amount of the balance to the bound card; amount is whole fen as
// decimal text.
#include <string>

#include "core/request/net_api.h"

namespace qmv {

class WithDrawNetApi : public NetApi<WithDrawNetApi> {
 public:
  explicit WithDrawNetApi(std::string amount);

  std::string requestUrl() const override { return "withDraw"; }
  RequestMethod requestMethod() const override { return RequestMethod::POST; }
  Json requestArgument() const override;

  std::string amount;
};

}  // namespace qmv
