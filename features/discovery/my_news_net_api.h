#pragma once
// Lists the member's messages, page by page.
#include <string>

#include "core/request/base_net_api.h"

namespace qmv {

class MyNewsNetApi : public BaseNetApi {
 public:
  explicit MyNewsNetApi(std::string page);

  std::string requestUrl() const override { return "getMyMessage"; }
  RequestMethod requestMethod() const override { return RequestMethod::GET; }
  Json requestArgument() const override;
  std::string className() const override { return "MyNewsNetApi"; }

  std::string page;
};

}  // namespace qmv
