#pragma once
// The bookmarks screen ("我的收藏"), headless: two tabs, the bookmarked stores and the
// bookmarked offers, each its own paged list that keeps its rows and page while the other
// is shown.
//
// Choices: the screen opens on the stores. Showing a tab, and each appearance of the
// screen, loads page 1 of the tab shown, so that a bookmark taken away on a store or offer
// screen leaves the list when the member comes back. Rows are in the server's order (the
// newest bookmark first). A store row opens the store screen, an offer row the offer
// screen; a row without an id opens nothing.
#include <cstddef>

#include "features/discovery/bookmark_list_controller.h"
#include "features/discovery/discovery_texts.h"

namespace qmv {

class MyFavoriteViewController {
 public:
  static constexpr const char* kTitle = discovery_texts::kFavoritesTitle;
  enum class Tab { Stores, Offers };

  explicit MyFavoriteViewController(Tab tab = Tab::Stores) : tab_(tab) {}

  const char* title() const { return kTitle; }
  // The tabs' labels, indexed by Tab.
  static const char* tabTitle(Tab tab) { return discovery_texts::kFavoriteTabs[static_cast<int>(tab)]; }
  Tab tab() const { return tab_; }
  // Shows `tab` and loads its page 1; nothing when it is shown already.
  void selectTab(Tab tab);
  // The screen appears: page 1 of the tab shown.
  void viewWillAppear();
  // What the tab shown says when it has no rows.
  const char* emptyText() const;

  BookmarkListController<StoreInfoModel>& stores() { return stores_; }
  BookmarkListController<ActivityModel>& offers() { return offers_; }
  const BookmarkListController<StoreInfoModel>& stores() const { return stores_; }
  const BookmarkListController<ActivityModel>& offers() const { return offers_; }

  // Pushes the store or offer screen of row `row` of the tab shown; false when there is no
  // such row or it has no id.
  bool openRow(std::size_t row);

 private:
  Tab tab_;
  BookmarkListController<StoreInfoModel> stores_;
  BookmarkListController<ActivityModel> offers_;
};

}  // namespace qmv
