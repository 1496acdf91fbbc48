#include "features/orders/order_detail_net_api.h"

#include <utility>

#include "core/common/dictionary.h"

namespace qmv {

OrderDetailNetApi::OrderDetailNetApi(std::string orderId) : orderId(std::move(orderId)) {}

Json OrderDetailNetApi::requestArgument() const {
  Json arguments = getBaseArgument();
  setCustomString(arguments, orderId, "orderId");
  return arguments;
}

std::optional<OrderInfoModel> OrderDetailNetApi::getOrderDetail() const {
  const Json& data = responseData();
  if (!data.is_object()) return std::nullopt;
  OrderInfoModel order(data);
  order.orderId = orderId;
  return order;
}

}  // namespace qmv
