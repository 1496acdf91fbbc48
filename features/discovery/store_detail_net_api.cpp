#include "features/discovery/store_detail_net_api.h"

#include "core/common/dictionary.h"
#include "platform/env.h"
#include "platform/text_measurer.h"

namespace qmv {

Json StoreDetailNetApi::requestArgument() const {
  Json arguments = getBaseArgument();
  setCustomString(arguments, storeId, "storeId");
  return arguments;
}

std::optional<StoreInfoModel> StoreDetailNetApi::getStoreDetail() const {
  const Json& data = responseData();
  if (!data.is_object()) return std::nullopt;
  StoreInfoModel store(data);
  store.storeId = storeId;
  store.setAddressHeight(*Env::current().textMeasurer);
  return store;
}

std::vector<GradeModel> StoreDetailNetApi::getGradeList() const {
  const Json& data = responseData();
  if (!data.is_object()) return {};
  const auto list = data.find("dataList");
  return list == data.end() ? std::vector<GradeModel>{} : GradeModel::listWithArray(*list);
}

}  // namespace qmv
