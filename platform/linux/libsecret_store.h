#pragma once
// The keyring port on the desktop's Secret Service (GNOME Keyring, KeePassXC, KWallet)
// through libsecret. Items carry the schema "org.qmv.Client.Secret" with the home
// directory and the id as attributes, so that two homes never see each other's secrets.
//
// A session without a Secret Service (no session bus, or no service on it), one that
// fails a call (a locked keyring whose prompt cannot be shown) or one that does not
// answer within the timeout is unavailable, and the store does not ask it again for the
// rest of the run: its callers fall back at once. Calls block the calling thread for at
// most the timeout (and while another thread's call runs); none runs the thread's own
// main loop meanwhile. A store is used by one thread at a time.
#include <chrono>
#include <string>

#include "platform/secret_store.h"

namespace qmv {

class LibsecretStore : public SecretStore {
 public:
  static constexpr std::chrono::milliseconds kTimeout{5000};

  explicit LibsecretStore(std::string home, std::chrono::milliseconds timeout = kTimeout);
  ~LibsecretStore() override;
  LibsecretStore(const LibsecretStore&) = delete;
  LibsecretStore& operator=(const LibsecretStore&) = delete;

  Lookup lookup(const std::string& id) override;
  bool store(const std::string& id, const std::string& label, const std::string& secret) override;
  bool remove(const std::string& id) override;
  std::optional<std::vector<Kept>> kept() override;

  // Why the keyring was given up on in this run; "" while it answers.
  const std::string& failure() const { return failure_; }

 private:
  struct Call;
  // Runs one libsecret operation on the store's own main context until it completes or
  // the timeout cancels it. False (and the keyring given up on) when it failed.
  bool run(Call& call);

  struct Context;

  std::string home_;
  std::chrono::milliseconds timeout_;
  std::string failure_;
};

}  // namespace qmv
