#include "features/orders/refund_net_api.h"

#include <utility>

#include "core/common/dictionary.h"

namespace qmv {

RefundNetApi::RefundNetApi(std::string orderId) : orderId(std::move(orderId)) {}

Json RefundNetApi::requestArgument() const {
  Json arguments = getBaseArgument();
  setCustomString(arguments, orderId, "orderId");
  return arguments;
}

}  // namespace qmv
