#include "core/session/search_types_reader.h"

#include "core/common/json.h"

namespace qmv {

std::vector<SearchTypeModel> searchTypesFromEnvelope(std::string_view text) {
  std::vector<SearchTypeModel> out;
  const Json root = parseJson(text);
  if (!root.is_object()) return out;
  const auto data = root.find("data");
  if (data == root.end() || !data->is_object()) return out;
  const auto list = data->find("dataList");
  if (list == data->end() || !list->is_array()) return out;
  for (const auto& element : *list) out.emplace_back(element);
  return out;
}

}  // namespace qmv
