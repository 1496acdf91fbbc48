#include "core/session/search_type_model.h"

namespace qmv {

SearchTypeModel::SearchTypeModel(const Json& dic)
    : BaseModel(dic), name(strForKey(dic, "name")), typeId(strForKey(dic, "id")) {
  if (!dic.is_object()) return;
  const auto it = dic.find("list");
  if (it == dic.end() || !it->is_array()) return;
  for (const auto& element : *it) list.emplace_back(element);
}

}  // namespace qmv
