#pragma once
// Reviews the store of an order with a star rating and a text.
#include <string>

#include "core/request/base_net_api.h"

namespace qmv {

class GradeStoreNetApi : public BaseNetApi {
 public:
  GradeStoreNetApi(std::string orderId, std::string star, std::string content);

  std::string requestUrl() const override { return "PostGrade"; }
  RequestMethod requestMethod() const override { return RequestMethod::POST; }
  Json requestArgument() const override;
  std::string className() const override { return "GradeStoreNetApi"; }

  std::string orderId;
  std::string star;
  std::string content;
};

}  // namespace qmv
