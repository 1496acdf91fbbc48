#pragma once
// SandboxStore: the sandbox's SQLite database (<home>/sandbox.db, WAL). Every request runs
// inside one transaction: `transact` with BEGIN IMMEDIATE for requests that write, so that two
// requests (or two processes sharing the home) never interleave a read-check-write of a
// balance. Statement failures inside a transaction throw `StoreError`; the transaction is then
// rolled back, so a request never leaves half its writes behind.
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <mutex>
#include <stdexcept>
#include <string>
#include <vector>

#include "core/common/json.h"

struct sqlite3;

namespace qmv::sandbox {

class StoreError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

class SandboxStore {
 public:
  // Opens (creating when missing) the database file. Returns null and fills `error` on failure.
  static std::unique_ptr<SandboxStore> open(const std::filesystem::path& file, std::string* error);
  ~SandboxStore();
  SandboxStore(const SandboxStore&) = delete;
  SandboxStore& operator=(const SandboxStore&) = delete;

  // Runs `work` in one transaction (BEGIN IMMEDIATE when `writes`, else a deferred one) while
  // holding the store's lock. `work` returns true to commit, false to roll back; an exception
  // rolls back and is rethrown. Thread-safe.
  bool transact(bool writes, const std::function<bool()>& work);

  // REQUIRES: called from inside `transact`. Parameters bind by JSON kind (string, integer,
  // float, null); each row is an object keyed by column name with integer, float, text or null.
  std::vector<Json> query(const std::string& sql, const std::vector<Json>& params = {});
  // The first row, or null when there is none.
  Json queryOne(const std::string& sql, const std::vector<Json>& params = {});
  // Runs one statement; returns the number of changed rows.
  int64_t execute(const std::string& sql, const std::vector<Json>& params = {});
  int64_t lastInsertId() const;
  // Runs several statements without parameters (schema set-up).
  void executeScript(const std::string& sql);

  // The whole database as bytes, and the database put back to such bytes, so that many
  // requests can each start from one world. Afterwards the database lives in memory only.
  // REQUIRES: outside `transact`. Both throw StoreError on failure.
  std::string image();
  void restoreImage(const std::string& image);

 private:
  explicit SandboxStore(sqlite3* db);
  sqlite3* db_;
  std::mutex mutex_;
};

}  // namespace qmv::sandbox
