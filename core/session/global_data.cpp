#include "core/session/global_data.h"

#include <ctime>

#include "core/common/settings_keys.h"
#include "core/session/built_in_templates.h"
#include "core/session/search_types_reader.h"
#include "core/session/sign_out_note.h"
#include "core/storage/db_util.h"
#include "platform/clock.h"
#include "platform/env.h"
#include "platform/settings_store.h"
#include "core/common/area_texts.h"
#include "core/session/session_texts.h"

namespace qmv {
namespace {

std::unique_ptr<GlobalData>& instanceSlot() {
  static std::unique_ptr<GlobalData> instance;
  return instance;
}

// 04-09-2016 ("dd-MM-yyyy") at midnight, local time, as the date formatter reads it.
std::int64_t templatesSwitchInstant() {
  std::tm tm{};
  tm.tm_mday = 4;
  tm.tm_mon = 8;
  tm.tm_year = 2016 - 1900;
  tm.tm_isdst = -1;
  return static_cast<std::int64_t>(std::mktime(&tm));
}

}  // namespace

GlobalData& GlobalData::sharedInstance() {
  auto& slot = instanceSlot();
  if (!slot) slot.reset(new GlobalData());
  return *slot;
}

namespace {
bool signedOutThisRun = false;
}  // namespace

void GlobalData::resetSharedInstance() {
  instanceSlot().reset();
  sign_out_note::forget();
}

void sign_out_note::note() { signedOutThisRun = true; }
void sign_out_note::forget() { signedOutThisRun = false; }
bool sign_out_note::noted() { return signedOutThisRun; }

std::vector<SearchTypeModel> GlobalData::homeCategories() {
  struct Row {
    const char* name;
    Color color;
    const char* image;
  };
  static const Row kRows[] = {
      {session_texts::kFoodCategory, {255, 106, 39}, "meishi"},
      {session_texts::kLeisureCategory, {239, 49, 57}, "xiuxian"},
      {session_texts::kBeautyCategory, {112, 176, 78}, "liren"},
      {session_texts::kDiscoveriesCategory, {24, 152, 237}, "faxian"},
      {session_texts::kOffersCategory, {215, 59, 219}, "huodong"},
  };
  std::vector<SearchTypeModel> list;
  for (const Row& row : kRows) {
    SearchTypeModel model;
    model.name = row.name;
    model.nameColor = row.color;
    model.bigImageName = row.image;
    model.pageCtrlSelectedImageName = std::string(row.image) + "_tab0";
    model.pageCtrlUnselectImageName = std::string(row.image) + "_tab1";
    list.push_back(std::move(model));
  }
  return list;
}

std::string_view GlobalData::builtInTemplatesAt(std::int64_t unixSeconds) {
  return unixSeconds > templatesSwitchInstant() ? builtInTemplatesLaterText() : builtInTemplatesEarlierText();
}

GlobalData::GlobalData() : defaultTypeList_(homeCategories()) {
  std::string text;
  text = Env::current().settings->stringForKey(kTemplatesKey).value_or("");
  if (text.empty()) text = std::string(builtInTemplatesAt(Env::current().clock->unixSeconds()));
  mergeTemplates(searchTypesFromEnvelope(text));
}

void GlobalData::mergeTemplates(const std::vector<SearchTypeModel>& templates) {
  for (const auto& t : templates) {
    SearchTypeModel* target = getInfoWithName(t.name, defaultTypeList_);
    if (!target) continue;
    target->typeId = t.typeId;
    target->list = t.list;
    target->scrollIndex = 0;
  }
}

SearchTypeModel* GlobalData::getInfoWithName(const std::string& name, std::vector<SearchTypeModel>& list) {
  for (auto& model : list) {
    if (model.name == name) return &model;
  }
  return nullptr;
}

const SearchTypeModel* GlobalData::getInfoWithName(const std::string& name, const std::vector<SearchTypeModel>& list) {
  for (const auto& model : list) {
    if (model.name == name) return &model;
  }
  return nullptr;
}

std::string GlobalData::getCurrentCityName() const {
  std::string city;
  city = Env::current().settings->stringForKey(kSelectCityKey).value_or("");
  return city.empty() ? std::string(kDefaultCity) : city;
}

bool GlobalData::setCurrentCityName(const std::string& city) {
  const auto& settings = Env::current().settings;
  return settings->setObjects(Json{{kSelectCityKey, city}, {kSelectCityDisKey, city}}).ok() && settings->synchronize();
}

std::optional<std::string> GlobalData::getCurrentCityId() const {
  std::optional<AreaModel> city = DBUtil::getCityWithName(getCurrentCityName());
  if (!city) city = DBUtil::getCityWithName(kDefaultCity);
  if (!city) return std::nullopt;
  return city->areaID;
}

bool GlobalData::cityExist(const std::string& name) const { return DBUtil::getCityWithName(name).has_value(); }

}  // namespace qmv
