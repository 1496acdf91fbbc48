#include "features/discovery/area_net_api.h"

#include <vector>

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

constexpr const char* kAreaListUrl = "getAreaList";

// Reads "data" of the answer; false when it holds no "dataList" array.
template <typename Dict>
bool readData(const Dict& data, AreaNetApi::Areas& areas) {
  areas.ver = fastjson::strForKey(data, "ver");
  const auto list = fastjson::member(data, "dataList");
  if (!list || !fastjson::isArray(*list)) return false;
  areas.rows = areaRowsOf(*list);
  return true;
}

// Reads the areas and "ver" of the answer `text`; false when its "data" holds no
// "dataList" array.
bool readListed(std::string_view text, AreaNetApi::Areas& areas) {
  bool listed = false;
  const bool inPlace = fastjson::readDocument(text, [&](fastjson::Element root) {
    if (const auto data = fastjson::member(root, "data")) listed = readData(*data, areas);
  });
  // Text that only the full reader can decide on (see readDocument) is read as a tree.
  if (!inPlace) {
    const Json root = parseJson(text);
    if (const Json* data = isParsed(root) ? fastjson::member(root, "data") : nullptr) listed = readData(*data, areas);
  }
  return listed;
}

// Reads the same as readListed, as a stream: each area becomes its record as soon as its
// object has been read and is then let go of, so that the table is held only as compact
// rows, never as a tree or as simdjson's tape (a dozen times the text). False when only
// readListed decides: text that nlohmann cannot read as it is (bytes that are not UTF-8,
// which parseJson reads as U+FFFD) or nested deeper than parseJson allows.
bool streamListed(std::string_view text, AreaNetApi::Areas& areas, bool& listed) {
  // What each open object or array is, innermost last.
  enum class Scope { kRoot, kData, kList, kArea, kOther };
  std::vector<Scope> scopes;
  std::string key;  // the last key read: it names the value that follows
  bool tooDeep = false;
  const auto inside = [&](Scope scope) { return !scopes.empty() && scopes.back() == scope; };
  // An element of the list, whatever it is (one that is no object reads as an area of zeros).
  const auto addArea = [&](const Json& area) {
    std::string id = strForKey(area, "id");
    areas.rows.areas.push_back({areaIntegerIn(id), areaIntegerIn(strForKey(area, "parentId")),
                                strForKey(area, "name"), strForKey(area, "pyName"),
                                areaIntegerIn(strForKey(area, "type")), areaIntegerIn(strForKey(area, "special"))});
    areas.rows.lastId = std::move(id);
  };
  using Event = Json::parse_event_t;
  const Json root = Json::parse(
      text.begin(), text.end(),
      [&](int /*depth*/, Event event, Json& parsed) -> bool {
        switch (event) {
          case Event::key:
            key = parsed.get<std::string>();
            // A key that repeats counts with its last value, as in the tree.
            if (inside(Scope::kRoot) && key == "data") {
              areas = {};
              listed = false;
            } else if (inside(Scope::kData) && key == "dataList") {
              areas.rows = {};
              listed = false;
            }
            return true;
          case Event::object_start:
          case Event::array_start: {
            if (scopes.size() >= kMaxJsonDepth) tooDeep = true;
            const bool object = event == Event::object_start;
            Scope scope = Scope::kOther;
            if (scopes.empty()) {
              scope = object ? Scope::kRoot : Scope::kOther;
            } else if (inside(Scope::kRoot) && object && key == "data") {
              scope = Scope::kData;
            } else if (inside(Scope::kData) && !object && key == "dataList") {
              scope = Scope::kList;
              listed = true;
            } else if (inside(Scope::kList)) {
              scope = Scope::kArea;
            }
            scopes.push_back(scope);
            return !tooDeep;
          }
          case Event::object_end:
          case Event::array_end: {
            const Scope scope = scopes.back();
            scopes.pop_back();
            if (scope == Scope::kArea) {
              addArea(parsed);
              return false;
            }
            if (scope == Scope::kData) areas.ver = strForKey(parsed, "ver");
            return !tooDeep;
          }
          case Event::value:
            if (inside(Scope::kList)) {
              addArea(parsed);
              return false;
            }
            return !tooDeep;
        }
        return true;
      },
      /*allow_exceptions=*/false);
  return isParsed(root) && !tooDeep;
}

void warnUnlisted() { logWarning(std::string("the answer of ") + kAreaListUrl + " carried no \"dataList\" array"); }

}  // namespace

std::string AreaNetApi::currentVersion() {
  const auto& settings = Env::current().settings;
  const auto stored = settings->stringForKey(kAreaVersionKey);
  if (!stored || stored->empty() || !DBUtil::cacheDBValid()) return "0";
  return *stored;
}

std::string AreaNetApi::requestUrl() const { return kAreaListUrl; }

Json AreaNetApi::requestArgument() const {
  Json arguments = Json::object();
  setCustomString(arguments, currentVersion(), "ver");
  return arguments;
}

Json AreaNetApi::getAreaList() const { return responseList(); }

std::string AreaNetApi::getAreaVersion() const { return strForKey(responseData(), "ver"); }

AreaNetApi::Areas AreaNetApi::readAreas() const {
  Areas areas;
  const bool listed = readListed(responseString(), areas);
  if (!listed && isCorrectResult()) warnUnlisted();
  return areas;
}

AreaNetApi::Areas AreaNetApi::readAreas(std::string_view text) {
  Areas areas;
  bool listed = false;
  if (!streamListed(text, areas, listed)) {
    areas = {};
    listed = readListed(text, areas);
  }
  if (!listed) warnUnlisted();
  areas.rows.areas.shrink_to_fit();
  return areas;
}

}  // namespace qmv
