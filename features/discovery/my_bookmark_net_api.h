#pragma once
// Lists the member's bookmarks page by page: bookmarked stores or bookmarked offers.
#include <string>
#include <vector>

#include "core/request/net_api.h"
#include "features/discovery/activity_model.h"
#include "features/discovery/store_info_model.h"

namespace qmv {

class MyBookmarkNetApi : public NetApi<MyBookmarkNetApi> {
 public:
  enum class Kind { Store, Commodity };

  MyBookmarkNetApi(std::string page, Kind kind);

  // "getMyFavorite" for stores, "getMyCommodityFavorite" for offers.
  std::string requestUrl() const override;
  RequestMethod requestMethod() const override { return RequestMethod::GET; }
  Json requestArgument() const override;

  // One store (Kind::Store) or offer (Kind::Commodity) per element of "data"."dataList".
  std::vector<StoreInfoModel> getStores() const;
  std::vector<ActivityModel> getActivities() const;

  std::string page;
  Kind kind = Kind::Store;
};

}  // namespace qmv
