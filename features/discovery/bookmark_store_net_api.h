#pragma once
// Bookmarks a store for the member.
#include <string>

#include "core/request/net_api.h"

namespace qmv {

class BookmarkStoreNetApi : public NetApi<BookmarkStoreNetApi> {
 public:
  explicit BookmarkStoreNetApi(std::string storeId);

  std::string requestUrl() const override { return "postBookmark"; }
  RequestMethod requestMethod() const override { return RequestMethod::POST; }
  Json requestArgument() const override;

  std::string storeId;
};

}  // namespace qmv
