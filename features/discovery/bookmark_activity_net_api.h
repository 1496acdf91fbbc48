#pragma once
// Bookmarks an offer (commodity) for the member.
#include <string>

#include "core/request/base_net_api.h"

namespace qmv {

class BookmarkActivityNetApi : public BaseNetApi {
 public:
  explicit BookmarkActivityNetApi(std::string commodityId);

  std::string requestUrl() const override { return "postCollectCommodity"; }
  RequestMethod requestMethod() const override { return RequestMethod::POST; }
  Json requestArgument() const override;
  std::string className() const override { return "BookmarkActivityNetApi"; }

  std::string commodityId;
};

}  // namespace qmv
