#include "core/storage/db_util.h"

#include <algorithm>
#include <cctype>
#include <mutex>
#include <thread>

#ifdef __GLIBC__
#include <malloc.h>
#endif

#include "core/common/area_texts.h"
#include "core/common/control_util.h"
#include "core/common/dictionary.h"
#include "core/common/log.h"
#include "core/common/settings_keys.h"
#include "core/storage/area_rows.h"
#include "platform/env.h"
#include "platform/file_locations.h"
#include "platform/main_loop.h"
#include "platform/settings_store.h"

namespace qmv {
namespace {

constexpr const char* kAreaDbName = "area.db";
constexpr const char* kBankBinDbName = "bank_card_bin.db";

// Statements keep the shapes the client has always run; every value is bound. A bound
// text has no affinity, as the quoted literal it replaces had none, so comparisons with
// the INTEGER columns convert it the same way.
constexpr const char* kLastAreaSql = "Select *  from areas order by area_id desc limit 1";
constexpr const char* kCreateAreasSql =
    "create TABLE if not EXISTS areas (area_id integer,parent_id integer,area_name VARCHAR,py_name VARCHAR,"
    "zipcode integer, area_type integer, special integer)";
constexpr const char* kInsertAreaSql =
    "INSERT OR REPLACE INTO areas('area_id','parent_id','area_name','py_name','zipcode','area_type','special')"
    "VALUES(?1,?2,?3,?4,?5,?6,?7)";
constexpr const char* kCitiesByLetterSql =
    "Select * from areas where area_type = \"2\" And py_name like ?1 || '%' order by py_name";
constexpr const char* kCitiesWithKeySql =
    "Select * from areas where area_type = \"2\" And (py_name like '%' || ?1 || '%' or area_name like '%' || ?1 || '%') "
    "order by py_name";
constexpr const char* kDistrictNamesSql = "Select area_name from areas where parent_id = ?1 order by py_name";
constexpr const char* kDistrictIdSql = "Select area_id from areas where area_name = ?1 and parent_id = ?2";
constexpr const char* kCityByNameSql = "Select * from areas where area_name = ?1";
constexpr const char* kCityByIdSql = "Select * from areas where area_id = ?1";
// The card number has passed the digits-only rule, so binding its prefix finds exactly the
// rows that the quoted text did.
constexpr const char* kBankBinSql = "Select * from bank_card_bin where card_bin = ?";

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
  return textOf(Env::current().settings->objectForKey(kLastAreaIdKey));
}

// Logs a failed look-up once; the caller then answers as if nothing was found.
Json rowsOrNone(const Result<Json>& rows, std::string_view what) {
  if (rows.ok()) return rows.value();
  logLine("area look-up (" + std::string(what) + ") failed: " + rows.status().toString());
  return Json::array();
}

Status rebuildCache(SQLiteDatabase& cache, const std::vector<AreaRecord>& areas) {
  const Status status = cache.replaceWith([&](SQLiteDatabase& fresh) {
    if (Status created = fresh.doQuery(kCreateAreasSql); !created.ok()) return created;
    // One transaction on one connection, the insert prepared once and bound per area: no
    // statement list as large as the table is built beside it.
    return fresh.transaction(SQLiteDatabase::TransactionKind::kImmediate, [&]() -> Status {
      for (const AreaRecord& area : areas) {
        const auto inserted = fresh.getRowsForQuery(
            kInsertAreaSql, {area.id, area.parentId, area.name, area.pyName, std::int64_t{1}, area.type, area.special});
        if (!inserted.ok()) return inserted.status();
      }
      return {};
    });
  });
  if (!status.ok()) logLine("area cache rebuild failed: " + status.message());
  return status;
}

std::vector<AreaModel> citiesFor(std::string_view sql, const std::vector<DBValue>& params) {
  std::vector<AreaModel> cities;
  for (const auto& row : rowsOrNone(DBUtil::sharedManager()->getRowsForQuery(sql, params), "cities")) {
    AreaModel city(row);
    if (city.areaName == kDirectlyGoverned) continue;
    cities.push_back(std::move(city));
  }
  return cities;
}

std::optional<AreaModel> firstArea(std::string_view sql, const std::string& value) {
  const Json rows = rowsOrNone(DBUtil::sharedManager()->getRowsForQuery(sql, {value}), "area");
  if (rows.empty()) return std::nullopt;
  return AreaModel(rows.front());
}

// The outcome of applying one area list, set once. Dropped unset (the main loop went away
// with the task that was to store the marks), it completes with an error, so that no one
// waits for it in vain and get() does not throw.
class AreaOutcome {
 public:
  AreaOutcome() : done_(promise_.get_future().share()) {}
  ~AreaOutcome() {
    if (!set_) promise_.set_value(Status::unavailable("the area list was dropped before it was applied"));
  }
  AreaOutcome(const AreaOutcome&) = delete;
  AreaOutcome& operator=(const AreaOutcome&) = delete;

  void set(Status status) {
    set_ = true;
    promise_.set_value(std::move(status));
  }
  const std::shared_future<Status>& done() const { return done_; }

 private:
  std::promise<Status> promise_;
  std::shared_future<Status> done_;
  bool set_ = false;
};

// On the interface thread: stores the marks of `rows`, then rebuilds the cache from them
// on a thread of its own. False (and `outcome` set) for an empty list, which changes nothing.
bool startRebuild(AreaRows rows, const std::string& ver, std::shared_ptr<AreaOutcome> outcome) {
  if (rows.areas.empty()) {
    outcome->set(Status::invalidArgument("the area list is empty"));
    return false;
  }
  // One write: a version stored without its marker would make the server's list look
  // current while the cache it describes is never used. Stored before the rebuild: a run
  // killed during it finds the marker naming a last area that the old cache (kept whole
  // until the new one is complete) does not end with, so look-ups use the shipped database
  // and the next start asks for the whole list again.
  Json marks = Json::object();
  if (!ver.empty()) marks[kAreaVersionKey] = ver;
  marks[kLastAreaIdKey] = rows.lastId;
  // A failed write is the store's to log and report (lastWriteStatus); the cache is rebuilt
  // either way, and the next start asks for the list again.
  const auto& settings = Env::current().settings;
  if (settings->setObjects(marks).ok()) settings->synchronize();
  // The thread owns what it needs; Env is not touched off the interface thread.
  std::thread([cache = DBUtil::sharedCacheManager(), areas = std::move(rows.areas), outcome = std::move(outcome)]() mutable {
    Status status = rebuildCache(*cache, areas);
    areas = {};
    cache.reset();
#ifdef __GLIBC__
    // The answer's text, its rows and SQLite's pages were the largest allocations of the
    // start, spread over the arenas of this thread, the reader's and the interface thread's;
    // what they freed goes back to the system instead of staying resident for the session.
    malloc_trim(0);
#endif
    outcome->set(std::move(status));
  }).detach();
  return true;
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
  const auto rows = cache->getRowsForQuery(kLastAreaSql);
  if (!rows.ok() || rows->empty()) return false;
  const std::string last = strForKey(rows->front(), "area_id");
  return !last.empty() && last == expected;
}

Status DBUtil::rebuildAreaCache(const Json& areas) {
  if (!areas.is_array()) return Status::invalidArgument("the area list is not an array");
  return rebuildCache(*sharedCacheManager(), areaRowsOf(areas).areas);
}

std::map<std::string, std::vector<AreaModel>> DBUtil::getAllCity() {
  std::map<std::string, std::vector<AreaModel>> byLetter;
  for (char letter = 'a'; letter <= 'z'; ++letter) {
    auto cities = citiesFor(kCitiesByLetterSql, {std::string(1, letter)});
    if (!cities.empty()) byLetter.emplace(std::string(1, static_cast<char>(letter - 'a' + 'A')), std::move(cities));
  }
  return byLetter;
}

std::vector<AreaModel> DBUtil::getCitiesWithKey(std::string_view key) {
  std::vector<AreaModel> cities = citiesFor(kCitiesWithKeySql, {std::string(key)});
  // The statement has no ESCAPE clause to give "%" and "_" in the key their literal
  // meaning, and its shape stays as the client has always run it; so what the wildcards
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
  for (const auto& row :
       rowsOrNone(sharedManager()->getRowsForQuery(kDistrictNamesSql, {std::string(cityId)}), "districts")) {
    names.push_back(strForKey(row, "area_name"));
  }
  return names;
}

std::optional<std::string> DBUtil::getDistrictIdWithName(std::string_view name, std::string_view cityId) {
  const Json rows = rowsOrNone(
      sharedManager()->getRowsForQuery(kDistrictIdSql, {std::string(name), std::string(cityId)}), "district");
  if (rows.empty()) return std::nullopt;
  return strForKey(rows.front(), "area_id");
}

std::optional<AreaModel> DBUtil::getCityWithName(std::string_view name) {
  return firstArea(kCityByNameSql, std::string(name));
}

std::optional<AreaModel> DBUtil::getCityWithId(std::string_view areaId) {
  return firstArea(kCityByIdSql, std::string(areaId));
}

std::string DBUtil::getBankNameWithBankNum(std::string_view cardNum) {
  if (ControlUtil::validateBankNum(cardNum) == 1) return {};
  const auto bins = bankBinManager();
  for (std::size_t length = 2; length <= 8; ++length) {
    const auto rows = bins->getRowsForQuery(kBankBinSql, {std::string(cardNum.substr(0, length))});
    if (!rows.ok()) {
      logLine("bank look-up failed: " + rows.status().toString());
      return {};
    }
    if (!rows->empty()) return strForKey(rows->front(), "bank_name");
  }
  return {};
}

std::shared_future<Status> DBUtil::applyAreaList(const Json& list, const std::string& ver) {
  if (!list.is_array()) return applyAreaList(AreaRows{}, ver);
  return applyAreaList(areaRowsOf(list), ver);
}

std::shared_future<Status> DBUtil::applyAreaList(AreaRows rows, const std::string& ver) {
  auto outcome = std::make_shared<AreaOutcome>();
  std::shared_future<Status> done = outcome->done();
  startRebuild(std::move(rows), ver, std::move(outcome));
  return done;
}

std::shared_future<Status> DBUtil::applyAreaList(std::function<AreaList()> read, std::function<void(bool)> started) {
  auto outcome = std::make_shared<AreaOutcome>();
  std::shared_future<Status> done = outcome->done();
  std::thread([read = std::move(read), started = std::move(started), loop = Env::current().mainLoop,
               outcome = std::move(outcome)]() mutable {
    AreaList list = read();
    // With it goes the answer's text: from here on the table is held once, as rows.
    read = nullptr;
    // The marks are the interface thread's to store, before the rebuild starts (see
    // startRebuild).
    loop->post([list = std::move(list), started = std::move(started), outcome = std::move(outcome)]() mutable {
      const bool rebuilding = startRebuild(std::move(list.rows), list.ver, std::move(outcome));
      if (started) started(rebuilding);
    });
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
