#include "features/orders/order_detail_view_controller.h"

#include "features/orders/order_detail_net_api.h"
#include "features/orders/order_texts.h"
#include "features/orders/qx_my_order_table_view_cell.h"

namespace qmv {

OrderDetailViewController::OrderDetailViewController(std::string orderId) : orderId(std::move(orderId)) {}

OrderDetailViewController::~OrderDetailViewController() { detachRequest(request_); }

std::string OrderDetailViewController::title() const { return order_texts::kOrderDetailTitle; }

void OrderDetailViewController::orderDetailNet() {
  detachRequest(request_);
  if (orderId.empty()) {
    if (onLoaded) onLoaded(false);
    return;
  }
  auto request = std::make_shared<OrderDetailNetApi>(orderId);
  attachRequest(*request);
  request_ = request;
  request->startWithCompletionBlockWithSuccess(
      [this](OrderDetailNetApi& api) {
        std::optional<OrderInfoModel> order = api.isCorrectResult() ? api.getOrderDetail() : std::nullopt;
        const bool loaded = order.has_value();
        if (loaded) {
          orderInfo = std::move(order);
          refreshView();
        }
        if (onChange) onChange();
        if (onLoaded) onLoaded(loaded);
      },
      [this](BaseRequest&) {
        if (onLoaded) onLoaded(false);
      });
}

void OrderDetailViewController::refreshView() {
  if (!orderInfo) return;
  imageURL = orderInfo->imageURL;
  placeholderImage = order_texts::kPlaceholderImage;
  nameText = orderInfo->name;
  orderIdText = order_texts::kOrderIdPrefix + orderInfo->orderId;
  phoneText = order_texts::kPhonePrefix + orderInfo->phone;
  timeText = order_texts::kPaidTimePrefix + orderInfo->time;
  statusText = order_texts::kStatusPrefix + QXMyOrderTableViewCell::lookOfStatus(orderInfo->status).statusText;
}

}  // namespace qmv
