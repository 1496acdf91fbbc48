#pragma once
// Marks the member's messages as read.
#include <string>

#include "core/request/base_net_api.h"

namespace qmv {

class NewsReadNetApi : public BaseNetApi {
 public:
  NewsReadNetApi() = default;

  std::string requestUrl() const override { return "getMyReadMessage"; }
  RequestMethod requestMethod() const override { return RequestMethod::GET; }
  Json requestArgument() const override;
  std::string className() const override { return "NewsReadNetApi"; }
};

}  // namespace qmv
