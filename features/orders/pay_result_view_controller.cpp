#include "features/orders/pay_result_view_controller.h"

#include "core/common/dictionary.h"
#include "features/orders/amount_text.h"
#include "features/orders/checkout_texts.h"
#include "features/orders/order_detail_net_api.h"
#include "features/orders/order_screens.h"
#include "features/orders/order_texts.h"
#include "features/orders/qx_my_activity_order_detail_view_controller.h"

namespace qmv {

namespace texts = checkout_texts;

Json PayResultViewController::payloadFor(bool paid, const OrderInfoModel& order, const std::string& name,
                                         const std::string& total) {
  Json payload = {{"paid", paid ? "1" : "0"}};
  setCustomString(payload, order.orderId, "orderId");
  setCustomString(payload, order.orderType, "orderType");
  setCustomString(payload, name, "name");
  setCustomString(payload, total, "total");
  // A balance payment's answer already carries the code.
  if (paid) setCustomString(payload, order.promotionCode, "promotionCode");
  return payload;
}

PayResultViewController::PayResultViewController(const Json& payload)
    : paid_(strForKey(payload, "paid") == "1"), name_(strForKey(payload, "name")), total_(strForKey(payload, "total")) {
  order_.orderId = strForKey(payload, "orderId");
  order_.orderType = strForKey(payload, "orderType");
  if (paid_) order_.promotionCode = strForKey(payload, "promotionCode");
}

PayResultViewController::~PayResultViewController() { detachRequest(request_); }

void PayResultViewController::viewDidLoad() {
  detachRequest(request_);
  if (!paid_ || order_.orderId.empty()) {
    if (onLoaded) onLoaded(false);
    return;
  }
  auto request = std::make_shared<OrderDetailNetApi>(order_.orderId);
  attachRequest(*request, /*showLoading=*/false);
  request_ = request;
  request->startWithCompletionBlockWithSuccess(
      [this](OrderDetailNetApi& api) {
        auto order = api.isCorrectResult() ? api.getOrderDetail() : std::nullopt;
        if (order) {
          if (!order->promotionCode.empty()) order_.promotionCode = order->promotionCode;
          if (!order->orderType.empty()) order_.orderType = order->orderType;
          if (!order->name.empty()) name_ = order->name;
          // What the server charged is the total from now on, when it states one.
          if (plainYuanFen(order->totalPrices)) total_ = order->totalPrices;
        }
        if (onChange) onChange();
        if (onLoaded) onLoaded(order.has_value());
      },
      [this](BaseRequest&) {
        if (onLoaded) onLoaded(false);
      });
}

bool PayResultViewController::isLoading() const { return request_ && request_->isExecuting(); }

std::string PayResultViewController::title() const { return texts::kPayResultTitle; }

std::string PayResultViewController::resultText() const { return paid_ ? texts::kPaySuccess : texts::kPayFailed; }

std::string PayResultViewController::orderIdText() const {
  return order_.orderId.empty() ? std::string() : order_texts::kOrderIdPrefix + order_.orderId;
}

std::string PayResultViewController::amountText() const {
  if (total_.empty()) return {};
  return (paid_ ? texts::kPaidAmountPrefix : texts::kUnpaidAmountPrefix) + total_;
}

std::string PayResultViewController::codeText() const {
  if (!paid_ || order_.promotionCode.empty()) return {};
  return order_texts::kCodePrefix + QXMyActivityOrderDetailViewController::groupedCode(order_.promotionCode);
}

std::string PayResultViewController::noteText() const { return paid_ ? texts::kReceiptNote : texts::kPayAgainNote; }

bool PayResultViewController::viewOrder() { return openOrderDetail(order_); }

}  // namespace qmv
