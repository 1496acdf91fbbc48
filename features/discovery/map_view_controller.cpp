#include "features/discovery/map_view_controller.h"

#include <cmath>
#include <cstdio>

#include "core/session/global_data.h"
#include "features/discovery/discovery_texts.h"
#include "features/discovery/location_converter.h"
#include "features/discovery/store_screens.h"
#include "platform/alerts.h"
#include "platform/env.h"
#include "platform/status_overlay.h"
#include "platform/url_opener.h"

namespace qmv {
namespace {

std::string appleRouteUrl(Coordinate gcj) {
  char url[160];
  std::snprintf(url, sizeof url, discovery_texts::kAppleRouteFormat, gcj.latitude, gcj.longitude);
  return url;
}

}  // namespace

MapViewController::MapViewController(StoreInfoModel store) : store_(std::move(store)) {}

void MapViewController::viewDidLoad() {
  if (!store_.coordinate()) Env::current().overlay->showImage("", discovery_texts::kLocationError);
}

std::optional<Coordinate> MapViewController::storeCoordinateGcj() const {
  const auto bd = store_.coordinate();
  if (!bd) return std::nullopt;
  return LocationConverter::transformFromBaiduToGCJ(*bd);
}

std::vector<std::string> MapViewController::navigationChoices() const {
  std::vector<std::string> choices;
  const auto& opener = Env::current().urlOpener;
  if (opener->canOpenURL(geoUri({0, 0}))) choices.push_back(discovery_texts::kDesktopMaps);
  if (opener->canOpenURL(appleRouteUrl({0, 0}))) choices.push_back(discovery_texts::kAppleMaps);
  if (opener->canOpenURL(discovery_texts::kBaiduMapScheme)) choices.push_back(discovery_texts::kBaiduMaps);
  choices.push_back(discovery_texts::kCancel);
  return choices;
}

void MapViewController::navigate() {
  const auto& alerts = Env::current().alerts;
  const std::vector<std::string> choices = navigationChoices();
  AlertSpec alert{discovery_texts::kNavigateTitlePrefix + store_.storeName, "", choices, {}};
  alerts->show(alert, [this, choices](const AlertAnswer& answer) {
    RouteOutcome outcome = RouteOutcome::Cancelled;
    if (answer.buttonIndex >= 0 && static_cast<std::size_t>(answer.buttonIndex) < choices.size()) {
      const std::string& chosen = choices[static_cast<std::size_t>(answer.buttonIndex)];
      if (chosen == discovery_texts::kBaiduMaps) outcome = routeWithBaiduMap();
      if (chosen == discovery_texts::kAppleMaps) outcome = routeWithAppleMap();
      if (chosen == discovery_texts::kDesktopMaps) outcome = routeWithDesktopMap();
    }
    if (onRoute) onRoute(outcome);
  });
}

std::string MapViewController::baiduRouteUrl(Coordinate originBd, Coordinate destinationBd) {
  char url[256];
  std::snprintf(url, sizeof url, discovery_texts::kBaiduRouteFormat, originBd.latitude, originBd.longitude,
                destinationBd.latitude, destinationBd.longitude);
  return url;
}

MapViewController::RouteOutcome MapViewController::routeWithBaiduMap() {
  const auto& user = GlobalData::sharedInstance().userLocation();
  // South of the equator the Baidu conversion has no value (NaN): such a position is as
  // good as none for the route.
  const auto origin = user ? std::optional<Coordinate>(LocationConverter::transformFromGCJToBaidu(
                                 LocationConverter::transformFromWGSToGCJ(*user)))
                           : std::nullopt;
  if (!origin || !std::isfinite(origin->latitude) || !std::isfinite(origin->longitude)) {
    Env::current().overlay->showImage("", discovery_texts::kNoUserLocation);
    return RouteOutcome::NoUserLocation;
  }
  const auto destination = store_.coordinate();
  const auto& opener = Env::current().urlOpener;
  if (!destination) return RouteOutcome::Unavailable;
  return opener->openURL(baiduRouteUrl(*origin, *destination)) ? RouteOutcome::Opened : RouteOutcome::Unavailable;
}

MapViewController::RouteOutcome MapViewController::routeWithAppleMap() {
  const auto destination = storeCoordinateGcj();
  const auto& opener = Env::current().urlOpener;
  if (!destination) return RouteOutcome::Unavailable;
  return opener->openURL(appleRouteUrl(*destination)) ? RouteOutcome::Opened : RouteOutcome::Unavailable;
}

std::string MapViewController::geoUri(Coordinate wgs) {
  char uri[96];
  std::snprintf(uri, sizeof uri, discovery_texts::kGeoFormat, wgs.latitude, wgs.longitude);
  return uri;
}

MapViewController::RouteOutcome MapViewController::routeWithDesktopMap() {
  const auto gcj = storeCoordinateGcj();
  if (!gcj) return RouteOutcome::Unavailable;
  const Coordinate wgs = LocationConverter::transformFromGCJToWGS(*gcj);
  return Env::current().urlOpener->openURL(geoUri(wgs)) ? RouteOutcome::Opened : RouteOutcome::Unavailable;
}

}  // namespace qmv
