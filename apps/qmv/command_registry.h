#pragma once
// The CLI's commands. Each feature file registers its commands with their options; the
// registry is rebuilt for every line of the shell, so registration must be repeatable.
#include <CLI/CLI.hpp>
#include <functional>
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

// Runs the pay-now screen that was pushed with `payload` (taps: the balance off with
// `noBalance`, then `channel` when not empty), prints what it shows and waits for the
// payment's end; 0 only when it was paid. Shared by every command that reaches that screen.
int runPayNowScreen(CliApp& app, const Json& payload, bool noBalance, const std::string& channel);

// Runs one command line; returns the exit status.
int runCli(int argc, char** argv, std::ostream& out, std::istream& in);

}  // namespace qmv::cli
