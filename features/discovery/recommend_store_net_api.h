#pragma once
// The recommended stores of a city for the home page ("getRecommendStore").
#include <string>
#include <vector>

#include "core/request/base_net_api.h"
#include "features/discovery/store_info_model.h"

namespace qmv {

class RecommendStoreNetApi : public BaseNetApi {
 public:
  // `area`: the city id.
  explicit RecommendStoreNetApi(std::string area) : area(std::move(area)) {}

  std::string requestUrl() const override { return "getRecommendStore"; }
  RequestMethod requestMethod() const override { return RequestMethod::GET; }
  Json requestArgument() const override;
  std::string className() const override { return "RecommendStoreNetApi"; }

  // Stores of "data"."dataList"; none when "data" is not an object.
  std::vector<StoreInfoModel> getRecommendStores() const;

  std::string area;
};

}  // namespace qmv
