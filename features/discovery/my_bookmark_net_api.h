#pragma once
// Lists the member's bookmarks page by page: bookmarked stores or bookmarked offers.
#include <string>

#include "core/request/net_api.h"

namespace qmv {

class MyBookmarkNetApi : public NetApi<MyBookmarkNetApi> {
 public:
  enum class Kind { Store, Commodity };

  MyBookmarkNetApi(std::string page, Kind kind);

  // "getMyFavorite" for stores, "getMyCommodityFavorite" for offers.
  std::string requestUrl() const override;
  RequestMethod requestMethod() const override { return RequestMethod::GET; }
  Json requestArgument() const override;

  std::string page;
  Kind kind = Kind::Store;
};

}  // namespace qmv
