#pragma once
// The settings store of a desktop with a keyring: the keys named secret (the typed
// password) live in the keyring whenever one answers, and in the settings file (readable
// by its owner only) where none does, as in a headless session. Readers see the same
// values as with the file alone.
//
// In the file, a secret kept in the keyring is replaced by a reference to it,
// {"keyring": ID}, with a fresh ID for every write. So a write stays one write of the
// file: a phone and password written together land together, wherever the password
// goes, and a run killed between the keyring and the file leaves the previous pair in
// force. A secret the file itself holds is always the newest one (it is only written
// there while the keyring is away), so when the keyring answers again it moves in
// (moveSecretsToKeyring); when the keyring goes away, the next write falls back to the
// file, and a reference it can no longer follow reads as absent. A secret written to the
// file over one the keyring held is kept as {"secret": TEXT, "forget": [ID...]}, so that
// the keyring forgets the old one when it is back.
#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/secret_store.h"
#include "platform/settings_store.h"

namespace qmv {

class KeyringSettingsStore : public SettingsStore {
 public:
  // `labelPrefix` followed by the key describes each secret in the keyring's own tools.
  KeyringSettingsStore(std::shared_ptr<SettingsStore> file, std::shared_ptr<SecretStore> keyring,
                       std::vector<std::string> secretKeys, std::string labelPrefix);

  // Moves every secret the file holds into the keyring when it answers, leaving a
  // reference in the file. Returns how many moved. Meant for the start of a run: it asks
  // the keyring only when the file holds a secret itself.
  int moveSecretsToKeyring();

  // A run killed between keeping a secret and writing the file leaves a secret that
  // nothing refers to. Forgets those of this home older than kStrayAge (younger ones may
  // be another run's write in progress), once the file refers to the keyring at all.
  // Returns how many went. Runs after every write that lands a new reference rather than
  // at every start: listing the keyring is a round trip to it, and the start of the
  // graphical client should not wait on one.
  static constexpr std::chrono::hours kStrayAge{1};
  int forgetStraySecrets(std::chrono::system_clock::time_point now = std::chrono::system_clock::now());

  Json objectForKey(const std::string& key) const override;
  void setObject(const Json& value, const std::string& key) override;
  void removeObjectForKey(const std::string& key) override;
  // Once the file holds the new values, the keyring forgets the secrets they replaced,
  // and the strays of earlier runs.
  // When the file write fails, both stay: this run still reads what it wrote.
  Status setObjects(const Json& values) override;
  // For a secret key, the change sees the secret and its result is written as by
  // setObjects; unlike other keys, another process's write may come in between.
  bool updateObject(const std::string& key, const Change& change) override;
  bool synchronize() override { return file_->synchronize(); }
  Status lastWriteStatus() const override { return file_->lastWriteStatus(); }

  // The ID a file value refers to, when it is a reference.
  static std::optional<std::string> referencedId(const Json& stored);

 private:
  bool isSecret(const std::string& key) const;
  std::string label(const std::string& key) const { return labelPrefix_ + key; }

  std::shared_ptr<SettingsStore> file_;
  std::shared_ptr<SecretStore> keyring_;
  std::vector<std::string> secretKeys_;
  std::string labelPrefix_;
};

}  // namespace qmv
