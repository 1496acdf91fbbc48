#pragma once
// One list of the bookmarks screen: the member's bookmarked stores ("getMyFavorite") or
// offers ("getMyCommodityFavorite"), by the row type, paged like every list of the client.
#include <memory>
#include <string>
#include <type_traits>
#include <vector>

#include "core/session/paged_list_controller.h"
#include "features/discovery/activity_model.h"
#include "features/discovery/my_bookmark_net_api.h"
#include "features/discovery/store_info_model.h"

namespace qmv {

template <class Row>
class BookmarkListController : public PagedListController<Row, MyBookmarkNetApi> {
  static_assert(std::is_same_v<Row, StoreInfoModel> || std::is_same_v<Row, ActivityModel>);

 public:
  static constexpr MyBookmarkNetApi::Kind kKind =
      std::is_same_v<Row, StoreInfoModel> ? MyBookmarkNetApi::Kind::Store : MyBookmarkNetApi::Kind::Commodity;

  BookmarkListController() = default;
  ~BookmarkListController() override = default;

 protected:
  std::shared_ptr<MyBookmarkNetApi> makeRequest(long page) override {
    return std::make_shared<MyBookmarkNetApi>(std::to_string(page), kKind);
  }
  std::vector<Row> rowsOf(const MyBookmarkNetApi& answered) override {
    if constexpr (kKind == MyBookmarkNetApi::Kind::Store) {
      return answered.getStores();
    } else {
      return answered.getActivities();
    }
  }
};

}  // namespace qmv
