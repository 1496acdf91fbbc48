#pragma once
// Lists the member's messages, page by page.
#include <string>
#include <vector>

#include "core/request/net_api.h"
#include "features/discovery/news_info_model.h"

namespace qmv {

class MyNewsNetApi : public NetApi<MyNewsNetApi> {
 public:
  explicit MyNewsNetApi(std::string page);

  std::string requestUrl() const override { return "getMyMessage"; }
  RequestMethod requestMethod() const override { return RequestMethod::GET; }
  Json requestArgument() const override;

  // One message per element of "data"."dataList".
  std::vector<NewsInfoModel> getNews() const;

  std::string page;
};

}  // namespace qmv
