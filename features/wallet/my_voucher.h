#pragma once
// Lists the member's vouchers, page by page.
#include <string>
#include <vector>

#include "core/request/net_api.h"
#include "features/wallet/voucher_model.h"

namespace qmv {

class MyVoucher : public NetApi<MyVoucher> {
 public:
  explicit MyVoucher(std::string page);

  std::string requestUrl() const override { return "getMyVoucher"; }
  RequestMethod requestMethod() const override { return RequestMethod::GET; }
  Json requestArgument() const override;

  // One voucher per element of "data"."dataList".
  std::vector<VoucherModel> getVouchers() const;

  std::string page;
};

}  // namespace qmv
