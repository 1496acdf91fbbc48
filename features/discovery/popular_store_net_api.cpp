#include "features/discovery/popular_store_net_api.h"

#include "core/common/dictionary.h"
#include "features/discovery/store_list_reader.h"

namespace qmv {

Json PopularStoreNetApi::requestArgument() const {
  Json arguments = Json::object();
  setCustomString(arguments, area, "area");
  setCustomString(arguments, page, "page");
  return arguments;
}

std::vector<StoreInfoModel> PopularStoreNetApi::getPopularStores() const { return StoreInfoModel::listWithArray(responseList()); }

long PopularStoreNetApi::totalCount() const { return countOfData(responseData()); }

}  // namespace qmv
