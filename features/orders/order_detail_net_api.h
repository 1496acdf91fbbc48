#pragma once
// Reads one order of the member.
#include <optional>
#include <string>

#include "core/request/base_net_api.h"
#include "features/orders/order_info_model.h"

namespace qmv {

class OrderDetailNetApi : public BaseNetApi {
 public:
  explicit OrderDetailNetApi(std::string orderId);

  std::string requestUrl() const override { return "getOrderDetail"; }
  RequestMethod requestMethod() const override { return RequestMethod::GET; }
  Json requestArgument() const override;
  std::string className() const override { return "OrderDetailNetApi"; }

  // The order of "data" (an object) with its orderId set to the requested one, which
  // the answer need not carry; nullopt when "data" is not an object.
  std::optional<OrderInfoModel> getOrderDetail() const;

  std::string orderId;
};

}  // namespace qmv
