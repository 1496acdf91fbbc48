#include "apps/sandbox/sandbox_store.h"

#include <sqlite3.h>

#include <cstring>

namespace qmv::sandbox {
namespace {

struct Statement {
  sqlite3_stmt* stmt = nullptr;
  ~Statement() { sqlite3_finalize(stmt); }
};

void prepare(sqlite3* db, const std::string& sql, const std::vector<Json>& params, Statement& out) {
  if (sqlite3_prepare_v2(db, sql.c_str(), static_cast<int>(sql.size()), &out.stmt, nullptr) != SQLITE_OK) {
    throw StoreError(std::string("prepare: ") + sqlite3_errmsg(db));
  }
  for (size_t i = 0; i < params.size(); ++i) {
    const Json& value = params[i];
    const int index = static_cast<int>(i) + 1;
    int rc = SQLITE_OK;
    if (value.is_string()) {
      const auto& text = value.get_ref<const std::string&>();
      rc = sqlite3_bind_text(out.stmt, index, text.data(), static_cast<int>(text.size()), SQLITE_TRANSIENT);
    } else if (value.is_number_integer()) {
      rc = sqlite3_bind_int64(out.stmt, index, value.get<int64_t>());
    } else if (value.is_number()) {
      rc = sqlite3_bind_double(out.stmt, index, value.get<double>());
    } else if (value.is_boolean()) {
      rc = sqlite3_bind_int(out.stmt, index, value.get<bool>() ? 1 : 0);
    } else {
      rc = sqlite3_bind_null(out.stmt, index);
    }
    if (rc != SQLITE_OK) throw StoreError(std::string("bind: ") + sqlite3_errmsg(db));
  }
}

Json columnValue(sqlite3_stmt* stmt, int column) {
  switch (sqlite3_column_type(stmt, column)) {
    case SQLITE_INTEGER:
      return static_cast<int64_t>(sqlite3_column_int64(stmt, column));
    case SQLITE_FLOAT:
      return sqlite3_column_double(stmt, column);
    case SQLITE_NULL:
      return nullptr;
    default: {
      const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(stmt, column));
      return std::string(text ? text : "", static_cast<size_t>(sqlite3_column_bytes(stmt, column)));
    }
  }
}

}  // namespace

std::unique_ptr<SandboxStore> SandboxStore::open(const std::filesystem::path& file, std::string* error) {
  sqlite3* db = nullptr;
  const int flags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_FULLMUTEX;
  if (sqlite3_open_v2(file.string().c_str(), &db, flags, nullptr) != SQLITE_OK) {
    if (error)
      *error = std::string("cannot open ") + file.string() + ": " + (db ? sqlite3_errmsg(db) : "out of memory");
    sqlite3_close(db);
    return nullptr;
  }
  sqlite3_busy_timeout(db, 5000);
  char* message = nullptr;
  if (sqlite3_exec(db, "PRAGMA journal_mode=WAL; PRAGMA foreign_keys=ON; PRAGMA synchronous=NORMAL;", nullptr, nullptr,
                   &message) != SQLITE_OK) {
    if (error) *error = std::string("cannot set up ") + file.string() + ": " + (message ? message : "");
    sqlite3_free(message);
    sqlite3_close(db);
    return nullptr;
  }
  return std::unique_ptr<SandboxStore>(new SandboxStore(db));
}

SandboxStore::SandboxStore(sqlite3* db) : db_(db) {}

SandboxStore::~SandboxStore() { sqlite3_close(db_); }

bool SandboxStore::transact(bool writes, const std::function<bool()>& work) {
  std::lock_guard lock(mutex_);
  executeScript(writes ? "BEGIN IMMEDIATE" : "BEGIN");
  bool commit = false;
  try {
    commit = work();
  } catch (...) {
    sqlite3_exec(db_, "ROLLBACK", nullptr, nullptr, nullptr);
    throw;
  }
  if (!commit) {
    sqlite3_exec(db_, "ROLLBACK", nullptr, nullptr, nullptr);
    return false;
  }
  try {
    executeScript("COMMIT");
  } catch (...) {
    sqlite3_exec(db_, "ROLLBACK", nullptr, nullptr, nullptr);
    throw;
  }
  return true;
}

std::vector<Json> SandboxStore::query(const std::string& sql, const std::vector<Json>& params) {
  Statement statement;
  prepare(db_, sql, params, statement);
  std::vector<Json> rows;
  const int columns = sqlite3_column_count(statement.stmt);
  for (;;) {
    const int rc = sqlite3_step(statement.stmt);
    if (rc == SQLITE_DONE) break;
    if (rc != SQLITE_ROW) throw StoreError(std::string("step: ") + sqlite3_errmsg(db_));
    Json row = Json::object();
    for (int c = 0; c < columns; ++c) row[sqlite3_column_name(statement.stmt, c)] = columnValue(statement.stmt, c);
    rows.push_back(std::move(row));
  }
  return rows;
}

Json SandboxStore::queryOne(const std::string& sql, const std::vector<Json>& params) {
  auto rows = query(sql, params);
  return rows.empty() ? Json() : std::move(rows.front());
}

int64_t SandboxStore::execute(const std::string& sql, const std::vector<Json>& params) {
  Statement statement;
  prepare(db_, sql, params, statement);
  const int rc = sqlite3_step(statement.stmt);
  if (rc != SQLITE_DONE && rc != SQLITE_ROW) throw StoreError(std::string("step: ") + sqlite3_errmsg(db_));
  return sqlite3_changes64(db_);
}

int64_t SandboxStore::lastInsertId() const { return sqlite3_last_insert_rowid(db_); }

std::string SandboxStore::image() {
  std::lock_guard lock(mutex_);
  sqlite3_int64 size = 0;
  unsigned char* bytes = sqlite3_serialize(db_, "main", &size, 0);
  if (bytes == nullptr) throw StoreError(std::string("serialize: ") + sqlite3_errmsg(db_));
  std::string image(reinterpret_cast<const char*>(bytes), static_cast<size_t>(size));
  sqlite3_free(bytes);
  return image;
}

void SandboxStore::restoreImage(const std::string& image) {
  std::lock_guard lock(mutex_);
  // SQLite owns (and frees) what it is handed; it may grow as requests write.
  auto* bytes = static_cast<unsigned char*>(sqlite3_malloc64(image.size()));
  if (bytes == nullptr) throw StoreError("restore: out of memory");
  std::memcpy(bytes, image.data(), image.size());
  // The header's format bytes say WAL for an image of the file; memory has no WAL.
  if (image.size() > 19 && bytes[18] == 2 && bytes[19] == 2) bytes[18] = bytes[19] = 1;
  const auto size = static_cast<sqlite3_int64>(image.size());
  if (sqlite3_deserialize(db_, "main", bytes, size, size, SQLITE_DESERIALIZE_FREEONCLOSE | SQLITE_DESERIALIZE_RESIZEABLE) !=
      SQLITE_OK) {
    throw StoreError(std::string("restore: ") + sqlite3_errmsg(db_));
  }
}

void SandboxStore::executeScript(const std::string& sql) {
  char* message = nullptr;
  if (sqlite3_exec(db_, sql.c_str(), nullptr, nullptr, &message) != SQLITE_OK) {
    std::string text = message ? message : sqlite3_errmsg(db_);
    sqlite3_free(message);
    throw StoreError(text);
  }
}

}  // namespace qmv::sandbox
