#include "core/sqlite/sqlite_database.h"

#include <sqlite3.h>

#include <atomic>
#include <cstdio>
#include <cstring>
#include <mutex>
#include <system_error>
#include <unordered_map>

#include "core/common/dictionary.h"
#include "core/common/url_parts.h"

namespace qmv {
namespace {

struct StatementDeleter {
  void operator()(sqlite3_stmt* stmt) const { sqlite3_finalize(stmt); }
};
using Statement = std::unique_ptr<sqlite3_stmt, StatementDeleter>;

int bindValue(sqlite3_stmt* s, int index, const DBValue& value) {
  if (const auto* text = std::get_if<std::string>(&value)) {
    return sqlite3_bind_text64(s, index, text->data(), text->size(), SQLITE_TRANSIENT, SQLITE_UTF8);
  }
  if (const auto* integer = std::get_if<std::int64_t>(&value)) return sqlite3_bind_int64(s, index, *integer);
  if (const auto* real = std::get_if<double>(&value)) return sqlite3_bind_double(s, index, *real);
  if (const auto* blob = std::get_if<std::vector<std::uint8_t>>(&value)) {
    return sqlite3_bind_blob64(s, index, blob->data(), blob->size(), SQLITE_TRANSIENT);
  }
  if (const auto* date = std::get_if<std::chrono::system_clock::time_point>(&value)) {
    return sqlite3_bind_double(s, index, std::chrono::duration<double>(date->time_since_epoch()).count());
  }
  return sqlite3_bind_null(s, index);
}

int bindAll(sqlite3_stmt* s, const std::vector<DBValue>& params) {
  for (std::size_t i = 0; i < params.size(); ++i) {
    if (const int rc = bindValue(s, static_cast<int>(i) + 1, params[i]); rc != SQLITE_OK) return rc;
  }
  return SQLITE_OK;
}

// The Status of a failed SQLite call: its primary code picks the kind.
Status statusFor(int code, std::string message) {
  const int primary = code & 0xff;
  if (primary == SQLITE_NOTADB || primary == SQLITE_CORRUPT) return Status::corruption(std::move(message), primary);
  if (primary == SQLITE_BUSY || primary == SQLITE_LOCKED) return Status::busy(std::move(message), primary);
  return Status::ioError(std::move(message), primary);
}

// Writes a value of a dump line; apostrophes are doubled so the line reads back as SQL.
std::string quoted(const Json& value) {
  std::string text;
  if (value.is_string()) {
    text = value.get<std::string>();
  } else if (value.is_binary()) {
    static const char kHex[] = "0123456789abcdef";
    std::string hex = "X'";
    for (std::uint8_t byte : value.get_binary()) {
      hex += kHex[byte >> 4];
      hex += kHex[byte & 15];
    }
    return hex + "'";
  } else {
    text = value.dump();
  }
  std::string out = "'";
  for (char c : text) {
    if (c == '\'') out += '\'';
    out += c;
  }
  return out + "'";
}

}  // namespace

struct SQLiteDatabase::Impl {
  std::filesystem::path path;
  Mode mode = Mode::kReadWrite;
  Links links = Links::kFollow;
  Directories directories = Directories::kCreate;
  sqlite3* db = nullptr;
  int transactionDepth = 0;  // > 0 while transaction() runs: nothing closes the handle
  std::recursive_mutex mutex;
  std::atomic<bool> writing{false};
  std::mutex rebuildMutex;  // one replaceWith at a time
  // Statements kept for getRowsForQuery with parameters; finalised before every close.
  std::unordered_map<std::string, Statement> kept;

  Status open() {
    if (db != nullptr) return {};
    int flags = SQLITE_OPEN_READONLY;
    std::string name = path.string();
    if (mode == Mode::kReadWrite) {
      flags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE;
      std::error_code ec;
      if (directories == Directories::kCreate && path.has_parent_path()) {
        std::filesystem::create_directories(path.parent_path(), ec);
      }
    } else if (mode == Mode::kImmutable) {
      flags |= SQLITE_OPEN_URI;
      // Escaped whole, so that "?", "#" or "%" in a directory name keep their meaning.
      name = "file:" + percentEncode(path.string()) + "?immutable=1";
    }
    if (links == Links::kRefuse) flags |= SQLITE_OPEN_NOFOLLOW;
    sqlite3* handle = nullptr;
    const int rc = sqlite3_open_v2(name.c_str(), &handle, flags, nullptr);
    if (rc != SQLITE_OK) {
      std::string message = handle != nullptr ? sqlite3_errmsg(handle) : sqlite3_errstr(rc);
      sqlite3_close(handle);
      return statusFor(rc, "The database could not be opened: " + message);
    }
    sqlite3_busy_timeout(handle, 5000);
    db = handle;
    return {};
  }

  Status close() {
    if (db == nullptr) return {};
    kept.clear();
    const int rc = sqlite3_close(db);
    if (rc != SQLITE_OK) {
      return statusFor(rc, std::string("The database could not be closed: ") + sqlite3_errmsg(db));
    }
    db = nullptr;
    return {};
  }

  // What doQuery and runInTransaction do when they end: close, unless a held
  // transaction still needs the connection.
  void closeUnlessHeld() {
    if (transactionDepth == 0) close();
  }

  Status lastError() const { return statusFor(sqlite3_extended_errcode(db), sqlite3_errmsg(db)); }

  Status prepare(std::string_view sql, Statement& out) {
    if (Status opened = open(); !opened.ok()) return opened;
    sqlite3_stmt* stmt = nullptr;
    if (sqlite3_prepare_v2(db, sql.data(), static_cast<int>(sql.size()), &stmt, nullptr) != SQLITE_OK) {
      sqlite3_finalize(stmt);
      return lastError();
    }
    if (stmt == nullptr) return Status::invalidArgument("not an SQL statement");
    out.reset(stmt);
    return {};
  }

  Status stepOnce(sqlite3_stmt* stmt) {
    const int rc = sqlite3_step(stmt);
    if (rc != SQLITE_DONE && rc != SQLITE_ROW) return lastError();
    return {};
  }

  Status execute(std::string_view sql, const std::vector<DBValue>& params = {}) {
    Statement stmt;
    if (Status prepared = prepare(sql, stmt); !prepared.ok()) return prepared;
    if (bindAll(stmt.get(), params) != SQLITE_OK) return lastError();
    return stepOnce(stmt.get());
  }

  Result<Json> rows(std::string_view sql) {
    Statement stmt;
    if (Status prepared = prepare(sql, stmt); !prepared.ok()) return prepared;
    return readRows(stmt.get(), {});
  }

  // Prepares `sql` once per connection, binds `params` and reads its rows; the kept
  // statement is reset and its bindings cleared for the next call.
  Result<Json> keptRows(std::string_view sql, const std::vector<DBValue>& params, RowStyle style) {
    if (Status opened = open(); !opened.ok()) return opened;
    auto found = kept.find(std::string(sql));
    if (found == kept.end()) {
      Statement stmt;
      if (Status prepared = prepare(sql, stmt); !prepared.ok()) return prepared;
      found = kept.emplace(std::string(sql), std::move(stmt)).first;
    }
    sqlite3_stmt* s = found->second.get();
    Result<Json> result = bindAll(s, params) == SQLITE_OK ? readRows(s, style) : Result<Json>(lastError());
    sqlite3_reset(s);
    sqlite3_clear_bindings(s);
    return result;
  }

  Result<Json> readRows(sqlite3_stmt* stmt, RowStyle style) {
    Json result = Json::array();
    const int columns = sqlite3_column_count(stmt);
    int rc;
    while ((rc = sqlite3_step(stmt)) == SQLITE_ROW) {
      Json row = Json::object();
      for (int i = 0; i < columns; ++i) {
        const char* name = sqlite3_column_name(stmt, i);
        switch (sqlite3_column_type(stmt, i)) {
          case SQLITE_INTEGER:
            row[name] = static_cast<std::int64_t>(sqlite3_column_int64(stmt, i));
            break;
          case SQLITE_FLOAT:
            row[name] = sqlite3_column_double(stmt, i);
            break;
          case SQLITE_TEXT: {
            const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(stmt, i));
            row[name] = std::string(text, static_cast<std::size_t>(sqlite3_column_bytes(stmt, i)));
            break;
          }
          case SQLITE_BLOB: {
            const auto* data = static_cast<const std::uint8_t*>(sqlite3_column_blob(stmt, i));
            const auto size = static_cast<std::size_t>(sqlite3_column_bytes(stmt, i));
            if (style.blobsAsText) {
              row[name] = size == 0 ? std::string() : std::string(reinterpret_cast<const char*>(data), size);
            } else {
              row[name] = Json::binary(std::vector<std::uint8_t>(data, data + size));
            }
            break;
          }
          default:
            if (style.nullsAsNull) row[name] = nullptr;
            break;  // NULL: left out
        }
      }
      result.push_back(std::move(row));
    }
    if (rc != SQLITE_DONE) return lastError();
    return result;
  }
};

SQLiteDatabase::SQLiteDatabase(std::filesystem::path path, Mode mode, Links links, Directories directories)
    : impl_(std::make_unique<Impl>()) {
  impl_->path = std::move(path);
  impl_->mode = mode;
  impl_->links = links;
  impl_->directories = directories;
}

SQLiteDatabase SQLiteDatabase::atPath(std::filesystem::path path, Mode mode, Links links, Directories directories) {
  return SQLiteDatabase(std::move(path), mode, links, directories);
}

SQLiteDatabase SQLiteDatabase::inMemory() {
  return SQLiteDatabase(":memory:", Mode::kReadWrite, Links::kFollow, Directories::kMustExist);
}

SQLiteDatabase::~SQLiteDatabase() {
  if (impl_) impl_->close();
}

SQLiteDatabase::SQLiteDatabase(SQLiteDatabase&&) noexcept = default;
SQLiteDatabase& SQLiteDatabase::operator=(SQLiteDatabase&& other) noexcept {
  if (this != &other) {
    if (impl_) impl_->close();
    impl_ = std::move(other.impl_);
  }
  return *this;
}

const std::filesystem::path& SQLiteDatabase::getDatabasePath() const { return impl_->path; }

Status SQLiteDatabase::openDatabase() {
  std::lock_guard lock(impl_->mutex);
  return impl_->open();
}

Status SQLiteDatabase::closeDatabase() {
  std::lock_guard lock(impl_->mutex);
  return impl_->close();
}

Status SQLiteDatabase::doQuery(std::string_view sql) {
  std::lock_guard lock(impl_->mutex);
  Status status = impl_->execute(sql);
  impl_->closeUnlessHeld();
  return status;
}

Status SQLiteDatabase::runInTransaction(const std::vector<BoundStatement>& statements) {
  std::lock_guard lock(impl_->mutex);
  const bool wasWriting = impl_->writing.exchange(true);
  Status status = impl_->execute("BEGIN IMMEDIATE");
  if (status.ok()) {
    for (const auto& statement : statements) {
      if (status = impl_->execute(statement.sql, statement.params); !status.ok()) break;
    }
    if (!status.ok()) {
      impl_->execute("ROLLBACK");
    } else {
      status = impl_->execute("COMMIT");
      if (!status.ok()) impl_->execute("ROLLBACK");
    }
  }
  impl_->closeUnlessHeld();
  impl_->writing = wasWriting;
  return status;
}

Status SQLiteDatabase::transaction(TransactionKind kind, const std::function<Status()>& body) {
  std::lock_guard lock(impl_->mutex);
  if (impl_->transactionDepth > 0) return body();
  Status status = impl_->execute(kind == TransactionKind::kImmediate ? "BEGIN IMMEDIATE" : "BEGIN");
  if (!status.ok()) return status;
  ++impl_->transactionDepth;
  try {
    status = body();
  } catch (...) {
    --impl_->transactionDepth;
    if (sqlite3_get_autocommit(impl_->db) == 0) impl_->execute("ROLLBACK");
    throw;
  }
  --impl_->transactionDepth;
  if (status.ok()) status = impl_->execute("COMMIT");
  // A failed COMMIT can leave the transaction open (SQLITE_BUSY); it must not outlive the call.
  if (!status.ok() && sqlite3_get_autocommit(impl_->db) == 0) impl_->execute("ROLLBACK");
  return status;
}

Status SQLiteDatabase::executeScript(std::string_view sql) {
  std::lock_guard lock(impl_->mutex);
  if (Status opened = impl_->open(); !opened.ok()) return opened;
  const std::string text(sql);
  if (sqlite3_exec(impl_->db, text.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK) return impl_->lastError();
  return {};
}

Status SQLiteDatabase::doUpdateQuery(std::string_view sql, const std::vector<DBValue>& params) {
  std::lock_guard lock(impl_->mutex);
  return impl_->execute(sql, params);
}

Result<Json> SQLiteDatabase::getRowsForQuery(std::string_view sql) {
  std::lock_guard lock(impl_->mutex);
  return impl_->rows(sql);
}

Result<Json> SQLiteDatabase::getRowsForQuery(std::string_view sql, const std::vector<DBValue>& params,
                                             RowStyle style) {
  std::lock_guard lock(impl_->mutex);
  return impl_->keptRows(sql, params, style);
}

std::int64_t SQLiteDatabase::getLastInsertRowID() {
  std::lock_guard lock(impl_->mutex);
  return impl_->db != nullptr ? sqlite3_last_insert_rowid(impl_->db) : 0;
}

std::int64_t SQLiteDatabase::changes() {
  std::lock_guard lock(impl_->mutex);
  return impl_->db != nullptr ? sqlite3_changes64(impl_->db) : 0;
}

Result<std::string> SQLiteDatabase::serialize() {
  std::lock_guard lock(impl_->mutex);
  if (Status opened = impl_->open(); !opened.ok()) return opened;
  sqlite3_int64 size = 0;
  unsigned char* bytes = sqlite3_serialize(impl_->db, "main", &size, 0);
  if (bytes == nullptr) {
    // An empty database has no pages to copy.
    if (sqlite3_errcode(impl_->db) == SQLITE_OK) return std::string();
    return impl_->lastError();
  }
  std::string image(reinterpret_cast<const char*>(bytes), static_cast<std::size_t>(size));
  sqlite3_free(bytes);
  return image;
}

Status SQLiteDatabase::deserialize(std::string_view image) {
  std::lock_guard lock(impl_->mutex);
  if (Status opened = impl_->open(); !opened.ok()) return opened;
  // Kept statements must go: one prepared before may run on against the old table layout
  // when the image's schema differs but carries the same schema cookie.
  impl_->kept.clear();
  // SQLite owns (and frees) what it is handed, and may grow it as statements write.
  auto* bytes = static_cast<unsigned char*>(sqlite3_malloc64(image.empty() ? 1 : image.size()));
  if (bytes == nullptr) return Status::ioError("The database image could not be restored: out of memory", SQLITE_NOMEM);
  std::memcpy(bytes, image.data(), image.size());
  // The header's format bytes say WAL for an image of a WAL file; memory has no WAL.
  if (image.size() > 19 && bytes[18] == 2 && bytes[19] == 2) bytes[18] = bytes[19] = 1;
  const auto size = static_cast<sqlite3_int64>(image.size());
  if (sqlite3_deserialize(impl_->db, "main", bytes, size, size,
                          SQLITE_DESERIALIZE_FREEONCLOSE | SQLITE_DESERIALIZE_RESIZEABLE) != SQLITE_OK) {
    return impl_->lastError();
  }
  return {};
}

std::uint32_t SQLiteDatabase::dataVersion() {
  std::lock_guard lock(impl_->mutex);
  if (impl_->db == nullptr) return 0;
  unsigned version = 0;
  if (sqlite3_file_control(impl_->db, "main", SQLITE_FCNTL_DATA_VERSION, &version) != SQLITE_OK) return 0;
  return version;
}

Status SQLiteDatabase::checkpoint() {
  std::lock_guard lock(impl_->mutex);
  if (impl_->db == nullptr) return {};
  const int rc = sqlite3_wal_checkpoint_v2(impl_->db, nullptr, SQLITE_CHECKPOINT_PASSIVE, nullptr, nullptr);
  return rc == SQLITE_OK ? Status() : impl_->lastError();
}

std::string SQLiteDatabase::getDatabaseDump() {
  std::lock_guard lock(impl_->mutex);
  std::string dump = ";\n; Dump of an SQLite database\n;\n";
  dump += "; database " + impl_->path.filename().string() + ";\n";
  const Json tables =
      impl_->rows("SELECT * FROM sqlite_master WHERE type='table' AND name NOT LIKE 'sqlite_%';").valueOr(Json::array());
  for (const auto& table : tables) {
    const std::string name = strForKey(table, "name");
    dump += strForKey(table, "sql") + ";\n";
    // Column names come from the table itself so that NULL values, left out of the rows,
    // still have their place in each line.
    std::vector<std::string> columns;
    Statement stmt;
    const std::string select = "SELECT * FROM \"" + name + "\"";
    if (!impl_->prepare(select, stmt).ok()) continue;
    for (int i = 0; i < sqlite3_column_count(stmt.get()); ++i) columns.emplace_back(sqlite3_column_name(stmt.get(), i));
    stmt.reset();
    for (const auto& row : impl_->rows(select).valueOr(Json::array())) {
      std::string names;
      std::string values;
      for (const auto& column : columns) {
        names += (names.empty() ? "" : ",") + column;
        const auto it = row.find(column);
        values += values.empty() ? "" : ",";
        values += it == row.end() ? "null" : quoted(*it);
      }
      dump += "insert into " + name + " (" + names + ") values (" + values + ");\n";
    }
  }
  return dump;
}

bool SQLiteDatabase::isWriting() const { return impl_->writing.load(); }

Status SQLiteDatabase::replaceWith(const std::function<Status(SQLiteDatabase& fresh)>& fill) {
  std::lock_guard rebuild(impl_->rebuildMutex);
  const bool wasWriting = impl_->writing.exchange(true);
  const std::filesystem::path side = impl_->path.string() + ".rebuild";
  std::error_code ec;
  std::filesystem::remove(side, ec);
  Status status;
  {
    SQLiteDatabase fresh = atPath(side);
    status = fill(fresh);
    if (Status closed = fresh.closeDatabase(); status.ok()) status = closed;
  }
  if (status.ok()) {
    std::lock_guard lock(impl_->mutex);
    impl_->close();
    std::filesystem::rename(side, impl_->path, ec);
    if (ec) status = createDBErrorWithDescription("The database could not be replaced: " + ec.message(), SQLITE_IOERR);
  }
  if (!status.ok()) std::filesystem::remove(side, ec);
  impl_->writing = wasWriting;
  return status;
}

Status SQLiteDatabase::createDBErrorWithDescription(std::string description, int code) {
  return Status::ioError(std::move(description), code);
}

}  // namespace qmv
