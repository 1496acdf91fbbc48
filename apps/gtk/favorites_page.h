#pragma once
// The bookmarks screen: its two tabs (stores, offers) as a filter bar over one list that
// draws the tab shown, each tab paging with the load-more button; a row opens its store
// or offer. Each appearance (the first, back from a store) reloads page 1 of the tab
// shown, so that a bookmark taken away there leaves the list.
#include <string>
#include <vector>

#include "apps/gtk/row_list.h"
#include "apps/gtk/screen_page.h"
#include "features/discovery/my_favorite_view_controller.h"

namespace qmv::gtk {

// One drawn row of either tab: its key (the tab and the id) and its texts.
struct FavoriteRow {
  std::string key;
  RowTexts texts;
};

class FavoritesPage : public ScreenPage {
 public:
  explicit FavoritesPage(PageContext& context);
  void refresh() override;
  void appeared() override;

  MyFavoriteViewController& screen() { return screen_; }
  const RowList<FavoriteRow>& rows() const { return rows_; }
  // Whether the tab shown is waiting for a page.
  bool isLoading() const;

 private:
  // The rows of the tab shown, as drawn.
  std::vector<FavoriteRow> shownRows() const;
  // The page's cover and warnings follow the list of the tab shown.
  void followShownTab();

  MyFavoriteViewController screen_;
  RowList<FavoriteRow> rows_;
  std::vector<Gtk::ToggleButton*> tabs_;
  Gtk::Button* more_ = nullptr;
};

}  // namespace qmv::gtk
