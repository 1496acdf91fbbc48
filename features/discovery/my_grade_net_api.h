#pragma once
// Lists the reviews the member wrote, page by page.
#include <string>

#include "core/request/net_api.h"

namespace qmv {

class MyGradeNetApi : public NetApi<MyGradeNetApi> {
 public:
  explicit MyGradeNetApi(std::string page);

  std::string requestUrl() const override { return "getMyRemark"; }
  RequestMethod requestMethod() const override { return RequestMethod::GET; }
  Json requestArgument() const override;

  std::string page;
};

}  // namespace qmv
