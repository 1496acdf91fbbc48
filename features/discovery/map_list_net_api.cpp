#include "features/discovery/map_list_net_api.h"

#include <algorithm>

#include "core/common/dictionary.h"
#include "core/session/global_data.h"
#include "features/discovery/location_converter.h"
#include "features/discovery/store_list_reader.h"

namespace qmv {

Json MapListNetApi::requestArgument() const {
  Json arguments = Json::object();
  const GlobalData& session = GlobalData::sharedInstance();
  if (const auto& location = session.userLocation()) {
    setCustomString(arguments, LocationConverter::coordinateArgument(*location), "coordinate");
  }
  setCustomString(arguments, type, "type");
  if (const auto city = session.getCurrentCityId()) setCustomString(arguments, *city, "area");
  return arguments;
}

std::vector<StoreInfoModel> MapListNetApi::getMapList() const {
  std::vector<StoreInfoModel> stores = StoreInfoModel::listWithArray(responseList());
  std::erase_if(stores, [](const StoreInfoModel& store) { return !isValidInfo(store); });
  return stores;
}

bool MapListNetApi::isValidInfo(const StoreInfoModel& store) {
  return store.longitude && !store.longitude->empty() && store.latitude && !store.latitude->empty();
}

}  // namespace qmv
