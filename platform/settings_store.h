#pragma once
// The persistent key-value settings store (the platform's user defaults). Values are
// JSON: text, boolean, arrays of text, and binary (JSON binary). Writers call
// synchronize() after writing so that the value survives a kill.
#include <optional>
#include <string>
#include <vector>

#include "core/common/json.h"

namespace qmv {

class SettingsStore {
 public:
  virtual ~SettingsStore() = default;

  // The stored value, or null when the key is absent.
  virtual Json objectForKey(const std::string& key) const = 0;
  virtual void setObject(const Json& value, const std::string& key) = 0;
  virtual void removeObjectForKey(const std::string& key) = 0;
  // Makes every earlier write durable. Returns false when the store could not be written.
  virtual bool synchronize() = 0;

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
  bool synchronize() override;

  int synchronizeCount() const { return synchronizeCount_; }

 private:
  Json values_ = Json::object();
  int synchronizeCount_ = 0;
};

}  // namespace qmv
