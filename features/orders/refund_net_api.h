#pragma once
// Asks for the refund of an order.
#include <string>

#include "core/request/net_api.h"

namespace qmv {

class RefundNetApi : public NetApi<RefundNetApi> {
 public:
  explicit RefundNetApi(std::string orderId);

  std::string requestUrl() const override { return "postRefund"; }
  RequestMethod requestMethod() const override { return RequestMethod::POST; }
  Json requestArgument() const override;

  std::string orderId;
};

}  // namespace qmv
