#pragma once
// The CLI's commands. Each feature file registers its commands with their options; the
// registry is rebuilt for every line of the shell, so registration must be repeatable.
#include <CLI/CLI.hpp>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "core/common/json.h"

namespace qmv::cli {

class CliApp;

// Exit status of a flow: 0 when it ended as it should, 1 on a validation or server
// failure. Usage errors (2) are the parser's.
constexpr int kExitOk = 0;
constexpr int kExitFailure = 1;
constexpr int kExitUsage = 2;

using CommandRun = std::function<int(CliApp& app)>;

class CommandRegistry {
 public:
  explicit CommandRegistry(CLI::App& app, bool inShell) : app_(app), inShell_(inShell) {}

  // A command that runs after start-up and the automatic login.
  CLI::App* add(const std::string& name, const std::string& description, CommandRun run);
  // A command that runs without starting the application (e.g. the standalone sandbox).
  CLI::App* addWithoutStart(const std::string& name, const std::string& description, CommandRun run);

  bool inShell() const { return inShell_; }

  struct Entry {
    CLI::App* command;
    CommandRun run;
    bool needsStart;
  };
  // The command the parsed line chose, or nullptr.
  const Entry* chosen() const;

 private:
  CLI::App& app_;
  bool inShell_;
  std::vector<Entry> entries_;
};

// Every feature's registration, in help order.
void registerAllCommands(CommandRegistry& registry);
void registerShellCommands(CommandRegistry& registry);
void registerAccountCommands(CommandRegistry& registry);
void registerDiscoveryCommands(CommandRegistry& registry);
void registerOrderCommands(CommandRegistry& registry);
void registerWalletCommands(CommandRegistry& registry);
void registerCheckoutCommands(CommandRegistry& registry);
void registerReferralCommands(CommandRegistry& registry);
void registerWheelCommands(CommandRegistry& registry);
void registerPageCommands(CommandRegistry& registry);
void registerWalletCentreCommands(CommandRegistry& registry);
void registerReviewCommands(CommandRegistry& registry);
void registerMemberCentreCommands(CommandRegistry& registry);
void registerAccountCentreCommands(CommandRegistry& registry);
void registerProfileCommands(CommandRegistry& registry);
void registerPortraitCommands(CommandRegistry& registry);
void registerPictureCommands(CommandRegistry& registry);

// Runs the pay-now screen that was pushed with `payload` (taps: the balance off with
// `noBalance`, then `channel` when not empty), prints what it shows and waits for the
// payment's end; 0 only when it was paid. Shared by every command that reaches that screen.
int runPayNowScreen(CliApp& app, const Json& payload, bool noBalance, const std::string& channel);
// The options of those taps, --no-balance and --channel, for a command that reaches the screen.
void addPayNowOptions(CLI::App* command, bool& noBalance, std::string& channel);

// How to answer an alert of these buttons where the command runs: "--answer TITLE" on the
// command line, "answer N" in the shell.
std::string alertAnswerHint(CliApp& app, const std::vector<std::string>& buttons);
// Runs `ask`, which raises an alert, and waits for that alert's answer: one given with
// --answer is delivered; in the shell it is read from the next lines (a button's number or
// title, or "answer N") while the screen that asked still lives, whatever older alerts
// wait. False, after saying how to answer it, when it is left waiting.
bool askAndAwaitAnswer(CliApp& app, const std::function<void()>& ask);

// Signs in on the login screen already presented: its fields hold the stored phone and
// password, replaced by `phone` and `password` when given. Prints the member on success.
// Exit status of the flow.
int signInOnLoginScreen(CliApp& app, const std::optional<std::string>& phone,
                        const std::optional<std::string>& password);

// Runs the chosen command's flow and returns its exit status, made 1 when the system
// reported a fault meanwhile (logWarning) that the flow itself did not count. When the
// member is signed out by an expired session, or the flow failed without a member because
// the automatic login had failed, says so on stderr.
int runFlow(CliApp& app, const CommandRegistry::Entry& entry);

// Runs one command line; returns the exit status.
int runCli(int argc, char** argv, std::ostream& out, std::istream& in);

}  // namespace qmv::cli
