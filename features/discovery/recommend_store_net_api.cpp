#include "features/discovery/recommend_store_net_api.h"

#include "core/common/dictionary.h"
#include "features/discovery/store_list_reader.h"

namespace qmv {

Json RecommendStoreNetApi::requestArgument() const {
  Json arguments = Json::object();
  setCustomString(arguments, area, "area");
  return arguments;
}

std::vector<StoreInfoModel> RecommendStoreNetApi::getRecommendStores() const { return StoreInfoModel::listWithArray(responseList()); }

}  // namespace qmv
