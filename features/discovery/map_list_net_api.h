#pragma once
// The stores of the nearby map ("getMapList"): those of one category in the current city,
// nearest first when the member's position is known. Only stores with a position are
// kept, since a map cannot place the others.
#include <string>
#include <vector>

#include "core/request/net_api.h"
#include "features/discovery/store_info_model.h"

namespace qmv {

class MapListNetApi : public NetApi<MapListNetApi> {
 public:
  // `type`: category id ("0" for every category).
  explicit MapListNetApi(std::string type) : type(std::move(type)) {}
  static std::shared_ptr<MapListNetApi> initWithType(std::string type) {
    return std::make_shared<MapListNetApi>(std::move(type));
  }

  std::string requestUrl() const override { return "getMapList"; }
  RequestMethod requestMethod() const override { return RequestMethod::GET; }
  // "coordinate" (only when the member's position is known), "type", "area" (the
  // current city id).
  Json requestArgument() const override;

  // Stores of "data"."dataList" that pass isValidInfo, in order.
  std::vector<StoreInfoModel> getMapList() const;
  // True when both the store's longitude and latitude are set and non-empty.
  static bool isValidInfo(const StoreInfoModel& store);

  std::string type;
};

}  // namespace qmv
