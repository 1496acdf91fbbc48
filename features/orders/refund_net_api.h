#pragma once
// Asks for the refund of an order.
#include <string>

#include "core/request/base_net_api.h"

namespace qmv {

class RefundNetApi : public BaseNetApi {
 public:
  explicit RefundNetApi(std::string orderId);

  std::string requestUrl() const override { return "postRefund"; }
  RequestMethod requestMethod() const override { return RequestMethod::POST; }
  Json requestArgument() const override;
  std::string className() const override { return "RefundNetApi"; }

  std::string orderId;
};

}  // namespace qmv
