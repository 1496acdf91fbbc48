#include "features/orders/order_screens.h"

#include "core/session/login_screen.h"
#include "features/orders/checkout_texts.h"
#include "features/orders/order_texts.h"
#include "platform/env.h"
#include "platform/navigator.h"

namespace qmv {

bool openOrderDetail(const OrderInfoModel& order) {
  const auto& navigator = Env::current().navigator;
  if (order.orderId.empty()) return false;
  navigator->push(order.isStoreOrder() ? order_texts::kStoreOrderDetailScreen : order_texts::kActivityOrderDetailScreen,
                  {{"orderId", order.orderId}});
  return true;
}

bool openGradeStore(const std::string& orderId, const std::string& storeName) {
  const auto& navigator = Env::current().navigator;
  if (orderId.empty()) return false;
  navigator->push(order_texts::kGradeStoreScreen, {{"orderId", orderId}, {"storeName", storeName}});
  return true;
}

bool openStorePayment(const std::string& storeId, const std::string& totalFee) {
  const auto& navigator = Env::current().navigator;
  if (storeId.empty()) return false;
  if (!hasSession()) {
    presentLoginScreen();
    return false;
  }
  navigator->push(checkout_texts::kPayNowScreen, {{"storeId", storeId}, {"totalFee", totalFee}});
  return true;
}

}  // namespace qmv
