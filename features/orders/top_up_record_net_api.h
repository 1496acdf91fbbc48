#pragma once
// Lists the member's top-up records of one kind, page by page.
#include <string>

#include "core/request/net_api.h"

namespace qmv {

class TopUpRecordNetApi : public NetApi<TopUpRecordNetApi> {
 public:
  TopUpRecordNetApi(std::string page, std::string type);

  std::string requestUrl() const override { return "getTopUpListForUser"; }
  RequestMethod requestMethod() const override { return RequestMethod::GET; }
  Json requestArgument() const override;

  std::string page;
  std::string type;
};

}  // namespace qmv
