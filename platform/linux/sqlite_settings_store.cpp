#include "platform/linux/sqlite_settings_store.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <system_error>
#include <utility>

#include "core/common/log.h"
#include "core/sqlite/sqlite_database.h"
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

// Rows are read with blobs as their bytes; a column holding a number (a row written by
// hand) reads as its decimal text, and NULL as nothing.
constexpr RowStyle kBytes{.nullsAsNull = false, .blobsAsText = true};

std::string columnBytes(const Json& row, const char* column) {
  const auto it = row.find(column);
  if (it == row.end()) return {};
  if (it->is_string()) return it->get<std::string>();
  if (it->is_number_integer()) return std::to_string(it->get<std::int64_t>());
  return it->is_number() ? dumpJson(*it) : std::string();
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

struct Attempt {
  std::unique_ptr<SQLiteDatabase> db;  // null on failure
  Json values = Json::object();
  Status status;
  bool refused = false;  // the file itself was refused: the message says why, naming it
};

Status loadRows(SQLiteDatabase& db, Json& values) {
  // secure_delete: a replaced value (a password moved to the keyring) leaves no copy in
  // the file's free space.
  const std::string setup =
      std::string("PRAGMA journal_mode=WAL; PRAGMA synchronous=FULL; PRAGMA secure_delete=ON; ") + kSchema;
  if (Status set = db.executeScript(setup); !set.ok()) return set;
  const auto check = db.getRowsForQuery("PRAGMA quick_check", {}, kBytes);
  if (!check.ok()) return check.status();
  if (check->empty() || columnBytes(check->front(), "quick_check") != "ok") {
    return Status::corruption(check->empty() ? "quick_check found nothing" : columnBytes(check->front(), "quick_check"));
  }
  const auto rows = db.getRowsForQuery("SELECT key, kind, value FROM settings", {}, kBytes);
  if (!rows.ok()) return rows.status();
  for (const Json& row : *rows) {
    Json value = SqliteSettingsStore::decodeRow(columnBytes(row, "kind"), columnBytes(row, "value"));
    if (!value.is_null()) values[columnBytes(row, "key")] = std::move(value);
  }
  return {};
}

Attempt tryOpen(const std::filesystem::path& file) {
  Attempt a;
  if (std::string why = makePrivate(file); !why.empty()) {
    a.status = Status::ioError(std::move(why));
    a.refused = true;
    return a;
  }
  // The file was checked above; refusing links keeps SQLite from following one planted since.
  auto db = std::make_unique<SQLiteDatabase>(
      SQLiteDatabase::atPath(file, SQLiteDatabase::Mode::kReadWrite, SQLiteDatabase::Links::kRefuse));
  a.status = db->openDatabase();
  if (a.status.ok()) a.status = loadRows(*db, a.values);
  if (a.status.ok()) a.db = std::move(db);
  return a;
}

// SQLite's own words for a failed open: the message has always named the settings file
// itself, so the wrapper's generic lead-in is left out.
std::string openFailure(const Status& status) {
  constexpr std::string_view kLeadIn = "The database could not be opened: ";
  const std::string& message = status.message();
  return message.rfind(kLeadIn, 0) == 0 ? message.substr(kLeadIn.size()) : message;
}

// Moves the damaged file and its journals to a name no earlier run has used.
Result<std::filesystem::path> keepAside(const std::filesystem::path& file) {
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
  if (ec) return Status::ioError("cannot move damaged settings file aside: " + ec.message());
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

Result<SqliteSettingsStore::Opened> SqliteSettingsStore::open(const std::filesystem::path& file) {
  std::error_code ec;
  if (file.has_parent_path()) std::filesystem::create_directories(file.parent_path(), ec);
  Attempt attempt = tryOpen(file);
  std::filesystem::path keptAside;
  if (!attempt.db && attempt.status.isCorruption()) {
    logLine("settings file " + file.string() + " is damaged (" + attempt.status.message() + "); keeping it aside");
    Result<std::filesystem::path> moved = keepAside(file);
    if (!moved.ok()) return moved.status();
    keptAside = std::move(moved).value();
    attempt = tryOpen(file);
  }
  if (!attempt.db) {
    std::string why = attempt.refused ? attempt.status.message()
                                      : "cannot open settings file " + file.string() + ": " + openFailure(attempt.status);
    if (!keptAside.empty()) why += " (the damaged file was kept as " + keptAside.string() + ")";
    return Status::ioError(std::move(why));
  }
  return Opened{std::unique_ptr<SqliteSettingsStore>(
                    new SqliteSettingsStore(std::move(attempt.db), file, std::move(attempt.values))),
                std::move(keptAside)};
}

SqliteSettingsStore::SqliteSettingsStore(std::unique_ptr<SQLiteDatabase> db, std::filesystem::path path, Json values)
    : db_(std::move(db)), path_(std::move(path)), values_(std::move(values)) {}

SqliteSettingsStore::~SqliteSettingsStore() = default;

Json SqliteSettingsStore::objectForKey(const std::string& key) const {
  std::lock_guard lock(mutex_);
  const auto it = values_.find(key);
  return it == values_.end() ? Json() : *it;
}

void SqliteSettingsStore::setObject(const Json& value, const std::string& key) {
  setObjects(Json{{key, value.is_discarded() ? Json() : value}});
}

void SqliteSettingsStore::removeObjectForKey(const std::string& key) { setObjects(Json{{key, nullptr}}); }

Status SqliteSettingsStore::setObjects(const Json& values) {
  if (!values.is_object()) return Status::invalidArgument("settings are written from an object");
  std::lock_guard lock(mutex_);
  return inTransaction("write of " + (values.empty() ? std::string("nothing") : values.begin().key()),
                       [&] { return writeRows(values); });
}

bool SqliteSettingsStore::updateObject(const std::string& key, const Change& change) {
  std::lock_guard lock(mutex_);
  return inTransaction("update of " + key, [&]() -> Status {
    const auto rows = db_->getRowsForQuery("SELECT kind, value FROM settings WHERE key = ?1", {key}, kBytes);
    if (!rows.ok()) return rows.status();
    Json current;
    if (!rows->empty()) current = decodeRow(columnBytes(rows->front(), "kind"), columnBytes(rows->front(), "value"));
    Json next = change(std::move(current));
    return writeRows(Json{{key, next.is_discarded() ? Json() : std::move(next)}});
  }).ok();
}

Status SqliteSettingsStore::writeRows(const Json& values) {
  Status status;
  for (const auto& [key, value] : values.items()) {
    if (value.is_null()) {
      values_.erase(key);
    } else {
      values_[key] = value;
    }
    if (!status.ok()) continue;  // the rest still reach memory, as a failed single write does
    if (value.is_null()) {
      status = db_->doUpdateQuery("DELETE FROM settings WHERE key = ?1", {key});
    } else {
      Encoded encoded = encode(value);
      status = db_->doUpdateQuery("INSERT OR REPLACE INTO settings (key, kind, value) VALUES (?1, ?2, ?3)",
                                  {key, std::move(encoded.kind),
                                   std::vector<std::uint8_t>(encoded.bytes.begin(), encoded.bytes.end())});
    }
  }
  return status;
}

Status SqliteSettingsStore::inTransaction(const std::string& what, const std::function<Status()>& body) {
  const Status status = db_->transaction(SQLiteDatabase::TransactionKind::kImmediate, body);
  if (!status.ok()) recordFailure(what, status);
  return status;
}

void SqliteSettingsStore::recordFailure(const std::string& what, const Status& status) {
  writeFailed_ = true;
  lastWriteStatus_ = status;
  logWarning("settings " + what + " failed: " + status.message());
}

Status SqliteSettingsStore::lastWriteStatus() const {
  std::lock_guard lock(mutex_);
  return lastWriteStatus_;
}

bool SqliteSettingsStore::synchronize() {
  std::lock_guard lock(mutex_);
  db_->checkpoint();
  return !std::exchange(writeFailed_, false);
}

}  // namespace qmv
