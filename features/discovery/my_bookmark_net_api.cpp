#include "features/discovery/my_bookmark_net_api.h"

#include <utility>

#include "core/common/dictionary.h"

namespace qmv {

MyBookmarkNetApi::MyBookmarkNetApi(std::string page, Kind kind) : page(std::move(page)), kind(kind) {}

std::string MyBookmarkNetApi::requestUrl() const {
  return kind == Kind::Commodity ? "getMyCommodityFavorite" : "getMyFavorite";
}

Json MyBookmarkNetApi::requestArgument() const {
  Json arguments = getBaseArgument();
  setCustomString(arguments, page, "page");
  return arguments;
}

std::vector<StoreInfoModel> MyBookmarkNetApi::getStores() const { return modelsWithArray<StoreInfoModel>(responseList()); }

std::vector<ActivityModel> MyBookmarkNetApi::getActivities() const {
  return modelsWithArray<ActivityModel>(responseList());
}

}  // namespace qmv
