#pragma once
// One store with its offers and latest ratings ("getStoreDetailInfo"), for the store
// screen. Sent with the session so that the answer carries the member's bookmark.
#include <optional>
#include <string>
#include <vector>

#include "core/request/net_api.h"
#include "features/discovery/grade_model.h"
#include "features/discovery/store_info_model.h"

namespace qmv {

class StoreDetailNetApi : public NetApi<StoreDetailNetApi> {
 public:
  explicit StoreDetailNetApi(std::string storeId) : storeId(std::move(storeId)) {}

  std::string requestUrl() const override { return "getStoreDetailInfo"; }
  RequestMethod requestMethod() const override { return RequestMethod::GET; }
  Json requestArgument() const override;

  // The store of "data" (an object), its storeId set to the requested id and its
  // address height measured with the Env's text measurer (left 0 without one);
  // nullopt when "data" is not an object.
  std::optional<StoreInfoModel> getStoreDetail() const;
  // Ratings of "data"."dataList"; none when "data" is not an object.
  std::vector<GradeModel> getGradeList() const;

  std::string storeId;
};

}  // namespace qmv
