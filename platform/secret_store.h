#pragma once
// The desktop's keyring: secrets kept outside the settings file, each under an id. A
// keyring may be missing (a headless session) or go away at any time; every call says
// so, and the caller falls back to the settings file (see KeyringSettingsStore).
#include <chrono>
#include <optional>
#include <string>
#include <vector>

namespace qmv {

class SecretStore {
 public:
  enum class Answer {
    found,
    absent,       // the keyring answered and holds nothing under the id
    unavailable,  // no keyring answered
  };
  struct Lookup {
    Answer answer = Answer::unavailable;
    std::string secret;  // when found
  };

  virtual ~SecretStore() = default;
  virtual Lookup lookup(const std::string& id) = 0;
  // Keeps `secret` under `id` (replacing one there), described to the member by
  // `label`. False when it was not kept.
  virtual bool store(const std::string& id, const std::string& label, const std::string& secret) = 0;
  // Forgets the secret under `id`; false when no keyring answered.
  virtual bool remove(const std::string& id) = 0;

  struct Kept {
    std::string id;
    std::chrono::system_clock::time_point created;
  };
  // Every secret kept here (ids and ages, not the secrets); null when no keyring answered.
  virtual std::optional<std::vector<Kept>> kept() = 0;
};

}  // namespace qmv
