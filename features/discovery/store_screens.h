#pragma once
// Opening the screens a store leads to, shared by every list, map and detail screen that
// shows stores. Screens are opened through the Env's navigator by name, with a payload
// holding the store in the server's own keys so that the opened screen can rebuild the
// record from it.
#include "core/common/json.h"
#include "features/discovery/store_info_model.h"

namespace qmv {

// {"storeId", "storeName", "coordinate" (longitude first, when known), ...}: the wire
// form of the fields the store screens need; StoreInfoModel(payload) reads it back.
Json storePayload(const StoreInfoModel& store);

// Pushes the store screen with the store's id and name.
void openStoreDetail(const StoreInfoModel& store);
// Pushes the single-store map, or shows "位置信息错误" when the store has no coordinate.
void openStoreMap(const StoreInfoModel& store);

}  // namespace qmv
