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
    return true;
  }
  bool remove(const std::string& id) override {
    if (!available) return false;
    secrets.erase(id);
    return true;
  }

  bool available = true;
  bool refuseStores = false;  // answers, but keeps nothing (a locked keyring)
  std::map<std::string, std::string> secrets;
};

}  // namespace qmv::testsupport
