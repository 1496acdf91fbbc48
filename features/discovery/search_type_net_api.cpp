#include "features/discovery/search_type_net_api.h"

#include "core/common/settings_keys.h"
#include "core/session/search_types_reader.h"
#include "features/discovery/built_in_search_types.h"
#include "platform/env.h"
#include "platform/settings_store.h"

namespace qmv {

std::vector<SearchTypeModel> SearchTypeNetApi::getSearchTypes() {
  std::string saved;
  saved = Env::current().settings->stringForKey(kSearchTypesKey).value_or("");
  if (!saved.empty()) {
    auto list = getSearchTypeWithJsonStr(saved);
    // A damaged saved text must not leave the picker empty.
    if (!list.empty()) return list;
  }
  return getSearchTypeWithJsonStr(builtInSearchTypesText());
}

std::vector<SearchTypeModel> SearchTypeNetApi::getSearchTypeWithJsonStr(std::string_view text) {
  return searchTypesFromEnvelope(text);
}

}  // namespace qmv
