#pragma once
// SandboxStore: the sandbox's SQLite database (<home>/sandbox.db, WAL). Every request runs
// inside one transaction: `transact` with BEGIN IMMEDIATE for requests that write, so that two
// requests (or two processes sharing the home) never interleave a read-check-write of a
// balance.
//
// Failure inside a transaction is sticky: the first statement that fails records its Status,
// every later statement does nothing and returns no rows, and `transact` rolls everything back
// and returns that Status. Handlers therefore read as straight-line code, and a request never
// leaves half its writes behind.
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "core/common/json.h"
#include "core/common/result.h"
#include "core/common/status.h"
#include "core/sqlite/sqlite_database.h"

namespace qmv::sandbox {

class SandboxStore {
 public:
  // Opens (creating when missing, but not its directory) the database file; ":memory:" keeps
  // it in memory only.
  static Result<std::unique_ptr<SandboxStore>> open(const std::filesystem::path& file);
  SandboxStore(const SandboxStore&) = delete;
  SandboxStore& operator=(const SandboxStore&) = delete;

  // Runs `work` in one transaction (BEGIN IMMEDIATE when `writes`, else a deferred one) while
  // holding the store's lock. `work` returns true to commit, false to roll back. The result is
  // true when committed, false when `work` rolled back, and the first failed statement (or the
  // failed BEGIN or COMMIT) otherwise, with everything rolled back. An exception out of `work`
  // rolls back and is rethrown. Thread-safe.
  Result<bool> transact(bool writes, const std::function<bool()>& work);

  // REQUIRES: called from inside `transact`. Parameters bind by JSON kind (string, integer,
  // float, boolean as 0/1, anything else null); each row is an object keyed by column name
  // with integer, float, text or null. After a failure in the transaction: no rows.
  std::vector<Json> query(const std::string& sql, const std::vector<Json>& params = {});
  // The first row, or null when there is none.
  Json queryOne(const std::string& sql, const std::vector<Json>& params = {});
  // Runs one statement; returns the number of changed rows (0 after a failure).
  int64_t execute(const std::string& sql, const std::vector<Json>& params = {});
  int64_t lastInsertId() const;
  // Runs several statements without parameters (schema set-up); inside `transact` under the
  // sticky rule.
  Status executeScript(const std::string& sql);

  // Remembers the whole database as it is now, and puts it back as remembered, so that many
  // requests can each start from one world; from the first return on the database lives in
  // memory only. A return is skipped while nothing has been written since the last one.
  // REQUIRES: outside `transact`.
  Status remember();
  Status returnToRemembered();

 private:
  explicit SandboxStore(SQLiteDatabase db);
  // Records the first failure of the running transaction; returns `status`.
  const Status& note(const Status& status);
  // True when a statement may run: outside a transaction, or before its first failure.
  bool usable() const { return !inTransaction_ || failure_.ok(); }

  mutable SQLiteDatabase db_;
  std::mutex mutex_;
  bool inTransaction_ = false;
  Status failure_;  // the first failure of the running transaction
  std::string remembered_;
  // The database's data version right after the last return, while nothing has been
  // remembered since.
  std::optional<std::uint32_t> returnedAt_;
};

}  // namespace qmv::sandbox
