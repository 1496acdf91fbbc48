#pragma once
// Every query of the client's local databases: the shipped area and bank-number
// databases and the area cache rebuilt from the server's list.
//
// Three managers are created on first use from the installed Env's file locations and
// then shared: the shipped "area.db" and "bank_card_bin.db" (resource directory, read
// only) and the cache "area.db" (caches directory). Area look-ups go to the cache only
// while cacheDBValid() holds, otherwise to the shipped database.
//
// Every value is bound, so any name (an apostrophe, a quote, a column's name) is looked up
// as itself. A look-up that fails (a damaged or unreadable database) is logged once and
// answers as "nothing found": a broken area database and an unknown city lead to the
// same screen, so no caller needs to tell them apart.
//
// REQUIRES: called on the interface thread; only the rebuild started by applyAreaList, and
// the reading of a list it is handed unread, run elsewhere.
#include <cstdint>
#include <functional>
#include <future>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/common/area_model.h"
#include "core/common/json.h"
#include "core/common/status.h"
#include "core/sqlite/sqlite_database.h"

namespace qmv {

// One area of the server's list as the cache stores it (see core/storage/area_rows.h for
// reading them from a list).
struct AreaRecord {
  std::int64_t id = 0;
  std::int64_t parentId = 0;
  std::string name;
  std::string pyName;
  std::int64_t type = 0;
  std::int64_t special = 0;
  friend bool operator==(const AreaRecord&, const AreaRecord&) = default;
};

// A server area list taken apart: its areas in order and the text of the last one's "id",
// which the rebuilt cache's highest area_id must equal for the cache to be used.
struct AreaRows {
  std::vector<AreaRecord> areas;
  std::string lastId;
};

// An answer of the area list taken apart: its rows and its "ver".
struct AreaList {
  AreaRows rows;
  std::string ver;
};

class DBUtil {
 public:
  static std::shared_ptr<SQLiteDatabase> sharedBundleManager();
  static std::shared_ptr<SQLiteDatabase> sharedCacheManager();
  static std::shared_ptr<SQLiteDatabase> bankBinManager();
  // The cache manager when cacheDBValid(), else the bundle manager.
  static std::shared_ptr<SQLiteDatabase> sharedManager();

  // True when the cache is not being rebuilt, the settings hold a "last_area_id", the
  // cache file exists and its highest area_id equals that "last_area_id".
  static bool cacheDBValid();

  // Rebuilds the cache from the server's area objects ("id", "parentId", "name", "pyName",
  // "type", "special"; zipcode is always stored as 1). The new database replaces the old
  // one only once complete; every area is kept, whatever its name holds.
  // Blocks until done; see applyAreaList for the background form.
  static Status rebuildAreaCache(const Json& areas);  // the system's insertAreaToCatcheDB:

  // Cities grouped by the upper-case initial of their pinyin ("A".."Z", only letters that
  // have cities), each group ordered by pinyin; "省直辖县级行政单位" is left out.
  static std::map<std::string, std::vector<AreaModel>> getAllCity();
  // Cities whose pinyin or name contains `key`, ordered by pinyin.
  static std::vector<AreaModel> getCitiesWithKey(std::string_view key);  // the system's getCitysWithKey:
  // Names of the areas whose parent is `cityId`, ordered by pinyin.
  static std::vector<std::string> getAllDistrictWithCityId(std::string_view cityId);
  static std::optional<std::string> getDistrictIdWithName(std::string_view name, std::string_view cityId);
  static std::optional<AreaModel> getCityWithName(std::string_view name);
  static std::optional<AreaModel> getCityWithId(std::string_view areaId);

  // The bank of a 16- or 19-digit card number by its leading 2, 3, ... 8 digits; the
  // shortest prefix found wins. "" when the number has another shape or nothing matches.
  static std::string getBankNameWithBankNum(std::string_view cardNum);

  // Applies a downloaded area list: at once stores a non-empty `ver` under "area_version"
  // and the last element's "id" under "last_area_id", then rebuilds the cache on a
  // background thread while look-ups keep using the shipped database. The future
  // completes with the rebuild's outcome; dropping it does not wait. An empty or
  // non-array list changes nothing and completes at once with an error.
  static std::shared_future<Status> applyAreaList(const Json& list, const std::string& ver);
  // The same for a list already taken apart, whose areas move to the rebuild: a list of
  // thousands of areas is held once, in its compact form, while the cache is written.
  static std::shared_future<Status> applyAreaList(AreaRows rows, const std::string& ver);
  // The same for an answer that `read` takes apart on a background thread, so that the
  // interface thread never reads the whole table: once read, the marks are stored on the
  // interface thread and then `started` is told there whether a rebuild started (false for
  // an empty list). The future completes once it is known, for an empty list, or with the
  // rebuild's outcome; it completes with an error too when the main loop goes away first.
  // `read` must not touch Env or interface-thread state.
  static std::shared_future<Status> applyAreaList(std::function<AreaList()> read,
                                                  std::function<void(bool started)> started);

  // Forgets the three managers so that the next use creates them from the Env installed
  // then. For tests, which install a fresh Env each.
  static void resetManagersForTesting();
};

}  // namespace qmv
