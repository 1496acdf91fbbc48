#pragma once
// Lists the member's fund records of one kind, page by page.
#include <string>
#include <vector>

#include "core/request/net_api.h"
#include "features/wallet/fund_record_model.h"

namespace qmv {

class TopUpRecordNetApi : public NetApi<TopUpRecordNetApi> {
 public:
  TopUpRecordNetApi(std::string page, std::string type);

  std::string requestUrl() const override { return "getTopUpListForUser"; }
  RequestMethod requestMethod() const override { return RequestMethod::GET; }
  Json requestArgument() const override;

  // One record per element of "data"."dataList".
  std::vector<FundRecordModel> getRecords() const;
  // "data"."count", the number of records of the kind, when it is a whole number; else "".
  std::string getCount() const;

  std::string page;
  std::string type;
};

}  // namespace qmv
