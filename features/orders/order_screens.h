#pragma once
// Opening the screens an order leads to, shared by the list, its rows and the detail
// screens. An empty id never reaches a next screen: each call opens nothing and answers
// false when the id it needs is empty.
#include <string>

#include "features/orders/order_info_model.h"

namespace qmv {

// The store-order detail for orderType "1", else the activity-order detail, given the
// orderId.
bool openOrderDetail(const OrderInfoModel& order);
// The rating screen of the order's store, with the order id and the store name.
bool openGradeStore(const std::string& orderId, const std::string& storeName);
// The pay-now screen for paying `totalFee` (yuan, as typed) to the store; the login screen
// instead when nobody is signed in, as a page's pay link does.
bool openStorePayment(const std::string& storeId, const std::string& totalFee);

}  // namespace qmv
