#pragma once
// Reviews the store of an order with a star rating and a text.
#include <string>

#include "core/request/net_api.h"

namespace qmv {

class GradeStoreNetApi : public NetApi<GradeStoreNetApi> {
 public:
  GradeStoreNetApi(std::string orderId, std::string star, std::string content);

  std::string requestUrl() const override { return "PostGrade"; }
  RequestMethod requestMethod() const override { return RequestMethod::POST; }
  Json requestArgument() const override;

  std::string orderId;
  std::string star;
  std::string content;
};

}  // namespace qmv
