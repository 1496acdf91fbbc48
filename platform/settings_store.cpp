#include "platform/settings_store.h"

namespace qmv {

std::optional<std::string> SettingsStore::stringForKey(const std::string& key) const {
  const Json v = objectForKey(key);
  if (!v.is_string()) return std::nullopt;
  return v.get<std::string>();
}

bool SettingsStore::boolForKey(const std::string& key) const {
  const Json v = objectForKey(key);
  return v.is_boolean() && v.get<bool>();
}

std::optional<std::vector<std::string>> SettingsStore::stringArrayForKey(const std::string& key) const {
  const Json v = objectForKey(key);
  if (!v.is_array()) return std::nullopt;
  std::vector<std::string> out;
  for (const auto& item : v) {
    if (item.is_string()) out.push_back(item.get<std::string>());
  }
  return out;
}

std::optional<std::vector<std::uint8_t>> SettingsStore::dataForKey(const std::string& key) const {
  const Json v = objectForKey(key);
  if (!v.is_binary()) return std::nullopt;
  const auto& bin = v.get_binary();
  return std::vector<std::uint8_t>(bin.begin(), bin.end());
}

void SettingsStore::setStringArray(const std::vector<std::string>& value, const std::string& key) {
  setObject(Json(value), key);
}

void SettingsStore::setData(const std::vector<std::uint8_t>& value, const std::string& key) {
  setObject(Json::binary(value), key);
}

Json MemorySettingsStore::objectForKey(const std::string& key) const {
  const auto it = values_.find(key);
  return it == values_.end() ? Json() : *it;
}

void MemorySettingsStore::setObject(const Json& value, const std::string& key) { values_[key] = value; }

void MemorySettingsStore::removeObjectForKey(const std::string& key) { values_.erase(key); }

Status MemorySettingsStore::setObjects(const Json& values) {
  if (!values.is_object()) return Status::invalidArgument("settings are written from an object");
  for (const auto& [key, value] : values.items()) {
    if (value.is_null()) {
      values_.erase(key);
    } else {
      values_[key] = value;
    }
  }
  return {};
}

bool MemorySettingsStore::updateObject(const std::string& key, const Change& change) {
  return setObjects(Json{{key, change(objectForKey(key))}}).ok();
}

bool MemorySettingsStore::synchronize() {
  ++synchronizeCount_;
  return true;
}

}  // namespace qmv
