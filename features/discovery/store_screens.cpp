#include "features/discovery/store_screens.h"

#include <charconv>
#include <cmath>

#include "features/discovery/discovery_texts.h"
#include "platform/env.h"
#include "platform/navigator.h"
#include "platform/status_overlay.h"

namespace qmv {
namespace {

std::optional<double> number(const std::optional<std::string>& text) {
  if (!text || text->empty()) return std::nullopt;
  double value = 0;
  const char* end = text->data() + text->size();
  const auto result = std::from_chars(text->data(), end, value);
  if (result.ec != std::errc() || result.ptr != end || !std::isfinite(value)) return std::nullopt;
  return value;
}

}  // namespace

Json storePayload(const StoreInfoModel& store) {
  Json payload = {
      {"storeId", store.storeId}, {"storeName", store.storeName}, {"address", store.address}, {"phone", store.phone}};
  if (store.longitude && store.latitude) payload["coordinate"] = *store.longitude + "," + *store.latitude;
  return payload;
}

std::optional<Coordinate> storeCoordinate(const StoreInfoModel& store) {
  const auto latitude = number(store.latitude);
  const auto longitude = number(store.longitude);
  // A position off the globe is as unplaceable as none, and would print as no coordinate.
  if (!latitude || !longitude || std::fabs(*latitude) > 90 || std::fabs(*longitude) > 180) return std::nullopt;
  return Coordinate{*latitude, *longitude};
}

void openStoreDetail(const StoreInfoModel& store) {
  if (const auto& navigator = Env::current().navigator) {
    navigator->push(discovery_texts::kStoreDetailScreen, {{"storeId", store.storeId}, {"storeName", store.storeName}});
  }
}

void openStoreMap(const StoreInfoModel& store) {
  Env& env = Env::current();
  if (!storeCoordinate(store)) {
    if (env.overlay) env.overlay->showImage("", discovery_texts::kLocationError);
    return;
  }
  if (env.navigator) env.navigator->push(discovery_texts::kMapScreen, storePayload(store));
}

}  // namespace qmv
