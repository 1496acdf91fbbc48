#pragma once
// The settings store of the Linux client: one SQLite file (<home>/settings.db) holding
// one row per key, with the value's kind (text, bool, array, binary, other JSON). Every
// write (one key, or a group of keys written together) is its own committed transaction
// in WAL mode with synchronous=FULL, so a process killed at any moment loses at most the
// write in progress, and never half of a group. The file and its journals are readable
// by their owner only: they hold the session, and the password where no keyring keeps
// it; a settings file or journal that is a symbolic link, a FIFO or another user's is
// refused (open fails naming it) and nothing is written through it. A file that SQLite
// cannot read as a database is renamed aside (settings.db.corrupt-<time>) and a fresh
// store is started; it is never deleted or overwritten.
//
// Reads come from an in-memory copy loaded at open (updateObject alone reads the file,
// so that processes sharing the store do not undo each other's changes); the store is
// meant for the interface thread, and a mutex makes stray calls from other threads safe.
#include <filesystem>
#include <memory>
#include <mutex>
#include <string>

#include "core/common/result.h"
#include "platform/settings_store.h"

namespace qmv {

class SQLiteDatabase;

class SqliteSettingsStore : public SettingsStore {
 public:
  struct Opened {
    std::unique_ptr<SqliteSettingsStore> store;
    std::filesystem::path keptAside;  // set when a damaged file was moved aside
  };

  // Opens or creates the store at `file` (its directory is created when missing).
  static Result<Opened> open(const std::filesystem::path& file);
  // <home>/settings.db.
  static Result<Opened> openInHome(const std::filesystem::path& home) { return open(home / "settings.db"); }

  ~SqliteSettingsStore() override;
  SqliteSettingsStore(const SqliteSettingsStore&) = delete;
  SqliteSettingsStore& operator=(const SqliteSettingsStore&) = delete;

  Json objectForKey(const std::string& key) const override;
  // Each commits at once. A null value removes the key. A failed write keeps the new
  // values in memory for this run, makes the next synchronize() report false and is
  // remembered in lastWriteStatus().
  void setObject(const Json& value, const std::string& key) override;
  void removeObjectForKey(const std::string& key) override;
  Status setObjects(const Json& values) override;
  // Runs in one immediate (write-locked) transaction, waiting up to five seconds for
  // another process's write to end. `change` must not call the store.
  bool updateObject(const std::string& key, const Change& change) override;
  // Writes are already durable when they return; this checkpoints the journal and
  // reports whether every write since the last call reached the file.
  bool synchronize() override;

  Status lastWriteStatus() const override;

  const std::filesystem::path& path() const { return path_; }

  // A stored row's value from its kind and bytes, as open() reads it: a row of an unknown
  // kind or with undecodable content reads as absent (null).
  static Json decodeRow(const std::string& kind, const std::string& bytes);

 private:
  SqliteSettingsStore(std::unique_ptr<SQLiteDatabase> db, std::filesystem::path path, Json values);
  // REQUIRES: mutex_ held. Writes `values` inside the open transaction.
  Status writeRows(const Json& values);
  // REQUIRES: mutex_ held. Runs `body` in one immediate transaction, rolled back when it
  // fails; the failure is recorded and returned.
  Status inTransaction(const std::string& what, const std::function<Status()>& body);
  void recordFailure(const std::string& what, const Status& status);

  mutable std::mutex mutex_;
  std::unique_ptr<SQLiteDatabase> db_;
  std::filesystem::path path_;
  Json values_;
  bool writeFailed_ = false;
  Status lastWriteStatus_;
};

}  // namespace qmv
