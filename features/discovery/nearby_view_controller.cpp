#include "features/discovery/nearby_view_controller.h"

namespace qmv {

void NearbyViewController::viewDidLoad() {
  if (isViewLoaded()) return;
  nearbyView_ = std::make_unique<NearbyView>();
  mapView_ = std::make_unique<NearByMapView>();
  searchView_ = std::make_unique<SearchView>();
  searchView_->onSearch = [this](const std::string& keyword) {
    switchLeftWithAnimation(false);
    nearbyView_->searchKeyword(keyword);
    searchView_->reloadHistory();
  };
  searchView_->onClear = [this] {
    switchLeftWithAnimation(false);
    nearbyView_->clearKeyword();
  };
  catalogue_.refresh();
}

void NearbyViewController::switchLeftWithAnimation(bool /*animated*/) { isLeft_ = true; }

void NearbyViewController::switchRightWithAnimation(bool /*animated*/) {
  const bool wasLeft = isLeft_;
  isLeft_ = false;
  if (wasLeft && mapView_) mapView_->getMapListNet();
}

void NearbyViewController::selectedCategoryFromMain(const std::string& typeId) {
  viewDidLoad();
  if (isLeft_) {
    nearbyView_->categoryFromMain(typeId, true);
  } else {
    nearbyView_->categoryFromMain(typeId, false);
    mapView_->mapViewChangedTypeID(typeId);
  }
}

void NearbyViewController::selectedKeyFromMain(const std::string& keyword) {
  viewDidLoad();
  switchLeftWithAnimation(false);
  nearbyView_->searchKeyword(keyword);
  searchView_->reloadHistory();
}

}  // namespace qmv
