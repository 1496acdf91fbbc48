#pragma once
// Lists the reviews of a store, page by page, optionally of one star rating.
#include <string>

#include "core/request/net_api.h"

namespace qmv {

class StoreGradeNetApi : public NetApi<StoreGradeNetApi> {
 public:
  StoreGradeNetApi(std::string storeId, std::string page, std::string star);

  std::string requestUrl() const override { return "getRemarkMeByUser"; }
  RequestMethod requestMethod() const override { return RequestMethod::GET; }
  Json requestArgument() const override;

  std::string storeId;
  std::string page;
  std::string star;
};

}  // namespace qmv
