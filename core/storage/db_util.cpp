#include "core/storage/db_util.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <charconv>
#include <mutex>
#include <thread>

#include "core/common/control_util.h"
#include "core/common/dictionary.h"
#include "core/common/log.h"
#include "core/common/settings_keys.h"
#include "platform/env.h"
#include "platform/file_locations.h"
#include "platform/settings_store.h"

namespace qmv {
namespace {

constexpr const char* kAreaDbName = "area.db";
constexpr const char* kBankBinDbName = "bank_card_bin.db";
constexpr const char* kDirectlyGoverned = "省直辖县级行政单位";

// Statements as the client has always written them; "%@" and "%d" take the values in
// order and "%%" is a literal percent sign.
constexpr const char* kLastAreaSql = "Select *  from areas order by area_id desc limit 1";
constexpr const char* kCreateAreasSql =
    "create TABLE if not EXISTS areas (area_id integer,parent_id integer,area_name VARCHAR,py_name VARCHAR,"
    "zipcode integer, area_type integer, special integer)";
constexpr const char* kInsertAreaSql =
    "INSERT OR REPLACE INTO areas('area_id','parent_id','area_name','py_name','zipcode','area_type','special')"
    "VALUES('%d','%d','%@','%@','%d','%d','%d')";
constexpr const char* kCitiesByLetterSql =
    "Select * from areas where area_type = \"2\" And py_name like '%@%%' order by py_name";
constexpr const char* kCitiesWithKeySql =
    "Select * from areas where area_type = \"2\" And (py_name like '%%%@%%' or area_name like '%%%@%%') "
    "order by py_name";
constexpr const char* kDistrictNamesSql = "Select area_name from areas where parent_id = \"%@\" order by py_name";
constexpr const char* kDistrictIdSql = "Select area_id from areas where area_name = \"%@\" and parent_id = \"%@\"";
constexpr const char* kCityByNameSql = "Select * from areas where area_name = \"%@\"";
constexpr const char* kCityByIdSql = "Select * from areas where area_id = \"%@\"";
// The card number has passed the digits-only rule, so binding its prefix finds exactly the
// rows that the quoted text "%@" did; the one statement is then prepared only once.
constexpr const char* kBankBinSql = "Select * from bank_card_bin where card_bin = ?";

std::string formatStatement(std::string_view templ, std::initializer_list<std::string_view> values) {
  std::string out;
  auto next = values.begin();
  for (std::size_t i = 0; i < templ.size(); ++i) {
    if (templ[i] == '%' && i + 1 < templ.size()) {
      const char conversion = templ[i + 1];
      if (conversion == '%') {
        out += '%';
        ++i;
        continue;
      }
      if ((conversion == '@' || conversion == 'd') && next != values.end()) {
        out += *next++;
        ++i;
        continue;
      }
    }
    out += templ[i];
  }
  return out;
}

// A value is substituted only when it cannot leave its quotes or be read as a column.
bool isSafeValue(std::string_view value) {
  if (value.find_first_of(std::string_view("\"'\0", 3)) != std::string_view::npos) return false;
  static constexpr std::array<std::string_view, 12> kIdentifiers = {"area_id",   "parent_id", "area_name", "py_name",
                                                                    "zipcode",   "area_type", "special",   "card_bin",
                                                                    "bank_name", "rowid",     "oid",       "_rowid_"};
  std::string lower(value);
  std::transform(lower.begin(), lower.end(), lower.begin(), [](unsigned char c) { return std::tolower(c); });
  return std::find(kIdentifiers.begin(), kIdentifiers.end(), lower) == kIdentifiers.end();
}

bool containsIgnoringAsciiCase(std::string_view text, std::string_view part) {
  const auto lower = [](char c) { return static_cast<char>(std::tolower(static_cast<unsigned char>(c))); };
  return std::search(text.begin(), text.end(), part.begin(), part.end(),
                     [&](char a, char b) { return lower(a) == lower(b); }) != text.end();
}

struct Managers {
  std::mutex mutex;
  std::shared_ptr<SQLiteDatabase> bundle;
  std::shared_ptr<SQLiteDatabase> cache;
  std::shared_ptr<SQLiteDatabase> bankBin;
};

Managers& managers() {
  static Managers instance;
  return instance;
}

std::shared_ptr<SQLiteDatabase> makeManager(bool cache, const char* name) {
  const auto& files = Env::current().files;
  if (!files) return std::make_shared<SQLiteDatabase>(SQLiteDatabase::atPath({}, SQLiteDatabase::Mode::kReadOnly));
  if (cache) return std::make_shared<SQLiteDatabase>(SQLiteDatabase::atPath(files->cachesDirectory() / name));
  // Shipped databases never change under a running client: no locking or change checks.
  return std::make_shared<SQLiteDatabase>(
      SQLiteDatabase::atPath(files->resourceDirectory() / name, SQLiteDatabase::Mode::kImmutable));
}

std::shared_ptr<SQLiteDatabase> manager(std::shared_ptr<SQLiteDatabase> Managers::*slot, bool cache, const char* name) {
  auto& m = managers();
  std::lock_guard lock(m.mutex);
  if (!(m.*slot)) m.*slot = makeManager(cache, name);
  return m.*slot;
}

std::string lastAreaId() {
  const auto& settings = Env::current().settings;
  return settings ? textOf(settings->objectForKey(kLastAreaIdKey)) : std::string();
}

// The "%d" text of a server number (or numeric text); anything else reads as 0.
std::string integerText(const Json& area, std::string_view key) {
  const std::string text = strForKey(area, key);
  long long value = 0;
  const char* end = text.data() + text.size();
  const auto [ptr, ec] = std::from_chars(text.data(), end, value);
  if (ec != std::errc() || ptr == text.data()) {
    // Fractional numbers keep their integer part, as "%d" of intValue did.
    const auto number = numForKey(area, key);
    if (number && number->is_number_float()) return std::to_string(static_cast<long long>(number->get<double>()));
    return "0";
  }
  return std::to_string(value);
}

std::optional<DBError> rebuildCache(SQLiteDatabase& cache, const Json& areas) {
  std::vector<std::string> inserts;
  inserts.reserve(areas.size());
  std::size_t skipped = 0;
  for (const auto& area : areas) {
    const std::string name = strForKey(area, "name");
    const std::string pyName = strForKey(area, "pyName");
    // The insert quotes both texts with apostrophes; such an area cannot be stored safely.
    if (name.find('\'') != std::string::npos || pyName.find('\'') != std::string::npos ||
        name.find('\0') != std::string::npos || pyName.find('\0') != std::string::npos) {
      ++skipped;
      continue;
    }
    inserts.push_back(
        formatStatement(kInsertAreaSql, {integerText(area, "id"), integerText(area, "parentId"), name, pyName, "1",
                                         integerText(area, "type"), integerText(area, "special")}));
  }
  if (skipped > 0) logLine("area cache: left out " + std::to_string(skipped) + " areas with an apostrophe");
  const auto error = cache.replaceWith([&](SQLiteDatabase& fresh) -> std::optional<DBError> {
    if (auto created = fresh.doQuery(kCreateAreasSql)) return created;
    return fresh.runInTransaction(inserts);
  });
  if (error) logLine("area cache rebuild failed: " + error->description);
  return error;
}

std::vector<AreaModel> citiesFor(const std::string& sql) {
  std::vector<AreaModel> cities;
  for (const auto& row : DBUtil::sharedManager()->getRowsForQuery(sql)) {
    AreaModel city(row);
    if (city.areaName == kDirectlyGoverned) continue;
    cities.push_back(std::move(city));
  }
  return cities;
}

std::optional<AreaModel> firstArea(const std::string& sql) {
  const Json rows = DBUtil::sharedManager()->getRowsForQuery(sql);
  if (rows.empty()) return std::nullopt;
  return AreaModel(rows.front());
}

}  // namespace

std::shared_ptr<SQLiteDatabase> DBUtil::sharedBundleManager() { return manager(&Managers::bundle, false, kAreaDbName); }

std::shared_ptr<SQLiteDatabase> DBUtil::sharedCacheManager() { return manager(&Managers::cache, true, kAreaDbName); }

std::shared_ptr<SQLiteDatabase> DBUtil::bankBinManager() { return manager(&Managers::bankBin, false, kBankBinDbName); }

std::shared_ptr<SQLiteDatabase> DBUtil::sharedManager() {
  return cacheDBValid() ? sharedCacheManager() : sharedBundleManager();
}

bool DBUtil::cacheDBValid() {
  const auto cache = sharedCacheManager();
  if (cache->isWriting()) return false;
  const std::string expected = lastAreaId();
  if (expected.empty()) return false;
  std::error_code ec;
  if (cache->getDatabasePath().empty() || !std::filesystem::is_regular_file(cache->getDatabasePath(), ec)) {
    return false;
  }
  const Json rows = cache->getRowsForQuery(kLastAreaSql);
  if (rows.empty()) return false;
  const std::string last = strForKey(rows.front(), "area_id");
  return !last.empty() && last == expected;
}

std::optional<DBError> DBUtil::rebuildAreaCache(const Json& areas) {
  if (!areas.is_array()) return SQLiteDatabase::createDBErrorWithDescription("the area list is not an array", 0);
  return rebuildCache(*sharedCacheManager(), areas);
}

std::map<std::string, std::vector<AreaModel>> DBUtil::getAllCity() {
  std::map<std::string, std::vector<AreaModel>> byLetter;
  for (char letter = 'a'; letter <= 'z'; ++letter) {
    auto cities = citiesFor(formatStatement(kCitiesByLetterSql, {std::string(1, letter)}));
    if (!cities.empty()) byLetter.emplace(std::string(1, static_cast<char>(letter - 'a' + 'A')), std::move(cities));
  }
  return byLetter;
}

std::vector<AreaModel> DBUtil::getCitiesWithKey(std::string_view key) {
  if (!isSafeValue(key)) return {};
  std::vector<AreaModel> cities = citiesFor(formatStatement(kCitiesWithKeySql, {key, key}));
  // The statement has no ESCAPE clause to give "%" and "_" in the key their literal
  // meaning, and its text stays as the client has always sent it; so what the wildcards
  // let through is taken out here, keeping exactly the rows that contain the key (LIKE
  // compares ASCII letters without case).
  if (key.find_first_of("%_") != std::string_view::npos) {
    std::erase_if(cities, [key](const AreaModel& city) {
      return !containsIgnoringAsciiCase(city.areaPY, key) && !containsIgnoringAsciiCase(city.areaName, key);
    });
  }
  return cities;
}

std::vector<std::string> DBUtil::getAllDistrictWithCityId(std::string_view cityId) {
  std::vector<std::string> names;
  if (!isSafeValue(cityId)) return names;
  for (const auto& row : sharedManager()->getRowsForQuery(formatStatement(kDistrictNamesSql, {cityId}))) {
    names.push_back(strForKey(row, "area_name"));
  }
  return names;
}

std::optional<std::string> DBUtil::getDistrictIdWithName(std::string_view name, std::string_view cityId) {
  if (!isSafeValue(name) || !isSafeValue(cityId)) return std::nullopt;
  const Json rows = sharedManager()->getRowsForQuery(formatStatement(kDistrictIdSql, {name, cityId}));
  if (rows.empty()) return std::nullopt;
  return strForKey(rows.front(), "area_id");
}

std::optional<AreaModel> DBUtil::getCityWithName(std::string_view name) {
  if (!isSafeValue(name)) return std::nullopt;
  return firstArea(formatStatement(kCityByNameSql, {name}));
}

std::optional<AreaModel> DBUtil::getCityWithId(std::string_view areaId) {
  if (!isSafeValue(areaId)) return std::nullopt;
  return firstArea(formatStatement(kCityByIdSql, {areaId}));
}

std::string DBUtil::getBankNameWithBankNum(std::string_view cardNum) {
  if (ControlUtil::validateBankNum(cardNum) == 1) return {};
  const auto bins = bankBinManager();
  for (std::size_t length = 2; length <= 8; ++length) {
    const Json rows = bins->getRowsForQuery(kBankBinSql, {std::string(cardNum.substr(0, length))});
    if (!rows.empty()) return strForKey(rows.front(), "bank_name");
  }
  return {};
}

std::shared_future<std::optional<DBError>> DBUtil::applyAreaList(const Json& list, const std::string& ver) {
  std::promise<std::optional<DBError>> promise;
  std::shared_future<std::optional<DBError>> done = promise.get_future().share();
  if (!list.is_array() || list.empty()) {
    promise.set_value(SQLiteDatabase::createDBErrorWithDescription("the area list is empty", 0));
    return done;
  }
  if (const auto& settings = Env::current().settings) {
    // One write: a version stored without its marker would make the server's list look
    // current while the cache it describes is never used.
    Json marks = Json::object();
    if (!ver.empty()) marks[kAreaVersionKey] = ver;
    marks[kLastAreaIdKey] = strForKey(list.back(), "id");
    settings->setObjects(marks);
    settings->synchronize();
  }
  // The thread owns what it needs; Env is not touched off the interface thread.
  std::thread([cache = sharedCacheManager(), areas = list, promise = std::move(promise)]() mutable {
    promise.set_value(rebuildCache(*cache, areas));
  }).detach();
  return done;
}

void DBUtil::resetManagersForTesting() {
  auto& m = managers();
  std::lock_guard lock(m.mutex);
  m.bundle.reset();
  m.cache.reset();
  m.bankBin.reset();
}

}  // namespace qmv
