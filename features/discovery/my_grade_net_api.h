#pragma once
// Lists the reviews the member wrote, page by page.
#include <string>
#include <vector>

#include "core/request/net_api.h"
#include "features/discovery/grade_model.h"

namespace qmv {

class MyGradeNetApi : public NetApi<MyGradeNetApi> {
 public:
  explicit MyGradeNetApi(std::string page);

  std::string requestUrl() const override { return "getMyRemark"; }
  RequestMethod requestMethod() const override { return RequestMethod::GET; }
  Json requestArgument() const override;

  // One rating per element of "data"."dataList".
  std::vector<GradeModel> getGrades() const;

  std::string page;
};

}  // namespace qmv
