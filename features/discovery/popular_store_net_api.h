#pragma once
// One page of a city's popular stores for the home page ("getPopularList").
#include <string>
#include <vector>

#include "core/request/net_api.h"
#include "features/discovery/store_info_model.h"

namespace qmv {

class PopularStoreNetApi : public NetApi<PopularStoreNetApi> {
 public:
  // `area`: the city id; `page`: the page number as text, first page "1".
  PopularStoreNetApi(std::string area, std::string page) : area(std::move(area)), page(std::move(page)) {}

  std::string requestUrl() const override { return "getPopularList"; }
  RequestMethod requestMethod() const override { return RequestMethod::GET; }
  Json requestArgument() const override;

  // Stores of "data"."dataList"; none when "data" is not an object.
  std::vector<StoreInfoModel> getPopularStores() const;
  // "data"."count" as an integer; 0 when absent or unreadable.
  long totalCount() const;  // the system's getTotleCount

  std::string area;
  std::string page;
};

}  // namespace qmv
