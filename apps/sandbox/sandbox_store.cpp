#include "apps/sandbox/sandbox_store.h"

#include <string_view>

namespace qmv::sandbox {
namespace {

DBValue boundValue(const Json& value) {
  if (value.is_string()) return value.get<std::string>();
  if (value.is_number_integer()) return value.get<int64_t>();
  if (value.is_number()) return value.get<double>();
  if (value.is_boolean()) return int64_t{value.get<bool>() ? 1 : 0};
  return std::monostate();
}

std::vector<DBValue> boundValues(const std::vector<Json>& params) {
  std::vector<DBValue> values;
  values.reserve(params.size());
  for (const Json& param : params) values.push_back(boundValue(param));
  return values;
}

// Handlers read NULL as null and every text (or blob) column as a string.
constexpr RowStyle kRowStyle{true, true};

// The wrapper's opening failure, worded as the sandbox has always worded it.
std::string openFailure(const std::filesystem::path& file, const Status& status) {
  constexpr std::string_view kPrefix = "The database could not be opened: ";
  std::string_view message = status.message();
  if (message.substr(0, kPrefix.size()) == kPrefix) message.remove_prefix(kPrefix.size());
  return "cannot open " + file.string() + ": " + std::string(message);
}

}  // namespace

Result<std::unique_ptr<SandboxStore>> SandboxStore::open(const std::filesystem::path& file) {
  SQLiteDatabase db = file == ":memory:" ? SQLiteDatabase::inMemory()
                                         : SQLiteDatabase::atPath(file, SQLiteDatabase::Mode::kReadWrite,
                                                                  SQLiteDatabase::Links::kFollow,
                                                                  SQLiteDatabase::Directories::kMustExist);
  if (const Status opened = db.openDatabase(); !opened.ok()) {
    return Status::ioError(openFailure(file, opened), opened.libraryCode());
  }
  if (const Status set = db.executeScript("PRAGMA journal_mode=WAL; PRAGMA foreign_keys=ON; PRAGMA synchronous=NORMAL;");
      !set.ok()) {
    return Status::ioError("cannot set up " + file.string() + ": " + set.message(), set.libraryCode());
  }
  return std::unique_ptr<SandboxStore>(new SandboxStore(std::move(db)));
}

SandboxStore::SandboxStore(SQLiteDatabase db) : db_(std::move(db)) {}

const Status& SandboxStore::note(const Status& status) {
  if (inTransaction_ && failure_.ok() && !status.ok()) failure_ = status;
  return status;
}

Result<bool> SandboxStore::transact(bool writes, const std::function<bool()>& work) {
  std::lock_guard lock(mutex_);
  bool ran = false;
  bool committed = false;
  inTransaction_ = true;
  failure_ = Status();
  struct Leave {
    SandboxStore& store;
    ~Leave() { store.inTransaction_ = false; }
  } leave{*this};
  const Status status = db_.transaction(
      writes ? SQLiteDatabase::TransactionKind::kImmediate : SQLiteDatabase::TransactionKind::kDeferred, [&] {
        ran = true;
        committed = work();
        if (!failure_.ok()) return failure_;
        // Any failure makes the wrapper roll back; this one is the request's own choice.
        return committed ? Status() : Status::unavailable("rolled back by the request");
      });
  if (!failure_.ok()) return failure_;
  if (!ran) return status;  // BEGIN failed
  if (!committed) return false;
  if (!status.ok()) return status;  // COMMIT failed
  return true;
}

std::vector<Json> SandboxStore::query(const std::string& sql, const std::vector<Json>& params) {
  if (!usable()) return {};
  Result<Json> rows = db_.getRowsForQuery(sql, boundValues(params), kRowStyle);
  if (!note(rows.status()).ok()) return {};
  std::vector<Json> out;
  out.reserve(rows->size());
  for (Json& row : *rows) out.push_back(std::move(row));
  return out;
}

Json SandboxStore::queryOne(const std::string& sql, const std::vector<Json>& params) {
  auto rows = query(sql, params);
  return rows.empty() ? Json() : std::move(rows.front());
}

int64_t SandboxStore::execute(const std::string& sql, const std::vector<Json>& params) {
  if (!usable()) return 0;
  if (!note(db_.doUpdateQuery(sql, boundValues(params))).ok()) return 0;
  return db_.changes();
}

int64_t SandboxStore::lastInsertId() const { return db_.getLastInsertRowID(); }

Status SandboxStore::executeScript(const std::string& sql) {
  if (!usable()) return failure_;
  return note(db_.executeScript(sql));
}

Status SandboxStore::remember() {
  std::lock_guard lock(mutex_);
  Result<std::string> image = db_.serialize();
  if (!image.ok()) return image.status();
  remembered_ = std::move(image).value();
  returnedAt_.reset();
  return {};
}

Status SandboxStore::returnToRemembered() {
  std::lock_guard lock(mutex_);
  if (remembered_.empty()) return Status::notFound("nothing remembered");
  // Most requests only read; putting the image back copies it, reloads its schema and drops
  // every kept statement, which costs more than such a request itself.
  if (returnedAt_ && *returnedAt_ == db_.dataVersion()) return {};
  returnedAt_.reset();
  if (Status restored = db_.deserialize(remembered_); !restored.ok()) return restored;
  returnedAt_ = db_.dataVersion();
  return {};
}

}  // namespace qmv::sandbox
