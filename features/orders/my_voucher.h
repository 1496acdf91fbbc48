#pragma once
// Lists the member's vouchers, page by page.
#include <string>

#include "core/request/net_api.h"

namespace qmv {

class MyVoucher : public NetApi<MyVoucher> {
 public:
  explicit MyVoucher(std::string page);

  std::string requestUrl() const override { return "getMyVoucher"; }
  RequestMethod requestMethod() const override { return RequestMethod::GET; }
  Json requestArgument() const override;

  std::string page;
};

}  // namespace qmv
