#pragma once
// Bookmarks an offer (commodity) for the member.
#include <string>

#include "core/request/net_api.h"

namespace qmv {

class BookmarkActivityNetApi : public NetApi<BookmarkActivityNetApi> {
 public:
  explicit BookmarkActivityNetApi(std::string commodityId);

  std::string requestUrl() const override { return "postCollectCommodity"; }
  RequestMethod requestMethod() const override { return RequestMethod::POST; }
  Json requestArgument() const override;

  std::string commodityId;
};

}  // namespace qmv
