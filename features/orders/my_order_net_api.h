#pragma once
// Lists the member's orders of one kind (the order list's tab), page by page.
#include <string>
#include <vector>

#include "core/request/net_api.h"
#include "features/orders/order_info_model.h"

namespace qmv {

class MyOrderNetApi : public NetApi<MyOrderNetApi> {
 public:
  MyOrderNetApi(std::string page, long type);

  std::string requestUrl() const override { return "getMyPosts"; }
  RequestMethod requestMethod() const override { return RequestMethod::GET; }
  // "page", then "type" as a decimal integer.
  Json requestArgument() const override;

  // One order per element of "data"."dataList"; none when "data" is not an object or
  // the list not an array.
  std::vector<OrderInfoModel> getOrderList() const;

  std::string page;
  long type = 0;
};

}  // namespace qmv
