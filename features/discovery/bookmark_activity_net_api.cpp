#include "features/discovery/bookmark_activity_net_api.h"

#include <utility>

#include "core/common/dictionary.h"

namespace qmv {

BookmarkActivityNetApi::BookmarkActivityNetApi(std::string commodityId) : commodityId(std::move(commodityId)) {}

Json BookmarkActivityNetApi::requestArgument() const {
  Json arguments = getBaseArgument();
  setCustomString(arguments, commodityId, "commodityId");
  return arguments;
}

}  // namespace qmv
