#pragma once
// A thin wrapper over one SQLite database file. Statements are plain SQL texts; rows come
// back as JSON objects keyed by column name (integers and reals as numbers, text as
// strings, blobs as JSON binary, NULL columns left out).
//
// The database is named by its full path; callers resolve names against their own
// locations. Each query opens the database when needed; doQuery and runInTransaction
// close it afterwards.
//
// Thread-safety: every operation takes the object's lock, so a background writer and
// readers on the interface thread never use the handle at the same time. isWriting()
// may be read from any thread without waiting. The object is move-only; a moved-from
// object may only be destroyed or assigned to.
#include <chrono>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "core/common/json.h"
#include "core/sqlite/db_error.h"

namespace qmv {

// A value bound to a "?" placeholder: NULL, text, integer, real, blob, or a date
// (bound as seconds since 1970, a real).
using DBValue = std::variant<std::monostate, std::string, std::int64_t, double, std::vector<std::uint8_t>,
                             std::chrono::system_clock::time_point>;

class SQLiteDatabase {
 public:
  // kImmutable is for shipped resources that nothing changes while the process runs:
  // read-only, and SQLite skips file locking and change detection on every query.
  enum class Mode { kReadWrite, kReadOnly, kImmutable };

  // A database at exactly `path`. kReadOnly and kImmutable never create a file: opening
  // a missing one fails.
  static SQLiteDatabase atPath(std::filesystem::path path, Mode mode = Mode::kReadWrite);
  ~SQLiteDatabase();
  SQLiteDatabase(SQLiteDatabase&&) noexcept;
  SQLiteDatabase& operator=(SQLiteDatabase&&) noexcept;
  SQLiteDatabase(const SQLiteDatabase&) = delete;
  SQLiteDatabase& operator=(const SQLiteDatabase&) = delete;

  const std::filesystem::path& getDatabasePath() const;

  // Opening an open database does nothing. A read-write database creates its parent
  // directories. Failure: "The database could not be opened: <SQLite message>".
  std::optional<DBError> openDatabase();
  // Closing a closed database does nothing.
  // Failure: "The database could not be closed: <SQLite message>".
  std::optional<DBError> closeDatabase();

  // Prepares, steps once and finalises `sql`, then closes the database.
  std::optional<DBError> doQuery(std::string_view sql);

  // Runs the statements in order inside one transaction with isWriting() set, then closes
  // the database. The first failure rolls the whole batch back and is returned.
  std::optional<DBError> runInTransaction(const std::vector<std::string>& sqls);  // the system's doQuerys:

  // Prepares `sql`, binds params[i] to placeholder i+1 by kind and steps once.
  std::optional<DBError> doUpdateQuery(std::string_view sql, const std::vector<DBValue>& params);

  // One object per row; an empty array when the statement cannot be prepared or fails.
  Json getRowsForQuery(std::string_view sql);
  // The same with params[i] bound to placeholder i+1 (as doUpdateQuery binds them). The
  // statement is prepared once per opened connection and reused, so repeated look-ups with
  // one text skip SQLite's parser; a bind failure also yields an empty array.
  Json getRowsForQuery(std::string_view sql, const std::vector<DBValue>& params);

  // Rowid of the last successful insert on this connection (0 when none or closed).
  std::int64_t getLastInsertRowID();

  // The whole database as text: a comment header, "; database <file name>;", then per
  // table its CREATE statement and one insert line per row (NULLs written as null).
  std::string getDatabaseDump();

  // True while runInTransaction or replaceWith runs. Readable from any thread.
  bool isWriting() const;

  // Builds a new database in a side file with `fill`, then swaps it in for this one in
  // one rename, so readers see either the old contents or the complete new ones. The
  // old file stays when `fill` fails. isWriting() is true for the duration.
  std::optional<DBError> replaceWith(const std::function<std::optional<DBError>(SQLiteDatabase& fresh)>& fill);

  static DBError createDBErrorWithDescription(std::string description, int code);

 private:
  SQLiteDatabase(std::filesystem::path path, Mode mode);

  struct Impl;
  std::unique_ptr<Impl> impl_;
};

}  // namespace qmv
