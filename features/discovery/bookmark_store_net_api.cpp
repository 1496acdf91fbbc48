#include "features/discovery/bookmark_store_net_api.h"

#include <utility>

#include "core/common/dictionary.h"

namespace qmv {

BookmarkStoreNetApi::BookmarkStoreNetApi(std::string storeId) : storeId(std::move(storeId)) {}

Json BookmarkStoreNetApi::requestArgument() const {
  Json arguments = getBaseArgument();
  setCustomString(arguments, storeId, "storeId");
  return arguments;
}

}  // namespace qmv
