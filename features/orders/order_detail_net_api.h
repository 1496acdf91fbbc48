#pragma once
// Reads one order of the member.
#include <optional>
#include <string>

#include "core/request/net_api.h"
#include "features/orders/order_info_model.h"

namespace qmv {

class OrderDetailNetApi : public NetApi<OrderDetailNetApi> {
 public:
  explicit OrderDetailNetApi(std::string orderId);

  std::string requestUrl() const override { return "getOrderDetail"; }
  RequestMethod requestMethod() const override { return RequestMethod::GET; }
  Json requestArgument() const override;

  // The order of "data" (an object) with its orderId set to the requested one, which
  // the answer need not carry; nullopt when "data" is not an object.
  std::optional<OrderInfoModel> getOrderDetail() const;

  std::string orderId;
};

}  // namespace qmv
