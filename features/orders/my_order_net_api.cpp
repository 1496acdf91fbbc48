#include "features/orders/my_order_net_api.h"

#include <utility>

#include "core/common/dictionary.h"

namespace qmv {

MyOrderNetApi::MyOrderNetApi(std::string page, long type) : page(std::move(page)), type(type) {}

Json MyOrderNetApi::requestArgument() const {
  Json arguments = getBaseArgument();
  setCustomString(arguments, page, "page");
  setCustomString(arguments, std::to_string(type), "type");
  return arguments;
}

std::vector<OrderInfoModel> MyOrderNetApi::getOrderList() const {
  return OrderInfoModel::listWithArray(responseList());
}

}  // namespace qmv
