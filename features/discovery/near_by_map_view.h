#pragma once
// The map face of the nearby tab, headless: the stores of one category around the
// member, each as a pin at its position converted to the map's datum (GCJ-02), with a
// callout line. The map has its own category choice ("全部分类", id "0" at first). Without
// a member position nothing is asked for and "请开启定位功能" is shown.
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "core/common/coordinate.h"
#include "core/session/base_view_controller.h"
#include "features/discovery/category_screen_view.h"
#include "features/discovery/store_info_model.h"

namespace qmv {

class MapListNetApi;

class NearByMapView : public BaseViewController, public CategoryScreenViewDelegate {
 public:
  struct Pin {
    Coordinate gcj;  // where the map draws it
    std::string storeId;
    std::string title;     // store name
    std::string subtitle;  // calloutLine
    std::string picture;   // first picture address, "" when none
    std::string star;
  };

  NearByMapView();
  ~NearByMapView() override;
  NearByMapView(const NearByMapView&) = delete;
  NearByMapView& operator=(const NearByMapView&) = delete;

  // Asks for the map's stores of typeID in the current city; shows "请开启定位功能" and
  // stops when the member's position is unknown. Replaces a running request.
  void getMapListNet();
  // A category chosen for the map: remembers it and reloads.
  void mapViewChangedTypeID(const std::string& typeId);
  // The map's category drop-down reports a choice: its name and id become the map's.
  void screenViewDidSelected(CategoryScreenView& view) override;
  // A tapped callout opens the store screen.
  void selectPin(std::size_t index);

  // "%@分 已售%@ 人均:￥%@" (mark, sold, price per person), or "已售%@ 人均:￥%@" when the
  // store has no mark.
  static std::string calloutLine(const StoreInfoModel& store);

  std::string typeID = "0";
  std::string categoryTitle;  // "全部分类" at first; named like the list's category button
  CategoryScreenView categoryScreen;
  std::vector<StoreInfoModel> storeList;
  std::vector<Pin> pins;

  bool hasData() const override { return !storeList.empty(); }
  // Called when a map load ends: true when the stores were replaced, false when it
  // failed or could not be asked for.
  std::function<void(bool loaded)> onLoaded;

 private:
  std::shared_ptr<MapListNetApi> request_;
};

}  // namespace qmv
