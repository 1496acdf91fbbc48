#pragma once
// A keyring for tests: a map that can be switched off, as a keyring that stops answering
// is (switched off, every call reports it unavailable and changes nothing).
#include <map>
#include <string>

#include "platform/secret_store.h"

namespace qmv::testsupport {

class FakeSecretStore : public SecretStore {
 public:
  Lookup lookup(const std::string& id) override {
    if (!available) return {};
    const auto it = secrets.find(id);
    return it == secrets.end() ? Lookup{Answer::absent, {}} : Lookup{Answer::found, it->second};
  }
  bool store(const std::string& id, const std::string&, const std::string& secret) override {
    if (!available || refuseStores) return false;
    secrets[id] = secret;
    created[id] = now;
    return true;
  }
  bool remove(const std::string& id) override {
    if (!available) return false;
    secrets.erase(id);
    created.erase(id);
    return true;
  }
  std::optional<std::vector<Kept>> kept() override {
    if (!available) return std::nullopt;
    std::vector<Kept> all;
    for (const auto& [id, secret] : secrets) all.push_back({id, created[id]});
    return all;
  }

  bool available = true;
  bool refuseStores = false;  // answers, but keeps nothing (a locked keyring)
  std::map<std::string, std::string> secrets;
  std::map<std::string, std::chrono::system_clock::time_point> created;
  std::chrono::system_clock::time_point now = std::chrono::system_clock::now();  // stamps stores
};

}  // namespace qmv::testsupport
