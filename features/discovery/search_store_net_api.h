#pragma once
// The store search of the nearby tab, on one of two paths chosen by the condition: a
// keyword search ("getSearchList": keyword, page, city) or a filtered search
// ("getTypeSearchList": district or city, category, sort, page, and the member's position
// when it is known). Only set, non-empty condition fields are sent.
#include <string>
#include <vector>

#include "core/request/net_api.h"
#include "features/discovery/search_condition_model.h"
#include "features/discovery/store_info_model.h"

namespace qmv {

class SearchStoreNetApi : public NetApi<SearchStoreNetApi> {
 public:
  explicit SearchStoreNetApi(SearchConditionModel condition) : condition(std::move(condition)) {}

  // "getSearchList" when the condition holds a keyword, else "getTypeSearchList".
  std::string requestUrl() const override;
  RequestMethod requestMethod() const override { return RequestMethod::GET; }
  // The position is read from the session when the request starts, not from the
  // condition's longitude and latitude.
  Json requestArgument() const override;

  // Stores of "data"."dataList"; none when "data" is not an object.
  std::vector<StoreInfoModel> getSearchStores() const;
  // "data"."count" as an integer; 0 when absent or unreadable.
  long totalCount() const;  // the system's getTotleCount

  SearchConditionModel condition;
};

}  // namespace qmv
