#pragma once
// Lists the reviews of a store, page by page, optionally of one star rating.
#include <string>
#include <vector>

#include "core/request/net_api.h"
#include "features/discovery/grade_model.h"

namespace qmv {

class StoreGradeNetApi : public NetApi<StoreGradeNetApi> {
 public:
  StoreGradeNetApi(std::string storeId, std::string page, std::string star);

  std::string requestUrl() const override { return "getRemarkMeByUser"; }
  RequestMethod requestMethod() const override { return RequestMethod::GET; }
  Json requestArgument() const override;

  // One rating per element of "data"."dataList".
  std::vector<GradeModel> getGrades() const;
  // "data"."count", the number of ratings of the star asked for, when it is a whole number;
  // else "".
  std::string getCount() const;

  std::string storeId;
  std::string page;
  std::string star;
};

}  // namespace qmv
