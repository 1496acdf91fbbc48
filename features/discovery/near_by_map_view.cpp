#include "features/discovery/near_by_map_view.h"

#include "core/session/global_data.h"
#include "features/discovery/detail_actions.h"
#include "features/discovery/discovery_texts.h"
#include "features/discovery/location_converter.h"
#include "features/discovery/map_list_net_api.h"
#include "features/discovery/search_type_net_api.h"
#include "features/discovery/store_screens.h"
#include "platform/env.h"
#include "platform/status_overlay.h"

namespace qmv {

NearByMapView::NearByMapView()
    : typeID(discovery_texts::kMapAllCategoriesId), categoryTitle(discovery_texts::kCategoryButtonTitle) {
  categoryScreen.categoryList = SearchTypeNetApi::getSearchTypes();
  categoryScreen.delegate = this;
}

NearByMapView::~NearByMapView() { detachRequest(request_); }

std::string NearByMapView::calloutLine(const StoreInfoModel& store) {
  std::string line;
  if (!store.mark.empty()) line = store.mark + discovery_texts::kCalloutMarkSuffix;
  return line + discovery_texts::kCalloutSoldPrefix + store.num + discovery_texts::kCalloutPerPersonPrefix +
         store.price;
}

void NearByMapView::getMapListNet() {
  if (!GlobalData::sharedInstance().userLocation()) {
    Env::current().overlay->showImage("", discovery_texts::kEnableLocation);
    if (onLoaded) onLoaded(false);
    return;
  }
  if (request_) {
    request_->clearCompletionBlock();
    request_->stop();
  }
  auto request = MapListNetApi::initWithType(typeID);
  attachRequest(*request);
  request_ = request;
  const auto done = [this](MapListNetApi& api, bool transported) {
    if (&api != request_.get()) return;
    const bool correct = transported && api.isCorrectResult();
    if (correct) {
      storeList = api.getMapList();
      pins.clear();
      for (const StoreInfoModel& store : storeList) {
        const auto bd = store.coordinate();
        if (!bd) continue;  // accepted by the request but not a number: cannot be placed
        pins.push_back({LocationConverter::transformFromBaiduToGCJ(*bd), store.storeId, store.storeName,
                        calloutLine(store), store.imgURLList.empty() ? "" : store.imgURLList.front(), store.star});
      }
    }
    if (onChange) onChange();
    if (onLoaded) onLoaded(correct);
  };
  request->startWithCompletionBlockWithSuccess([done](MapListNetApi& r) { done(r, true); },
                                               [done](MapListNetApi& r) { done(r, false); });
}

void NearByMapView::mapViewChangedTypeID(const std::string& typeId) {
  typeID = typeId;
  if (categoryScreen.resetCategory(typeId)) {
    const std::string title = categoryScreen.getSelectedItem();
    if (!title.empty()) categoryTitle = title;
  }
  getMapListNet();
}

void NearByMapView::screenViewDidSelected(CategoryScreenView& view) {
  const std::string title = view.getSelectedItem();
  if (!title.empty()) categoryTitle = title;
  typeID = view.getSelectedTypeId();
  getMapListNet();
}

void NearByMapView::selectPin(std::size_t index) {
  if (index >= pins.size()) return;
  for (const StoreInfoModel& store : storeList) {
    if (store.storeId == pins[index].storeId) return openStoreDetail(store);
  }
}

}  // namespace qmv
