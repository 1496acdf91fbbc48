#pragma once
// One start of the application from the command line: the shared launch (home,
// configuration, server or embedded sandbox, Linux ports), the CLI's own drawing ports,
// start-up through the application delegate and the automatic login. Commands
// then run their flow on it, waiting on the main loop for the flow to end.
#include <chrono>
#include <deque>
#include <filesystem>
#include <functional>
#include <istream>
#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include "apps/qmv/cli_output.h"
#include "core/common/status.h"
#include "platform/alerts.h"
#include "platform/env.h"
#include "shell/app_config.h"

namespace qmv {
class AppLaunch;
class ImageLoader;
class AppDelegate;
class MainLoop;
class SettingsStore;
class StreamAlerts;
namespace sandbox {
class SandboxServer;
}
}  // namespace qmv

namespace qmv::cli {

struct GlobalOptions {
  std::string server;  // --server URL
  std::string home;    // --home DIR
  std::string at;      // --at LAT,LON (WGS-84)
  bool json = false;   // --json
  // --answer: answers for alerts, in order; a button's title or its 1-based number.
  std::vector<std::string> answers;
  // --pay-outcome: what the sandbox's payment applications do with a payment.
  std::string payOutcome = "success";
};

class CliApp {
 public:
  static constexpr std::chrono::milliseconds kFlowTimeout{25000};

  // Test seam: when set, every start hands its settings store through it, so that a test
  // can put a faulty store (a full disk) in front of the real one.
  using SettingsWrapper = std::function<std::shared_ptr<SettingsStore>(std::shared_ptr<SettingsStore>)>;
  static SettingsWrapper& settingsWrapperForTesting();

  CliApp(GlobalOptions options, std::ostream& out, std::istream& in);
  ~CliApp();
  CliApp(const CliApp&) = delete;
  CliApp& operator=(const CliApp&) = delete;

  // Start-up and automatic login. Returns an error text (empty on success). A home
  // directory created here is the member's alone (mode 0700), as is the default home.
  Status boot();

  // Runs the main loop until `done` or the timeout; false on timeout.
  bool waitUntil(const std::function<bool()>& done, std::chrono::milliseconds timeout = kFlowTimeout);
  // Runs the main loop for `duration` (timers, deliveries).
  void runFor(std::chrono::milliseconds duration);

  // The output of the command being run.
  CliOutput& output() { return *output_; }
  // Starts a fresh output for the next command (the shell runs many).
  void beginCommand(bool json);
  // Prints the --json document of the command that ends.
  // Flushes the command's output; with QMV_LOOP_STALL set, also reports on stderr the
  // longest callback the loop ran since the previous command (start-up included).
  void endCommand();

  // A line typed by the user, after printing `prompt` (nullopt at end of input). With
  // `remember`, the shell's editor keeps the line in its history.
  std::optional<std::string> readLine(const std::string& prompt, bool remember = false);
  bool interactive() const { return interactive_; }
  // Whether commands come from the shell (whose alerts are answered with "answer N").
  bool inShell() const { return lineReader_ != nullptr; }

  // Why the automatic login of boot() did not sign in the stored account; empty when it
  // did, or when no account is stored.
  const std::string& autoLoginFailure() const { return autoLoginFailure_; }
  // Says once, on stderr, that no member is signed in because the stored account could not
  // be, and why; false (and silent) when there is nothing to say.
  bool tellAutoLoginFailure();

  const GlobalOptions& options() const { return options_; }
  // REQUIRE boot() to have run.
  const AppConfig& config() const;
  const std::filesystem::path& home() const;
  AppDelegate& appDelegate() { return *appDelegate_; }
  sandbox::SandboxServer* sandbox();
  std::shared_ptr<MainLoop> loop() const { return env_.mainLoop; }
  Env& env() { return env_; }
  // The pictures of this start, made on first use: in the shell a picture asked for again
  // comes from memory. REQUIRES boot() to have run.
  ImageLoader& pictures();
  // Answers the oldest alert still waiting (the shell's "answer" command).
  bool answerAlert(const std::string& answer);
  // Alerts waiting for an answer nobody gave (a flow waiting on one will not go on).
  std::size_t pendingAlerts() const;

  // Runs the shell's line reader: lines are read on a thread and handed out here while
  // the main loop keeps running (timers and countdowns live on between commands). On a
  // terminal the lines are edited with history (kept in <home>/shell_history) and
  // completion of `commandWords`.
  void startLineReader(std::vector<std::string> commandWords);

 private:
  // The answer to an alert from --answer, or asked on the terminal; nullopt leaves it waiting.
  std::optional<AlertAnswer> answerFor(const AlertSpec& alert);
  std::optional<int> answerIndex(const std::string& answer, const std::vector<std::string>& buttons) const;
  Status buildEnv();

  GlobalOptions options_;
  std::ostream& out_;
  std::istream& in_;
  bool interactive_ = false;
  std::unique_ptr<CliOutput> output_;
  std::unique_ptr<AppLaunch> launch_;
  Env env_;
  std::unique_ptr<ImageLoader> pictures_;
  std::unique_ptr<ScopedEnv> installed_;
  std::unique_ptr<AppDelegate> appDelegate_;
  std::shared_ptr<StreamAlerts> alerts_;
  std::deque<std::string> answers_;
  std::string autoLoginFailure_;
  bool autoLoginFailureTold_ = false;

  struct LineReader;
  std::shared_ptr<LineReader> lineReader_;
  std::unique_ptr<std::ostream> messageStream_;
};

}  // namespace qmv::cli
