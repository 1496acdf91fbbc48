#pragma once
// The list face of the nearby tab, headless: a paged store list filled either by a
// keyword search or by three filters (district, category, sort), the filter buttons'
// texts, the keyword history, and the hand-overs from the home page.
//
// Paging: page 1 replaces the list, later pages append; a page that fails (connection or
// a failing answer) is asked for again by the next loadMore. A new search stops the one
// still running, whose answer is then ignored. The view follows "city_changed_noti": it
// rebuilds its district list and, once a list has been asked for, asks for page 1 of the
// new city, so that no store of the old city stays listed under the new one.
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "core/session/base_view_controller.h"
#include "features/discovery/category_screen_view.h"
#include "features/discovery/discovery_texts.h"
#include "features/discovery/filter_button.h"
#include "features/discovery/search_condition_model.h"
#include "features/discovery/store_info_model.h"

namespace qmv {

class SearchStoreNetApi;

class NearbyView : public BaseViewController, public CategoryScreenViewDelegate {
 public:
  enum class Filter { None, Area, Category, Sort };

  // Reads the district list of the current city and the category catalogue, and starts
  // following city changes. Sends nothing.
  NearbyView();
  ~NearbyView() override;
  NearbyView(const NearbyView&) = delete;
  NearbyView& operator=(const NearbyView&) = delete;

  long pageNum = 1;
  bool isKeySearchModel = false;
  std::vector<StoreInfoModel> storeList;
  std::vector<std::string> areaList;  // "全部", then the current city's districts
  std::vector<std::string> sortList;  // the four sort labels; a label's index is its code
  FilterButton areaButton;
  FilterButton categoryButton;
  FilterButton sortButton;
  std::string searchFieldText;
  CategoryScreenView categoryScreen;  // the category drop-down
  long areaSelectedIndex = 0;         // selection of the district drop-down
  long sortSelectedIndex = 0;         // selection of the sort drop-down
  bool loadMoreFooterHidden = true;
  Filter openFilter = Filter::None;  // the drop-down on screen

  // Keyword path: stops a running search and asks for page pageNum of searchFieldText in
  // the current city.
  void searchWithKey();
  // Filter path: stops a running search and asks for page pageNum with the district
  // (unless "全部"), category and sort of the buttons, and the member's position.
  void searchWithCategory();
  // The keyword path while isKeySearchModel and the search field holds text, else the
  // filter path.
  void startSearchNet();
  // Asks for the next page of the last path.
  void loadMore();
  // Pull-down: page 1 of the last path again.
  void headerRefresh();
  // A new keyword from the search screen: fills the field, saves it in the history,
  // enters the keyword path at page 1 and searches.
  void searchKeyword(const std::string& keyword);
  // Ends the keyword search: empties the field, returns to the filters at page 1 and
  // searches with them. Nothing while no keyword is active.
  void clearKeyword();
  // Whether the list shows a keyword's stores (the field's word is the list's title).
  bool keywordActive() const { return isKeySearchModel && !searchFieldText.empty(); }
  // What the list says once it came back without stores.
  const char* emptyText() const {
    return keywordActive() ? discovery_texts::kNoMatchingStores : discovery_texts::kNoStoresHere;
  }

  // Filter drop-downs: opening turns the button's arrow up; choosing puts the entry on
  // the button, leaves the keyword path, returns to page 1 and searches; cancelling
  // closes without searching. Out-of-range choices only close the drop-down.
  void tapFilter(Filter filter);
  void chooseArea(long index);
  void chooseSort(long index);
  void chooseCategory(long leftIndex, long rightIndex);  // rightIndex -1: main row only
  void cancelFilter();
  void screenViewDidSelected(CategoryScreenView& view) override;

  // The sort code sent: index of the sort button's title in sortList, "%ld".
  std::string sortCode() const;

  // Rebuilds areaList for the current city and resets the district choice to "全部";
  // then page 1 of the last path again when a search was ever sent.
  void citySelectedChanged();
  // Puts a non-empty word at the front of the "searchKeyWords" history.
  void saveSearchKey(const std::string& word);

  // Hand-over of a home-page category: points the category drop-down at it, leaves the
  // keyword path (forgetting the word, which no longer names the list), returns to page 1;
  // an id the catalogue does not know points it at its first entry ("全部分类");
  // searches unless `searchNow` is false (the map face reloads instead).
  void categoryFromMain(const std::string& typeId, bool searchNow);

  // A tapped row opens the store screen; the row's location action opens the
  // single-store map, or shows "位置信息错误" when the store has no coordinate.
  void selectStoreRow(std::size_t index);
  void locateStoreRow(std::size_t index);

  bool hasData() const override { return !storeList.empty(); }
  bool isSearching() const;
  // Called after every search's answer was applied (or failed).
  std::function<void(bool correct)> onLoaded;

 private:
  void send(SearchConditionModel condition);
  void finished(SearchStoreNetApi& request, bool correct);
  void chose();
  void rebuildAreaList();

  std::shared_ptr<SearchStoreNetApi> request_;
  std::uint64_t cityObserver_ = 0;
  bool searched_ = false;
};

}  // namespace qmv
