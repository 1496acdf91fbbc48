#pragma once
// The recommended stores of a city for the home page ("getRecommendStore").
#include <string>
#include <vector>

#include "core/request/net_api.h"
#include "features/discovery/store_info_model.h"

namespace qmv {

class RecommendStoreNetApi : public NetApi<RecommendStoreNetApi> {
 public:
  // `area`: the city id.
  explicit RecommendStoreNetApi(std::string area) : area(std::move(area)) {}

  std::string requestUrl() const override { return "getRecommendStore"; }
  RequestMethod requestMethod() const override { return RequestMethod::GET; }
  Json requestArgument() const override;

  // Stores of "data"."dataList"; none when "data" is not an object.
  std::vector<StoreInfoModel> getRecommendStores() const;

  std::string area;
};

}  // namespace qmv
