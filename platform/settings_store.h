#pragma once
// The persistent key-value settings store (the platform's user defaults). Values are
// JSON: text, boolean, arrays of text, and binary (JSON binary). Writers call
// synchronize() after writing so that the value survives a kill.
//
// Keys that belong together (a phone and its password, a city and its display name) are
// written with setObjects, so that a crash never leaves half of them; a value derived
// from its old self (a history list) is changed with updateObject, so that two processes
// sharing one store do not lose each other's change.
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "core/common/json.h"
#include "core/common/status.h"

namespace qmv {

class SettingsStore {
 public:
  // Gets the value stored now (null when absent) and returns the one to store (null
  // removes the key).
  using Change = std::function<Json(Json current)>;

  virtual ~SettingsStore() = default;

  // The stored value, or null when the key is absent.
  virtual Json objectForKey(const std::string& key) const = 0;
  virtual void setObject(const Json& value, const std::string& key) = 0;
  virtual void removeObjectForKey(const std::string& key) = 0;
  // Stores every member of the object `values` (key to value; a null value removes its
  // key) as one write: after a crash either all of them are stored or none. Fails when
  // they could not be written.
  virtual Status setObjects(const Json& values) = 0;
  // Replaces the value under `key` by change(current), where `current` is the value as
  // stored at this moment (by any process sharing the store, not as it was at open); no
  // other write can come between the read and the write. Returns false when the new value
  // could not be written.
  virtual bool updateObject(const std::string& key, const Change& change) = 0;
  // Makes every earlier write durable. Returns false when the store could not be written.
  virtual bool synchronize() = 0;
  // Why the last failed write of this run failed; OK while every write has landed.
  virtual Status lastWriteStatus() const = 0;

  // Typed readers: a value of another kind reads as absent.
  std::optional<std::string> stringForKey(const std::string& key) const;
  bool boolForKey(const std::string& key) const;  // absent or not boolean: false
  std::optional<std::vector<std::string>> stringArrayForKey(const std::string& key) const;
  std::optional<std::vector<std::uint8_t>> dataForKey(const std::string& key) const;

  void setString(const std::string& value, const std::string& key) { setObject(Json(value), key); }
  void setBool(bool value, const std::string& key) { setObject(Json(value), key); }
  void setStringArray(const std::vector<std::string>& value, const std::string& key);
  void setData(const std::vector<std::uint8_t>& value, const std::string& key);
};

// In-memory store for tests; counts synchronize() calls so a test can see a flush.
class MemorySettingsStore : public SettingsStore {
 public:
  Json objectForKey(const std::string& key) const override;
  void setObject(const Json& value, const std::string& key) override;
  void removeObjectForKey(const std::string& key) override;
  Status setObjects(const Json& values) override;
  bool updateObject(const std::string& key, const Change& change) override;
  bool synchronize() override;
  Status lastWriteStatus() const override { return {}; }

  int synchronizeCount() const { return synchronizeCount_; }

 private:
  Json values_ = Json::object();
  int synchronizeCount_ = 0;
};

}  // namespace qmv
