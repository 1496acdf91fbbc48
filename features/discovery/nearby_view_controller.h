#pragma once
// The nearby tab: the store list (NearbyView) and the store map (NearByMapView) as two
// faces, the keyword screen (SearchView), and what the home page hands over. The list
// face shows first; the views exist once viewDidLoad has run.
#include <memory>
#include <string>

#include "features/discovery/category_catalogue.h"
#include "features/discovery/near_by_map_view.h"
#include "features/discovery/nearby_handoff.h"
#include "features/discovery/nearby_view.h"
#include "features/discovery/search_view.h"

namespace qmv {

class NearbyViewController : public NearbyHandoff {
 public:
  NearbyViewController() = default;

  // Builds the faces, wires the keyword screen to the list and refreshes the saved
  // category catalogue (the one the next start reads).
  void viewDidLoad();
  bool isViewLoaded() const override { return nearbyView_ != nullptr; }

  // Shows the list face / the map face (the map loads its stores when shown).
  void switchLeftWithAnimation(bool animated = true);
  void switchRightWithAnimation(bool animated = true);
  bool isLeft() const { return isLeft_; }

  // A home-page category: on the list face it runs the filtered search at page 1; with
  // the map showing the map reloads instead. The list's category follows either way.
  void selectedCategoryFromMain(const std::string& typeId) override;
  // A home-page keyword: fills the field, shows the list, saves the word in the history
  // and runs the keyword search at page 1.
  void selectedKeyFromMain(const std::string& keyword) override;

  // REQUIRES: isViewLoaded().
  NearbyView& nearbyView() { return *nearbyView_; }
  NearByMapView& mapView() { return *mapView_; }
  SearchView& searchView() { return *searchView_; }

 private:
  std::unique_ptr<NearbyView> nearbyView_;
  std::unique_ptr<NearByMapView> mapView_;
  std::unique_ptr<SearchView> searchView_;
  CategoryCatalogue catalogue_;
  bool isLeft_ = true;
};

}  // namespace qmv
