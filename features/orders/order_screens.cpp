#include "features/orders/order_screens.h"

#include "features/orders/order_texts.h"
#include "platform/env.h"
#include "platform/navigator.h"

namespace qmv {

bool openOrderDetail(const OrderInfoModel& order) {
  const auto& navigator = Env::current().navigator;
  if (order.orderId.empty() || !navigator) return false;
  navigator->push(order.isStoreOrder() ? order_texts::kStoreOrderDetailScreen : order_texts::kActivityOrderDetailScreen,
                  {{"orderId", order.orderId}});
  return true;
}

bool openGradeStore(const std::string& orderId, const std::string& storeName) {
  const auto& navigator = Env::current().navigator;
  if (orderId.empty() || !navigator) return false;
  navigator->push(order_texts::kGradeStoreScreen, {{"orderId", orderId}, {"storeName", storeName}});
  return true;
}

}  // namespace qmv
