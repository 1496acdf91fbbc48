#pragma once
// Lists the reviews the member wrote, page by page.
#include <string>

#include "core/request/base_net_api.h"

namespace qmv {

class MyGradeNetApi : public BaseNetApi {
 public:
  explicit MyGradeNetApi(std::string page);

  std::string requestUrl() const override { return "getMyRemark"; }
  RequestMethod requestMethod() const override { return RequestMethod::GET; }
  Json requestArgument() const override;
  std::string className() const override { return "MyGradeNetApi"; }

  std::string page;
};

}  // namespace qmv
