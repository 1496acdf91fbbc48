#pragma once
// Lists the member's messages, page by page.
#include <string>

#include "core/request/net_api.h"

namespace qmv {

class MyNewsNetApi : public NetApi<MyNewsNetApi> {
 public:
  explicit MyNewsNetApi(std::string page);

  std::string requestUrl() const override { return "getMyMessage"; }
  RequestMethod requestMethod() const override { return RequestMethod::GET; }
  Json requestArgument() const override;

  std::string page;
};

}  // namespace qmv
