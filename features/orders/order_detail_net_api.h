#pragma once
// Reads one order of the member.
#include <string>

#include "core/request/base_net_api.h"

namespace qmv {

class OrderDetailNetApi : public BaseNetApi {
 public:
  explicit OrderDetailNetApi(std::string orderId);

  std::string requestUrl() const override { return "getOrderDetail"; }
  RequestMethod requestMethod() const override { return RequestMethod::GET; }
  Json requestArgument() const override;
  std::string className() const override { return "OrderDetailNetApi"; }

  std::string orderId;
};

}  // namespace qmv
