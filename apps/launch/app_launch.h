#pragma once
// What every front end does before the application starts: the home directory, the
// configuration, the server (given, configured, or the embedded sandbox started on a
// free loopback port with its data in the home), and the Linux ports that do not depend
// on how the front end draws. The front end adds its own drawing ports (overlay,
// navigator, alerts, URL opener, window), installs the Env and starts the delegate.
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "core/common/coordinate.h"
#include "core/common/status.h"
#include "platform/env.h"
#include "shell/app_config.h"

namespace qmv {

class SecretStore;

namespace sandbox {
class SandboxServer;
}

struct LaunchOptions {
  std::string home;    // empty: $XDG_DATA_HOME/qmv
  std::string server;  // empty: the configured server, else the embedded sandbox
  std::string at;      // "LAT,LON" (WGS-84); empty: no fixed position
  // What the embedded sandbox's payment applications do with a payment: "success",
  // "cancel" or "fail".
  std::string payOutcome = "success";
  // The system handing an inbound URL to the application (the sandbox's payment
  // applications return through it). Set by the front end before buildEnv.
  std::function<void(const std::string& url, const std::string& sourceApplication)> openURL;
};

class AppLaunch {
 public:
  explicit AppLaunch(LaunchOptions options);
  // Stops the embedded sandbox. REQUIRES: the Env built here is no longer installed.
  ~AppLaunch();
  AppLaunch(const AppLaunch&) = delete;
  AppLaunch& operator=(const AppLaunch&) = delete;

  // Creates the home, refuses it when it or one of the entries a run uses is not the
  // member's own (another user's, writable by others, a symbolic link, a FIFO; nothing
  // is written then), reads its qmv.conf (warnings go to stderr), and starts the
  // embedded sandbox when no server is given or configured. A failure's message is
  // what the front ends print after their name.
  Status prepare();

  // Test seam: when set, every launch keeps the password in this keyring instead of the
  // desktop's Secret Service.
  static std::shared_ptr<SecretStore>& keyringForTesting();

  // Fills the shared ports of `env` around `loop` (HTTP transfers are watched on it):
  // cookies, HTTP, settings (the password in the desktop's keyring when one answers,
  // else in the settings file), files, clock, notifications, reachability, position (the
  // --at one, else none), geocoder, text measurer, object storage, the vendor SDKs and
  // the payment channels (the sandbox's payment applications when the sandbox is
  // embedded, else ones that wait for the vendors' applications to return). REQUIRES: prepare() succeeded.
  Status buildEnv(const std::shared_ptr<MainLoop>& loop, Env& env);

  // The parsed --at position; nullopt when none was given (an unreadable one fails
  // buildEnv).
  const std::optional<Coordinate>& fixedPosition() const { return at_; }
  const AppConfig& config() const { return config_; }
  const std::filesystem::path& home() const { return home_; }
  sandbox::SandboxServer* sandbox() { return sandbox_.get(); }

 private:
  std::shared_ptr<PaymentChannels> paymentChannels(const std::shared_ptr<HttpTransport>& http) const;

  LaunchOptions options_;
  std::filesystem::path home_;
  AppConfig config_;
  std::optional<Coordinate> at_;
  std::unique_ptr<sandbox::SandboxServer> sandbox_;
};

}  // namespace qmv
