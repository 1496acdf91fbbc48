#include "platform/linux/sqlite_settings_store.h"

#include <fcntl.h>
#include <sqlite3.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <system_error>
#include <utility>

#include "core/common/log.h"
#include "platform/linux/home_files.h"

namespace qmv {
namespace {

constexpr const char* kSchema =
    "CREATE TABLE IF NOT EXISTS settings ("
    " key TEXT PRIMARY KEY NOT NULL,"
    " kind TEXT NOT NULL,"
    " value BLOB)";

struct Encoded {
  std::string kind;
  std::string bytes;
};

Encoded encode(const Json& value) {
  if (value.is_string()) return {"text", value.get<std::string>()};
  if (value.is_boolean()) return {"bool", value.get<bool>() ? "1" : "0"};
  if (value.is_binary()) {
    const auto& bin = value.get_binary();
    return {"binary", std::string(bin.begin(), bin.end())};
  }
  // A typed word that is not UTF-8 is kept with U+FFFD rather than aborting the write.
  if (value.is_array()) return {"array", dumpJson(value)};
  return {"json", dumpJson(value)};
}

}  // namespace

// A row of an unknown kind or with undecodable content reads as absent; the row stays.
Json SqliteSettingsStore::decodeRow(const std::string& kind, const std::string& bytes) {
  if (kind == "text") return Json(bytes);
  if (kind == "bool") return Json(bytes == "1");
  if (kind == "binary") return Json::binary(std::vector<std::uint8_t>(bytes.begin(), bytes.end()));
  if (kind == "array" || kind == "json") {
    Json parsed = parseJson(bytes);
    if (isParsed(parsed)) return parsed;
  }
  return Json();
}

namespace {

std::string columnBytes(sqlite3_stmt* stmt, int column) {
  const void* data = sqlite3_column_blob(stmt, column);
  const int size = sqlite3_column_bytes(stmt, column);
  return data ? std::string(static_cast<const char*>(data), static_cast<std::size_t>(size)) : std::string();
}

bool isCorruption(int code) {
  const int primary = code & 0xff;
  return primary == SQLITE_NOTADB || primary == SQLITE_CORRUPT;
}

// Refuses a settings file or journal that is a link, a FIFO or someone else's (SQLite
// would follow the link, or block on the FIFO); creates the file owner-only when missing
// and narrows an older, wider one. SQLite gives its journals the mode of the database.
std::string makePrivate(const std::filesystem::path& file) {
  for (const char* suffix : {"-wal", "-shm", "-journal"}) {
    std::filesystem::path journal = file;
    journal += suffix;
    if (std::string why = home_files::refusal(journal, home_files::Kind::file); !why.empty()) return why;
  }
  const auto opened = home_files::openPrivate(file, O_RDWR | O_CREAT);
  if (opened.fd < 0) return opened.error;
  ::fchmod(opened.fd, 0600);
  ::close(opened.fd);
  for (const char* suffix : {"-wal", "-shm", "-journal"}) {
    std::filesystem::path journal = file;
    journal += suffix;
    struct stat status {};
    if (::lstat(journal.c_str(), &status) == 0 && S_ISREG(status.st_mode)) ::chmod(journal.c_str(), 0600);
  }
  return {};
}

std::string lastMessage(sqlite3* db) { return sqlite3_errmsg(db); }

bool exec(sqlite3* db, const char* sql) { return sqlite3_exec(db, sql, nullptr, nullptr, nullptr) == SQLITE_OK; }

struct Attempt {
  sqlite3* db = nullptr;
  Json values = Json::object();
  int code = SQLITE_OK;
  std::string error;
  bool refused = false;  // the file itself was refused: the error says why, naming it
};

Attempt tryOpen(const std::filesystem::path& file) {
  Attempt a;
  if (std::string why = makePrivate(file); !why.empty()) {
    a.code = SQLITE_CANTOPEN;
    a.error = std::move(why);
    a.refused = true;
    return a;
  }
  // The file was checked above; the flag keeps SQLite from following a link planted since.
  a.code = sqlite3_open_v2(file.c_str(), &a.db,
                           SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_FULLMUTEX | SQLITE_OPEN_NOFOLLOW,
                           nullptr);
  auto fail = [&a](int code) {
    a.code = code;
    a.error = a.db ? sqlite3_errmsg(a.db) : sqlite3_errstr(code);
    sqlite3_close(a.db);
    a.db = nullptr;
    return a;
  };
  if (a.code != SQLITE_OK) return fail(a.code);
  sqlite3_busy_timeout(a.db, 5000);
  // secure_delete: a replaced value (a password moved to the keyring) leaves no copy in
  // the file's free space.
  for (const char* sql : {"PRAGMA journal_mode=WAL", "PRAGMA synchronous=FULL", "PRAGMA secure_delete=ON", kSchema}) {
    const int rc = sqlite3_exec(a.db, sql, nullptr, nullptr, nullptr);
    if (rc != SQLITE_OK) return fail(rc);
  }
  sqlite3_stmt* check = nullptr;
  int rc = sqlite3_prepare_v2(a.db, "PRAGMA quick_check", -1, &check, nullptr);
  if (rc != SQLITE_OK) return fail(rc);
  rc = sqlite3_step(check);
  const bool ok = rc == SQLITE_ROW && columnBytes(check, 0) == "ok";
  sqlite3_finalize(check);
  if (!ok) return fail(rc == SQLITE_ROW ? SQLITE_CORRUPT : rc);

  sqlite3_stmt* rows = nullptr;
  rc = sqlite3_prepare_v2(a.db, "SELECT key, kind, value FROM settings", -1, &rows, nullptr);
  if (rc != SQLITE_OK) return fail(rc);
  while ((rc = sqlite3_step(rows)) == SQLITE_ROW) {
    Json value = SqliteSettingsStore::decodeRow(columnBytes(rows, 1), columnBytes(rows, 2));
    if (!value.is_null()) a.values[columnBytes(rows, 0)] = std::move(value);
  }
  sqlite3_finalize(rows);
  if (rc != SQLITE_DONE) return fail(rc);
  return a;
}

// Moves the damaged file and its journals to a name no earlier run has used.
std::filesystem::path keepAside(const std::filesystem::path& file, std::string& error) {
  const auto stamp =
      std::chrono::duration_cast<std::chrono::seconds>(std::chrono::system_clock::now().time_since_epoch()).count();
  std::filesystem::path target;
  for (int n = 0;; ++n) {
    target = file;
    target += ".corrupt-" + std::to_string(stamp) + (n ? "-" + std::to_string(n) : "");
    if (!std::filesystem::exists(target)) break;
  }
  std::error_code ec;
  std::filesystem::rename(file, target, ec);
  if (ec) {
    error = "cannot move damaged settings file aside: " + ec.message();
    return {};
  }
  for (const char* suffix : {"-wal", "-shm", "-journal"}) {
    std::filesystem::path journal = file;
    journal += suffix;
    if (!std::filesystem::exists(journal)) continue;
    std::filesystem::path journalTarget = target;
    journalTarget += suffix;
    std::filesystem::rename(journal, journalTarget, ec);
  }
  return target;
}

}  // namespace

SqliteSettingsStore::OpenResult SqliteSettingsStore::open(const std::filesystem::path& file) {
  OpenResult result;
  std::error_code ec;
  if (file.has_parent_path()) std::filesystem::create_directories(file.parent_path(), ec);
  Attempt attempt = tryOpen(file);
  if (!attempt.db && isCorruption(attempt.code)) {
    logLine("settings file " + file.string() + " is damaged (" + attempt.error + "); keeping it aside");
    result.keptAside = keepAside(file, result.error);
    if (result.keptAside.empty()) return result;
    attempt = tryOpen(file);
  }
  if (!attempt.db) {
    result.error =
        attempt.refused ? attempt.error : "cannot open settings file " + file.string() + ": " + attempt.error;
    return result;
  }
  result.store.reset(new SqliteSettingsStore(attempt.db, file, std::move(attempt.values)));
  return result;
}

SqliteSettingsStore::SqliteSettingsStore(sqlite3* db, std::filesystem::path path, Json values)
    : db_(db), path_(std::move(path)), values_(std::move(values)) {}

SqliteSettingsStore::~SqliteSettingsStore() { sqlite3_close(db_); }

Json SqliteSettingsStore::objectForKey(const std::string& key) const {
  std::lock_guard lock(mutex_);
  const auto it = values_.find(key);
  return it == values_.end() ? Json() : *it;
}

void SqliteSettingsStore::setObject(const Json& value, const std::string& key) {
  setObjects(Json{{key, value.is_discarded() ? Json() : value}});
}

void SqliteSettingsStore::removeObjectForKey(const std::string& key) { setObjects(Json{{key, nullptr}}); }

bool SqliteSettingsStore::setObjects(const Json& values) {
  if (!values.is_object()) return false;
  std::lock_guard lock(mutex_);
  return inTransaction("write of " + (values.empty() ? std::string("nothing") : values.begin().key()),
                       [&] { return writeRows(values); });
}

bool SqliteSettingsStore::updateObject(const std::string& key, const Change& change) {
  std::lock_guard lock(mutex_);
  return inTransaction("update of " + key, [&] {
    sqlite3_stmt* stmt = nullptr;
    Json current;
    int rc = sqlite3_prepare_v2(db_, "SELECT kind, value FROM settings WHERE key = ?1", -1, &stmt, nullptr);
    if (rc == SQLITE_OK) {
      sqlite3_bind_text(stmt, 1, key.data(), static_cast<int>(key.size()), SQLITE_TRANSIENT);
      rc = sqlite3_step(stmt);
      if (rc == SQLITE_ROW) current = SqliteSettingsStore::decodeRow(columnBytes(stmt, 0), columnBytes(stmt, 1));
    }
    sqlite3_finalize(stmt);
    if (rc != SQLITE_ROW && rc != SQLITE_DONE) return false;
    Json next = change(std::move(current));
    return writeRows(Json{{key, next.is_discarded() ? Json() : std::move(next)}});
  });
}

bool SqliteSettingsStore::writeRows(const Json& values) {
  bool ok = true;
  for (const auto& [key, value] : values.items()) {
    if (value.is_null()) {
      values_.erase(key);
    } else {
      values_[key] = value;
    }
    if (!ok) continue;  // the rest still reach memory, as a failed single write does
    sqlite3_stmt* stmt = nullptr;
    int rc = SQLITE_OK;
    if (value.is_null()) {
      rc = sqlite3_prepare_v2(db_, "DELETE FROM settings WHERE key = ?1", -1, &stmt, nullptr);
    } else {
      rc = sqlite3_prepare_v2(db_, "INSERT OR REPLACE INTO settings (key, kind, value) VALUES (?1, ?2, ?3)", -1, &stmt,
                              nullptr);
    }
    if (rc == SQLITE_OK) {
      sqlite3_bind_text(stmt, 1, key.data(), static_cast<int>(key.size()), SQLITE_TRANSIENT);
      if (!value.is_null()) {
        const Encoded encoded = encode(value);
        sqlite3_bind_text(stmt, 2, encoded.kind.data(), static_cast<int>(encoded.kind.size()), SQLITE_TRANSIENT);
        sqlite3_bind_blob(stmt, 3, encoded.bytes.data(), static_cast<int>(encoded.bytes.size()), SQLITE_TRANSIENT);
      }
      rc = sqlite3_step(stmt);
    }
    sqlite3_finalize(stmt);
    ok = rc == SQLITE_DONE;
  }
  return ok;
}

bool SqliteSettingsStore::inTransaction(const std::string& what, const std::function<bool()>& body) {
  if (!exec(db_, "BEGIN IMMEDIATE")) {
    recordFailure(what);
    return false;
  }
  if (body() && exec(db_, "COMMIT")) return true;
  recordFailure(what);
  exec(db_, "ROLLBACK");
  return false;
}

void SqliteSettingsStore::recordFailure(const std::string& what) {
  writeFailed_ = true;
  lastError_ = lastMessage(db_);
  logWarning("settings " + what + " failed: " + lastError_);
}

std::string SqliteSettingsStore::lastError() const {
  std::lock_guard lock(mutex_);
  return lastError_;
}

bool SqliteSettingsStore::synchronize() {
  std::lock_guard lock(mutex_);
  sqlite3_wal_checkpoint_v2(db_, nullptr, SQLITE_CHECKPOINT_PASSIVE, nullptr, nullptr);
  return !std::exchange(writeFailed_, false);
}

}  // namespace qmv
