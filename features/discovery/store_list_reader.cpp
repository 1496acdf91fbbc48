#include "features/discovery/store_list_reader.h"

#include <charconv>
#include <cmath>
#include <limits>
#include <string>

#include "core/common/dictionary.h"
#include "core/common/fast_json.h"
#include "features/discovery/detail/records_in_place.h"

namespace qmv {

std::vector<StoreInfoModel> storesOfData(const Json& data) {
  if (!data.is_object()) return {};
  const auto list = data.find("dataList");
  return list == data.end() ? std::vector<StoreInfoModel>{} : StoreInfoModel::listWithArray(*list);
}

std::vector<StoreInfoModel> storesOfAnswer(std::string_view text, bool* listRead) {
  std::vector<StoreInfoModel> stores;
  bool hasList = false;
  const bool read = fastjson::readDocument(text, [&stores, &hasList](fastjson::Element root) {
    const auto data = fastjson::member(root, "data");
    if (!data || !data->is_object()) return;
    const auto list = fastjson::member(*data, "dataList");
    hasList = list && list->is_array();
    if (!hasList) return;
    stores.reserve(fastjson::sizeOf(*list));
    fastjson::forEachElement(*list, [&stores](fastjson::Element store) { stores.push_back(detail::storeIn(store)); });
  });
  if (!read) {
    const Json root = parseJson(text);
    const Json* data = fastjson::member(root, "data");
    const Json* list = data && data->is_object() ? fastjson::member(*data, "dataList") : nullptr;
    hasList = list && list->is_array();
    if (hasList) stores = StoreInfoModel::listWithArray(*list);
  }
  if (listRead) *listRead = hasList;
  return stores;
}

long countOfData(const Json& data) {
  if (!data.is_object()) return 0;
  const auto count = data.find("count");
  if (count == data.end()) return 0;
  if (count->is_number_integer()) {
    const auto value = count->get<long long>();
    return value < 0 || value > std::numeric_limits<long>::max() ? 0 : static_cast<long>(value);
  }
  if (count->is_number()) {
    const double value = count->get<double>();
    return std::isfinite(value) && value >= 0 && value < 1e15 ? static_cast<long>(value) : 0;
  }
  const std::string text = textOf(*count);
  long value = 0;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
  return result.ec == std::errc() && result.ptr == text.data() + text.size() && value >= 0 ? value : 0;
}

}  // namespace qmv
