#pragma once
// Lists the member's bookmarks page by page: bookmarked stores or bookmarked offers.
#include <string>

#include "core/request/base_net_api.h"

namespace qmv {

class MyBookmarkNetApi : public BaseNetApi {
 public:
  enum class Kind { Store, Commodity };

  MyBookmarkNetApi(std::string page, Kind kind);

  // "getMyFavorite" for stores, "getMyCommodityFavorite" for offers.
  std::string requestUrl() const override;
  RequestMethod requestMethod() const override { return RequestMethod::GET; }
  Json requestArgument() const override;
  std::string className() const override { return "MyBookmarkNetApi"; }

  std::string page;
  Kind kind = Kind::Store;
};

}  // namespace qmv
