#include "features/discovery/search_store_net_api.h"

#include "core/common/dictionary.h"
#include "core/session/global_data.h"
#include "features/discovery/location_converter.h"
#include "features/discovery/store_list_reader.h"

namespace qmv {
namespace {

void put(Json& arguments, const std::optional<std::string>& value, const std::string& key) {
  if (value) setCustomString(arguments, *value, key);
}

}  // namespace

std::string SearchStoreNetApi::requestUrl() const {
  return condition.hasKeyword() ? "getSearchList" : "getTypeSearchList";
}

Json SearchStoreNetApi::requestArgument() const {
  Json arguments = Json::object();
  if (condition.hasKeyword()) {
    put(arguments, condition.keyword, "keyword");
    put(arguments, condition.page, "page");
    put(arguments, condition.area, "area");
    return arguments;
  }
  put(arguments, condition.page, "page");
  const bool hasBlock = condition.block && !condition.block->empty();
  put(arguments, hasBlock ? condition.block : condition.area, "area");
  put(arguments, condition.type, "type");
  put(arguments, condition.sort, "sort");
  if (const auto& location = GlobalData::sharedInstance().userLocation()) {
    setCustomString(arguments, LocationConverter::coordinateArgument(*location), "coordinate");
  }
  return arguments;
}

std::vector<StoreInfoModel> SearchStoreNetApi::getSearchStores() const {
  // A page is read in place from the text; the parsed response is needed only to report
  // a correct answer without a list, which has no stores anyway.
  bool readable = false;
  std::vector<StoreInfoModel> stores = storesOfAnswer(responseString(), &readable);
  if (!readable) (void)responseList();
  return stores;
}

long SearchStoreNetApi::totalCount() const { return countOfData(responseData()); }

}  // namespace qmv
