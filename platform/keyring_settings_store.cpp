#include "platform/keyring_settings_store.h"

#include <algorithm>
#include <cstdio>
#include <random>

namespace qmv {
namespace {

constexpr const char* kReferenceKey = "keyring";
constexpr const char* kSecretKey = "secret";
constexpr const char* kForgetKey = "forget";

// Unguessable, so that no other program's item is taken for ours.
std::string newId() {
  std::random_device random;
  std::string id;
  char hex[9];
  for (int i = 0; i < 4; ++i) {
    std::snprintf(hex, sizeof hex, "%08x", static_cast<unsigned>(random()));
    id += hex;
  }
  return id;
}

Json reference(const std::string& id) { return Json{{kReferenceKey, id}}; }

// The secret a file value holds itself (plain, or waiting with ids to forget).
std::optional<std::string> heldSecret(const Json& stored) {
  if (stored.is_string()) return stored.get<std::string>();
  if (stored.is_object()) {
    const auto it = stored.find(kSecretKey);
    if (it != stored.end() && it->is_string()) return it->get<std::string>();
  }
  return std::nullopt;
}

// The keyring ids a file value makes obsolete once it is replaced.
std::vector<std::string> obsoleteIds(const Json& stored) {
  std::vector<std::string> ids;
  if (auto id = KeyringSettingsStore::referencedId(stored)) ids.push_back(*id);
  if (stored.is_object()) {
    const auto forget = stored.find(kForgetKey);
    if (forget != stored.end() && forget->is_array()) {
      for (const auto& id : *forget) {
        if (id.is_string()) ids.push_back(id.get<std::string>());
      }
    }
  }
  return ids;
}

}  // namespace

KeyringSettingsStore::KeyringSettingsStore(std::shared_ptr<SettingsStore> file, std::shared_ptr<SecretStore> keyring,
                                           std::vector<std::string> secretKeys, std::string labelPrefix)
    : file_(std::move(file)),
      keyring_(std::move(keyring)),
      secretKeys_(std::move(secretKeys)),
      labelPrefix_(std::move(labelPrefix)) {}

std::optional<std::string> KeyringSettingsStore::referencedId(const Json& stored) {
  if (!stored.is_object() || stored.size() != 1) return std::nullopt;
  const auto it = stored.find(kReferenceKey);
  if (it == stored.end() || !it->is_string()) return std::nullopt;
  return it->get<std::string>();
}

bool KeyringSettingsStore::isSecret(const std::string& key) const {
  return std::find(secretKeys_.begin(), secretKeys_.end(), key) != secretKeys_.end();
}

int KeyringSettingsStore::moveSecretsToKeyring() {
  int moved = 0;
  for (const auto& key : secretKeys_) {
    const Json held = file_->objectForKey(key);
    const auto secret = heldSecret(held);
    if (!secret) continue;
    const std::string id = newId();
    if (!keyring_->store(id, label(key), *secret)) continue;
    // Only the value read above is replaced: another run may have written since.
    bool replaced = false;
    const bool written = file_->updateObject(key, [&](Json current) {
      replaced = current == held;
      return replaced ? reference(id) : current;
    });
    if (written && replaced && file_->synchronize()) {
      ++moved;
      for (const auto& old : obsoleteIds(held)) keyring_->remove(old);
    } else {
      keyring_->remove(id);
    }
  }
  if (moved > 0) forgetStraySecrets();
  return moved;
}

int KeyringSettingsStore::forgetStraySecrets(std::chrono::system_clock::time_point now) {
  std::vector<std::string> referenced;
  for (const auto& key : secretKeys_) {
    if (auto id = referencedId(file_->objectForKey(key))) referenced.push_back(*id);
  }
  // With no reference in the file there is nothing to tell a stray from a secret in use.
  if (referenced.empty()) return 0;
  const auto kept = keyring_->kept();
  if (!kept) return 0;
  int forgotten = 0;
  for (const auto& secret : *kept) {
    if (now - secret.created < kStrayAge) continue;
    if (std::find(referenced.begin(), referenced.end(), secret.id) != referenced.end()) continue;
    if (keyring_->remove(secret.id)) ++forgotten;
  }
  return forgotten;
}

Json KeyringSettingsStore::objectForKey(const std::string& key) const {
  Json stored = file_->objectForKey(key);
  if (!isSecret(key)) return stored;
  if (auto held = heldSecret(stored)) return Json(std::move(*held));
  const auto id = referencedId(stored);
  if (!id) return stored;
  auto found = keyring_->lookup(*id);
  return found.answer == SecretStore::Answer::found ? Json(std::move(found.secret)) : Json();
}

void KeyringSettingsStore::setObject(const Json& value, const std::string& key) {
  setObjects(Json{{key, value.is_discarded() ? Json() : value}});
}

void KeyringSettingsStore::removeObjectForKey(const std::string& key) { setObjects(Json{{key, nullptr}}); }

Status KeyringSettingsStore::setObjects(const Json& values) {
  if (!values.is_object()) return Status::invalidArgument("settings are written from an object");
  Json toFile = values;
  std::vector<std::string> replaced;
  bool referencesNew = false;
  for (const auto& key : secretKeys_) {
    const auto given = values.find(key);
    if (given == values.end()) continue;
    const std::vector<std::string> obsolete = obsoleteIds(file_->objectForKey(key));
    replaced.insert(replaced.end(), obsolete.begin(), obsolete.end());
    if (!given->is_string()) continue;
    const std::string id = newId();
    if (keyring_->store(id, label(key), given->get<std::string>())) {
      toFile[key] = reference(id);
      referencesNew = true;
    } else if (!obsolete.empty()) {
      // Kept in the file; the keyring forgets the replaced secrets once it answers.
      toFile[key] = Json{{kSecretKey, *given}, {kForgetKey, obsolete}};
    }
  }
  if (Status written = file_->setObjects(toFile); !written.ok()) return written;
  for (const auto& id : replaced) keyring_->remove(id);
  if (referencesNew) forgetStraySecrets();
  return {};
}

bool KeyringSettingsStore::updateObject(const std::string& key, const Change& change) {
  if (!isSecret(key)) return file_->updateObject(key, change);
  return setObjects(Json{{key, change(objectForKey(key))}}).ok();
}

}  // namespace qmv
