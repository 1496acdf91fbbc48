#pragma once
// The map of one store, headless: where to draw it (its BD-09 position converted to
// GCJ-02) and the route hand-off to an external map application. The "navigate" action
// offers "导航到 <store name>" with, each only when some application opens its address:
// "地图" (the desktop's map application, a "geo:" URI), "苹果地图" (its web route) and
// "百度地图" ("baidumap://map/"); then "取消". A choice nothing would open is not offered:
// on a desktop without those applications it would do nothing.
#include <functional>
#include <optional>
#include <string>

#include "core/common/coordinate.h"
#include "features/discovery/store_info_model.h"

namespace qmv {

class MapViewController {
 public:
  enum class RouteOutcome { Opened, NoUserLocation, Cancelled, Unavailable };

  explicit MapViewController(StoreInfoModel store);

  // Shows the store; "位置信息错误" when it has no usable coordinate.
  void viewDidLoad();
  // Where the map draws the store, or nullopt without a usable coordinate.
  std::optional<Coordinate> storeCoordinateGcj() const;

  // Shows the navigation sheet; the answer runs the chosen hand-off and then onRoute.
  void navigate();
  // The buttons the sheet offers, in order.
  std::vector<std::string> navigationChoices() const;
  // The Baidu hand-off: "未获取到用户当前位置" without a member position, else opens the
  // route from the member (WGS-84 -> GCJ-02 -> BD-09) to the store (BD-09 as received).
  RouteOutcome routeWithBaiduMap();
  // The platform map hand-off: opens the platform's map with driving directions to the
  // store's GCJ-02 position.
  RouteOutcome routeWithAppleMap();
  // The desktop map hand-off: "geo:<lat>,<lon>" of the store's WGS-84 position (BD-09 ->
  // GCJ-02 -> WGS-84), which is what geo URIs carry.
  RouteOutcome routeWithDesktopMap();
  static std::string geoUri(Coordinate wgs);

  // The Baidu map route address, "%.8f" each, latitude first, with its doubled "&&".
  static std::string baiduRouteUrl(Coordinate originBd, Coordinate destinationBd);

  const StoreInfoModel& store() const { return store_; }
  std::function<void(RouteOutcome)> onRoute;

 private:
  StoreInfoModel store_;
};

}  // namespace qmv
