#include "features/discovery/nearby_view.h"

#include <algorithm>

#include "core/common/notification_names.h"
#include "core/common/paged_list.h"
#include "core/session/global_data.h"
#include "core/storage/db_util.h"
#include "features/discovery/detail_actions.h"
#include "features/discovery/discovery_texts.h"
#include "features/discovery/map_list_net_api.h"
#include "features/discovery/search_history.h"
#include "features/discovery/search_store_net_api.h"
#include "features/discovery/search_type_net_api.h"
#include "features/discovery/store_screens.h"
#include "platform/env.h"
#include "platform/notification_center.h"
#include "platform/status_overlay.h"

namespace qmv {

NearbyView::NearbyView()
    : areaButton{discovery_texts::kAreaButtonTitle},
      categoryButton{discovery_texts::kCategoryButtonTitle},
      sortButton{discovery_texts::kSortButtonTitle} {
  sortList.assign(std::begin(discovery_texts::kSortLabels), std::end(discovery_texts::kSortLabels));
  rebuildAreaList();
  categoryScreen.categoryList = SearchTypeNetApi::getSearchTypes();
  categoryScreen.delegate = this;
  cityObserver_ = Env::current().notifications->addObserver(
      kCityChangedNotification, [this](const std::string&, const Json&) { citySelectedChanged(); });
}

NearbyView::~NearbyView() {
  if (cityObserver_ != 0) {
    Env::current().notifications->removeObserver(cityObserver_);
  }
  detachRequest(request_);
}

void NearbyView::rebuildAreaList() {
  areaList = {discovery_texts::kAllDistricts};
  if (const auto city = GlobalData::sharedInstance().getCurrentCityId()) {
    for (std::string& name : DBUtil::getAllDistrictWithCityId(*city)) areaList.push_back(std::move(name));
  }
}

void NearbyView::searchWithKey() {
  SearchConditionModel condition;
  condition.page = std::to_string(pageNum);
  condition.keyword = searchFieldText;
  condition.area = GlobalData::sharedInstance().getCurrentCityId();
  send(std::move(condition));
}

void NearbyView::searchWithCategory() {
  SearchConditionModel condition;
  condition.sort = "0";
  condition.sort = sortCode();
  condition.page = std::to_string(pageNum);
  const auto city = GlobalData::sharedInstance().getCurrentCityId();
  condition.area = city;
  if (areaButton.title != discovery_texts::kAllDistricts && city) {
    condition.block = DBUtil::getDistrictIdWithName(areaButton.title, *city);
  }
  condition.type = categoryScreen.getSelectedTypeId();
  send(std::move(condition));
}

void NearbyView::startSearchNet() {
  if (isKeySearchModel && !searchFieldText.empty()) {
    searchWithKey();
  } else {
    searchWithCategory();
  }
}

void NearbyView::loadMore() {
  if (isSearching()) return;  // a second pull-up would skip the page on its way
  ++pageNum;
  startSearchNet();
}

void NearbyView::headerRefresh() {
  pageNum = 1;
  startSearchNet();
}

void NearbyView::searchKeyword(const std::string& keyword) {
  searchFieldText = keyword;
  saveSearchKey(keyword);
  isKeySearchModel = true;
  pageNum = 1;
  startSearchNet();
}

void NearbyView::clearKeyword() {
  if (!keywordActive()) return;
  searchFieldText.clear();
  isKeySearchModel = false;
  pageNum = 1;
  startSearchNet();
}

std::string NearbyView::sortCode() const {
  const auto found = std::find(sortList.begin(), sortList.end(), sortButton.title);
  // A title outside the list would be a programming error; the default order is safe.
  const long index = found == sortList.end() ? 0 : static_cast<long>(found - sortList.begin());
  return std::to_string(index);
}

void NearbyView::send(SearchConditionModel condition) {
  if (request_) {
    // Its answer must not land in the list any more.
    request_->clearCompletionBlock();
    request_->stop();
  }
  searched_ = true;
  auto request = std::make_shared<SearchStoreNetApi>(std::move(condition));
  attachRequest(*request);
  request_ = request;
  request->startWithCompletionBlockWithSuccess(
      [this](SearchStoreNetApi& api) {
        finished(api, api.isCorrectResult());
      },
      [this](SearchStoreNetApi& api) { finished(api, false); });
}

void NearbyView::finished(SearchStoreNetApi& request, bool correct) {
  if (&request != request_.get()) return;
  applyPage(storeList, pageNum, loadMoreFooterHidden, correct,
            correct ? request.getSearchStores() : std::vector<StoreInfoModel>{});
  if (onChange) onChange();
  if (onLoaded) onLoaded(correct);
}

bool NearbyView::isSearching() const { return request_ && request_->isExecuting(); }

void NearbyView::tapFilter(Filter filter) {
  areaButton.arrowUp = filter == Filter::Area;
  categoryButton.arrowUp = filter == Filter::Category;
  sortButton.arrowUp = filter == Filter::Sort;
  openFilter = filter;
}

void NearbyView::cancelFilter() { tapFilter(Filter::None); }

void NearbyView::chose() {
  tapFilter(Filter::None);
  isKeySearchModel = false;
  pageNum = 1;
  startSearchNet();
}

void NearbyView::chooseArea(long index) {
  if (index < 0 || index >= static_cast<long>(areaList.size())) return cancelFilter();
  areaSelectedIndex = index;
  areaButton.title = areaList[static_cast<std::size_t>(index)];
  chose();
}

void NearbyView::chooseSort(long index) {
  if (index < 0 || index >= static_cast<long>(sortList.size())) return cancelFilter();
  sortSelectedIndex = index;
  sortButton.title = sortList[static_cast<std::size_t>(index)];
  chose();
}

void NearbyView::chooseCategory(long leftIndex, long rightIndex) {
  categoryScreen.selectLeftRow(leftIndex);
  if (rightIndex >= 0) categoryScreen.selectRightRow(rightIndex);
}

void NearbyView::screenViewDidSelected(CategoryScreenView& view) {
  const std::string title = view.getSelectedItem();
  if (!title.empty()) categoryButton.title = title;
  chose();
}

void NearbyView::citySelectedChanged() {
  rebuildAreaList();
  areaSelectedIndex = 0;
  areaButton.title = areaList.front();
  if (onChange) onChange();
  if (searched_) headerRefresh();
}

void NearbyView::saveSearchKey(const std::string& word) { SearchHistory::save(word); }

void NearbyView::categoryFromMain(const std::string& typeId, bool searchNow) {
  // An id the catalogue does not know must not leave the list on the category before.
  if (!categoryScreen.resetCategory(typeId)) {
    categoryScreen.selectedLeftIndex = 0;
    categoryScreen.selectedRightIndex = -1;
  }
  const std::string title = categoryScreen.getSelectedItem();
  categoryButton.title = title.empty() ? discovery_texts::kCategoryButtonTitle : title;
  isKeySearchModel = false;
  searchFieldText.clear();
  pageNum = 1;
  if (searchNow) startSearchNet();
}

void NearbyView::selectStoreRow(std::size_t index) {
  if (index >= storeList.size()) return;
  openStoreDetail(storeList[index]);
}

void NearbyView::locateStoreRow(std::size_t index) {
  if (index >= storeList.size()) return;
  openStoreMap(storeList[index]);
}

}  // namespace qmv
