#pragma once
// Lists the member's orders of one kind (the order list's tab), page by page.
#include <string>

#include "core/request/base_net_api.h"

namespace qmv {

class MyOrderNetApi : public BaseNetApi {
 public:
  MyOrderNetApi(std::string page, long type);

  std::string requestUrl() const override { return "getMyPosts"; }
  RequestMethod requestMethod() const override { return RequestMethod::GET; }
  // "page", then "type" as a decimal integer.
  Json requestArgument() const override;
  std::string className() const override { return "MyOrderNetApi"; }

  std::string page;
  long type = 0;
};

}  // namespace qmv
