#pragma once
// A settings store that forwards every call to another one, so that a test can override
// a single call to inject a fault (a full disk, a write that never lands).
#include <memory>
#include <string>
#include <utility>

#include "platform/settings_store.h"

namespace qmv::testsupport {

class ForwardingSettingsStore : public SettingsStore {
 public:
  explicit ForwardingSettingsStore(std::shared_ptr<SettingsStore> target) : target_(std::move(target)) {}

  Json objectForKey(const std::string& key) const override { return target_->objectForKey(key); }
  void setObject(const Json& value, const std::string& key) override { target_->setObject(value, key); }
  void removeObjectForKey(const std::string& key) override { target_->removeObjectForKey(key); }
  Status setObjects(const Json& values) override { return target_->setObjects(values); }
  bool updateObject(const std::string& key, const Change& change) override {
    return target_->updateObject(key, change);
  }
  bool synchronize() override { return target_->synchronize(); }
  Status lastWriteStatus() const override { return target_->lastWriteStatus(); }

 protected:
  SettingsStore& target() { return *target_; }

 private:
  std::shared_ptr<SettingsStore> target_;
};

// A store on a full disk: reads work, every write is refused and changes nothing.
class FullDiskSettingsStore : public ForwardingSettingsStore {
 public:
  using ForwardingSettingsStore::ForwardingSettingsStore;
  static constexpr const char* kError = "database or disk is full";

  void setObject(const Json&, const std::string&) override { failed_ = true; }
  void removeObjectForKey(const std::string&) override { failed_ = true; }
  Status setObjects(const Json&) override {
    failed_ = true;
    return Status::ioError(kError);
  }
  bool updateObject(const std::string&, const Change&) override { return !(failed_ = true); }
  bool synchronize() override { return !failed_; }
  Status lastWriteStatus() const override { return failed_ ? Status::ioError(kError) : Status(); }

 private:
  bool failed_ = false;
};

}  // namespace qmv::testsupport
