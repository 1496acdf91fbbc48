#pragma once
// One start of the application from the command line: the home directory, the
// configuration, the server (given, configured, or the embedded sandbox), the Linux
// ports, start-up through the application delegate and the automatic login. Commands
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
#include "platform/env.h"
#include "shell/app_config.h"

namespace qmv {
class AppDelegate;
class AutoLogin;
class MainLoop;
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

  CliApp(GlobalOptions options, std::ostream& out, std::istream& in);
  ~CliApp();
  CliApp(const CliApp&) = delete;
  CliApp& operator=(const CliApp&) = delete;

  // Start-up and automatic login. Returns an error text (empty on success).
  std::string boot();

  // Runs the main loop until `done` or the timeout; false on timeout.
  bool waitUntil(const std::function<bool()>& done, std::chrono::milliseconds timeout = kFlowTimeout);
  // Runs the main loop for `duration` (timers, deliveries).
  void runFor(std::chrono::milliseconds duration);

  // The output of the command being run.
  CliOutput& output() { return *output_; }
  // Starts a fresh output for the next command (the shell runs many).
  void beginCommand(bool json);
  // Prints the --json document of the command that ends.
  void endCommand() { output_->finish(); }

  // A line typed by the user, after printing `prompt` (nullopt at end of input).
  std::optional<std::string> readLine(const std::string& prompt);
  bool interactive() const { return interactive_; }

  const GlobalOptions& options() const { return options_; }
  const AppConfig& config() const { return config_; }
  const std::filesystem::path& home() const { return home_; }
  AppDelegate& appDelegate() { return *appDelegate_; }
  sandbox::SandboxServer* sandbox() { return sandbox_.get(); }
  std::shared_ptr<MainLoop> loop() const { return env_.mainLoop; }
  Env& env() { return env_; }
  // Answers the oldest alert still waiting (the shell's "answer" command).
  bool answerAlert(const std::string& answer);

  // Runs the shell's line reader: lines are read on a thread and handed out here while
  // the main loop keeps running (timers and countdowns live on between commands).
  void startLineReader();

 private:
  std::optional<int> answerIndex(const std::string& answer, const std::vector<std::string>& buttons) const;
  std::string buildEnv();
  // The payment libraries: the sandbox's payment applications when the sandbox is
  // embedded, else the logging adapters.
  std::shared_ptr<PaymentChannels> paymentChannels();

  GlobalOptions options_;
  std::ostream& out_;
  std::istream& in_;
  bool interactive_ = false;
  std::unique_ptr<CliOutput> output_;
  std::filesystem::path home_;
  AppConfig config_;
  Env env_;
  std::unique_ptr<ScopedEnv> installed_;
  std::unique_ptr<sandbox::SandboxServer> sandbox_;
  std::unique_ptr<AppDelegate> appDelegate_;
  std::unique_ptr<AutoLogin> autoLogin_;
  std::shared_ptr<StreamAlerts> alerts_;
  std::deque<std::string> answers_;

  struct LineReader;
  std::shared_ptr<LineReader> lineReader_;
  std::unique_ptr<std::ostream> messageStream_;
};

}  // namespace qmv::cli
