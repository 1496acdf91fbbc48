#include "features/discovery/area_net_api.h"

#include "core/common/dictionary.h"
#include "core/common/fast_json.h"
#include "core/common/log.h"
#include "core/common/settings_keys.h"
#include "core/storage/area_rows.h"
#include "core/storage/db_util.h"
#include "platform/env.h"
#include "platform/settings_store.h"

namespace qmv {
namespace {

// Reads "data" of the answer; false when it holds no "dataList" array.
template <typename Dict>
bool readData(const Dict& data, AreaNetApi::Areas& areas) {
  areas.ver = fastjson::strForKey(data, "ver");
  const auto list = fastjson::member(data, "dataList");
  if (!list || !fastjson::isArray(*list)) return false;
  areas.rows = areaRowsOf(*list);
  return true;
}

}  // namespace

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

AreaNetApi::Areas AreaNetApi::readAreas() const {
  Areas areas;
  bool listed = false;
  const bool inPlace =
      requestOperation && fastjson::readDocument(responseString(), [&](fastjson::Element root) {
        if (const auto data = fastjson::member(root, "data")) listed = readData(*data, areas);
      });
  // Text that only the full reader can decide on (see readDocument) is read as a tree.
  if (!inPlace) listed = readData(responseData(), areas);
  if (!listed && isCorrectResult()) logWarning("the answer of " + requestUrl() + " carried no \"dataList\" array");
  return areas;
}

}  // namespace qmv
