#include "features/orders/qx_my_order_table_view_cell.h"

#include "features/orders/order_screens.h"
#include "features/orders/order_texts.h"
#include "platform/alerts.h"
#include "platform/env.h"

namespace qmv {

namespace texts = order_texts;

QXMyOrderTableViewCell::StatusLook QXMyOrderTableViewCell::lookOfStatus(const std::string& status) {
  if (status == "1") return {texts::kStatusToUse, texts::kButtonRefund, true};
  if (status == "2") return {texts::kStatusToRate, texts::kButtonRate, true};
  if (status == "3") return {texts::kButtonRefunded, texts::kButtonRefunded, false};
  return {texts::kStatusDone, texts::kButtonDone, false};
}

void QXMyOrderTableViewCell::setData(const OrderInfoModel& order) {
  orderInfo = order;
  imageURL = order.imageURL;
  placeholderImage = texts::kPlaceholderImage;
  nameText = order.orderName;
  orderIdText = texts::kOrderIdPrefix + order.orderId;
  priceText = texts::kRowTotalPrefix + (order.totalPrices.empty() ? order.price : order.totalPrices);
  numberText = texts::kNumberPrefix + order.number;
  numberHidden = order.number == texts::kHiddenNumber;
  look = lookOfStatus(order.status);
  buttonColor = look.buttonEnabled ? kActiveColor : kInactiveColor;
}

void QXMyOrderTableViewCell::rightBtnAction() {
  if (orderInfo.status == "1") {
    const auto& alerts = Env::current().alerts;
    if (orderInfo.orderId.empty()) return;
    alerts->show({texts::kRefundTitle, texts::kRefundMessage, {texts::kCancel, texts::kConfirm}, {}},
                 [orderId = orderInfo.orderId, refund = refund](const AlertAnswer& answer) {
                   if (answer.buttonIndex == 1 && refund) refund(orderId);
                 });
  } else if (orderInfo.status == "2") {
    openGradeStore(orderInfo.orderId, orderInfo.storeName);
  }
}

}  // namespace qmv
