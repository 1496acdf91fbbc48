#pragma once
// A thin wrapper over one SQLite database file. Values are bound to "?" placeholders,
// never written into a statement's text; rows come back as JSON objects keyed by column
// name (integers and reals as numbers, text as strings, blobs as JSON binary, NULL
// columns left out, unless a RowStyle says otherwise).
//
// The database is named by its full path; callers resolve names against their own
// locations. Each query opens the database when needed; doQuery and runInTransaction
// close it afterwards, except inside transaction(), which holds the connection.
//
// Failures are Status values carrying SQLite's message and primary result code; a file
// that is not a database or is damaged reads as Status::isCorruption(), a lock held too
// long as isBusy().
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
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "core/common/json.h"
#include "core/common/result.h"
#include "core/common/status.h"

namespace qmv {

// A value bound to a "?" placeholder: NULL, text, integer, real, blob, or a date
// (bound as seconds since 1970, a real).
using DBValue = std::variant<std::monostate, std::string, std::int64_t, double, std::vector<std::uint8_t>,
                             std::chrono::system_clock::time_point>;

// One statement of a batch with the values of its placeholders.
struct BoundStatement {
  BoundStatement(std::string text, std::vector<DBValue> values = {})  // NOLINT(google-explicit-constructor)
      : sql(std::move(text)), params(std::move(values)) {}
  BoundStatement(const char* text) : sql(text) {}  // NOLINT(google-explicit-constructor)

  std::string sql;
  std::vector<DBValue> params;
};

// How a row is read. By default NULL columns are left out and blobs become JSON binary.
struct RowStyle {
  bool nullsAsNull = false;  // a NULL column appears as null
  bool blobsAsText = false;  // a blob column appears as a string holding its bytes
};

class SQLiteDatabase {
 public:
  // kImmutable is for shipped resources that nothing changes while the process runs:
  // read-only, and SQLite skips file locking and change detection on every query.
  enum class Mode { kReadWrite, kReadOnly, kImmutable };

  // kRefuse opens only a file that is not a symbolic link (SQLITE_OPEN_NOFOLLOW), for
  // files whose owner has checked them first.
  enum class Links { kFollow, kRefuse };
  enum class TransactionKind { kDeferred, kImmediate };
  // kMustExist opens a read-write database only in a directory that is already there.
  enum class Directories { kCreate, kMustExist };

  // A database at exactly `path`. kReadOnly and kImmutable never create a file: opening
  // a missing one fails.
  static SQLiteDatabase atPath(std::filesystem::path path, Mode mode = Mode::kReadWrite, Links links = Links::kFollow,
                               Directories directories = Directories::kCreate);
  // A read-write database in memory only, gone when it is closed (getDatabasePath() is
  // ":memory:").
  static SQLiteDatabase inMemory();
  ~SQLiteDatabase();
  SQLiteDatabase(SQLiteDatabase&&) noexcept;
  SQLiteDatabase& operator=(SQLiteDatabase&&) noexcept;
  SQLiteDatabase(const SQLiteDatabase&) = delete;
  SQLiteDatabase& operator=(const SQLiteDatabase&) = delete;

  const std::filesystem::path& getDatabasePath() const;

  // Opening an open database does nothing. A read-write database creates its parent
  // directories. Failure: "The database could not be opened: <SQLite message>".
  Status openDatabase();
  // Closing a closed database does nothing.
  // Failure: "The database could not be closed: <SQLite message>".
  Status closeDatabase();

  // Prepares, steps once and finalises `sql`, then closes the database (not inside
  // transaction()).
  Status doQuery(std::string_view sql);

  // Runs the statements in order inside one immediate transaction with isWriting() set,
  // then closes the database. The first failure rolls the whole batch back and is
  // returned. REQUIRES: not called inside transaction().
  Status runInTransaction(const std::vector<BoundStatement>& statements);  // the system's doQuerys:

  // Runs `body` inside one transaction on a connection held open throughout: committed
  // when `body` returns OK, rolled back otherwise (its Status is returned), and a failed
  // COMMIT is rolled back and returned. An exception out of `body` rolls back and is
  // rethrown. The connection stays open afterwards. A call made
  // from inside `body` joins the running transaction.
  Status transaction(TransactionKind kind, const std::function<Status()>& body);

  // Runs one or more ";"-separated statements without values (pragmas, schema).
  Status executeScript(std::string_view sql);

  // Prepares `sql`, binds params[i] to placeholder i+1 by kind and steps once.
  Status doUpdateQuery(std::string_view sql, const std::vector<DBValue>& params);

  // One object per row, or the failure to prepare or step.
  Result<Json> getRowsForQuery(std::string_view sql);
  // The same with params[i] bound to placeholder i+1 (as doUpdateQuery binds them) and
  // rows read in `style`. The statement is prepared once per opened connection and
  // reused, so repeated look-ups with one text skip SQLite's parser.
  Result<Json> getRowsForQuery(std::string_view sql, const std::vector<DBValue>& params, RowStyle style = {});

  // Rowid of the last successful insert on this connection (0 when none or closed).
  std::int64_t getLastInsertRowID();
  // Rows changed by the last insert, update or delete on this connection (0 when closed).
  std::int64_t changes();

  // The whole database as the bytes of its file, or the failure to read it.
  Result<std::string> serialize();
  // Replaces the database with `image` (such bytes); from then on it lives in memory and
  // writes never reach the file. An image of a WAL file is read as a rollback-journal
  // one, since memory has no write-ahead log. Fails on bytes that are no database
  // (perhaps only at the first statement that reads them). REQUIRES: outside transaction().
  Status deserialize(std::string_view image);
  // A number that changes whenever a transaction that wrote commits, on this connection or
  // (noticed at its next read) on another: two equal readings on one open connection mean
  // nothing was written in between. It starts again when the connection is reopened or
  // deserialize() runs; 0 while the database is closed.
  std::uint32_t dataVersion();

  // A passive checkpoint of the write-ahead log: copies what no reader still needs into
  // the database file without waiting for anyone. Does nothing on a closed database.
  Status checkpoint();

  // The whole database as text: a comment header, "; database <file name>;", then per
  // table its CREATE statement and one insert line per row (NULLs written as null).
  std::string getDatabaseDump();

  // True while runInTransaction or replaceWith runs (not transaction()). Readable from any thread.
  bool isWriting() const;

  // Builds a new database in a side file with `fill`, then swaps it in for this one in
  // one rename, so readers see either the old contents or the complete new ones. The
  // old file stays when `fill` fails. isWriting() is true for the duration.
  Status replaceWith(const std::function<Status(SQLiteDatabase& fresh)>& fill);

  // An I/O failure with `description` and SQLite's result `code`.
  static Status createDBErrorWithDescription(std::string description, int code);

 private:
  SQLiteDatabase(std::filesystem::path path, Mode mode, Links links, Directories directories);

  struct Impl;
  std::unique_ptr<Impl> impl_;
};

}  // namespace qmv
