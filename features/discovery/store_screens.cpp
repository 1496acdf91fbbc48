#include "features/discovery/store_screens.h"

#include "features/discovery/discovery_texts.h"
#include "platform/env.h"
#include "platform/navigator.h"
#include "platform/status_overlay.h"

namespace qmv {

Json storePayload(const StoreInfoModel& store) {
  Json payload = {
      {"storeId", store.storeId}, {"storeName", store.storeName}, {"address", store.address}, {"phone", store.phone}};
  if (store.longitude && store.latitude) payload["coordinate"] = *store.longitude + "," + *store.latitude;
  return payload;
}

void openStoreDetail(const StoreInfoModel& store) {
  Env::current().navigator->push(discovery_texts::kStoreDetailScreen,
                                 {{"storeId", store.storeId}, {"storeName", store.storeName}});
}

void openStoreMap(const StoreInfoModel& store) {
  Env& env = Env::current();
  if (!store.coordinate()) {
    env.overlay->showImage("", discovery_texts::kLocationError);
    return;
  }
  env.navigator->push(discovery_texts::kMapScreen, storePayload(store));
}

}  // namespace qmv
