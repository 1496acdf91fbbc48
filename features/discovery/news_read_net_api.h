#pragma once
// Marks the member's messages as read.
#include <string>

#include "core/request/net_api.h"

namespace qmv {

class NewsReadNetApi : public NetApi<NewsReadNetApi> {
 public:
  NewsReadNetApi() = default;

  std::string requestUrl() const override { return "getMyReadMessage"; }
  RequestMethod requestMethod() const override { return RequestMethod::GET; }
  Json requestArgument() const override;
};

}  // namespace qmv
