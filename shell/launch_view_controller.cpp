#include "shell/launch_view_controller.h"

#include "core/session/global_data.h"
#include "platform/env.h"
#include "platform/location_source.h"
#include "platform/navigator.h"
#include "shell/app_delegate.h"
#include "shell/shell_texts.h"

namespace qmv {

namespace {

constexpr LaunchViewController::Page kPages[LaunchViewController::kPageCount] = {
    {shell_texts::kGuideOfferTitle, shell_texts::kGuideOfferText, "system-search-symbolic"},
    {shell_texts::kGuideLocationTitle, shell_texts::kGuideLocationText, "mark-location-symbolic"},
    {shell_texts::kGuideCityTitle, shell_texts::kGuideCityText, "find-location-symbolic"},
};

}  // namespace

const LaunchViewController::Page& LaunchViewController::page(std::size_t index) {
  return kPages[index < kPageCount ? index : kPageCount - 1];
}

LaunchViewController::~LaunchViewController() {
  if (location_ == Location::Asking) Env::current().location->stopUpdatingLocation();
}

void LaunchViewController::askForLocation() {
  if (location_ == Location::Asking) return;
  const auto& source = Env::current().location;
  if (!source->locationServicesEnabled()) return ended(Location::ServicesOff);
  location_ = Location::Asking;
  if (onChanged) onChanged();
  std::weak_ptr<bool> alive = alive_;
  source->startUpdatingLocation(
      [this, alive](Coordinate wgs) {
        if (!alive.lock() || location_ != Location::Asking) return;
        GlobalData::sharedInstance().setUserLocation(wgs);
        ended(Location::Located);
      },
      [this, alive] {
        if (alive.lock() && location_ == Location::Asking) ended(Location::Failed);
      });
}

void LaunchViewController::ended(Location location) {
  // One position is all the guide wants; the home starts its own locate.
  if (location_ == Location::Asking) Env::current().location->stopUpdatingLocation();
  location_ = location;
  if (onChanged) onChanged();
}

std::string LaunchViewController::locationText() const {
  switch (location_) {
    case Location::NotAsked:
      return "";
    case Location::Asking:
      return shell_texts::kGuideLocating;
    case Location::Located:
      return shell_texts::kGuideLocated;
    case Location::ServicesOff:
      return shell_texts::kGuideServicesOff;
    case Location::Failed:
      return shell_texts::kGuideLocateFailed;
  }
  return "";
}

std::string LaunchViewController::cityText() {
  return std::string(shell_texts::kGuideCityPrefix) + GlobalData::sharedInstance().getCurrentCityName();
}

void LaunchViewController::chooseCity() { Env::current().navigator->push(shell_texts::kCityScreen); }

void LaunchViewController::finish(AppDelegate& app) {
  if (location_ == Location::Asking) {
    Env::current().location->stopUpdatingLocation();
    location_ = Location::NotAsked;
  }
  app.showMainTabs();
}

}  // namespace qmv
