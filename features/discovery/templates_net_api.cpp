#include "features/discovery/templates_net_api.h"

#include "core/common/settings_keys.h"
#include "core/session/global_data.h"
#include "core/session/search_types_reader.h"
#include "platform/env.h"
#include "platform/settings_store.h"

namespace qmv {

std::vector<SearchTypeModel> TemplatesNetApi::templatesFromResponse() const {
  if (!responseData().is_object()) return {};
  Env::current().settings->setString(responseString(), kTemplatesKey);
  Env::current().settings->synchronize();
  return searchTypesFromEnvelope(responseString());
}

void TemplatesNetApi::resetTemplates(const std::vector<SearchTypeModel>& templates) {
  GlobalData::sharedInstance().mergeTemplates(templates);
}

const SearchTypeModel* TemplatesNetApi::getInfoWithName(const std::string& name,
                                                        const std::vector<SearchTypeModel>& list) {
  return GlobalData::getInfoWithName(name, list);
}

}  // namespace qmv
