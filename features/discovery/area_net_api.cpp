#include "features/discovery/area_net_api.h"

#include "core/common/dictionary.h"
#include "core/common/settings_keys.h"
#include "core/storage/db_util.h"
#include "platform/env.h"
#include "platform/settings_store.h"

namespace qmv {

std::string AreaNetApi::currentVersion() {
  const auto& settings = Env::current().settings;
  const auto stored = settings->stringForKey(kAreaVersionKey);
  if (!stored || stored->empty() || !DBUtil::cacheDBValid()) return "0";
  return *stored;
}

Json AreaNetApi::requestArgument() const {
  Json arguments = Json::object();
  setCustomString(arguments, currentVersion(), "ver");
  return arguments;
}

Json AreaNetApi::getAreaList() const { return responseList(); }

std::string AreaNetApi::getAreaVersion() const { return strForKey(responseData(), "ver"); }

}  // namespace qmv
