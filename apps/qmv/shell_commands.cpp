// Commands of the application shell: inbound URLs, the server switch, the standalone
// sandbox and the interactive shell.
#include <algorithm>
#include <csignal>
#include <iostream>
#include <memory>
#include <sstream>

#include "apps/qmv/cli_app.h"
#include "apps/qmv/command_line_split.h"
#include "apps/qmv/command_registry.h"
#include "apps/sandbox/sandbox_server.h"
#include "core/request/network_config.h"
#include "platform/file_locations.h"
#include "shell/app_delegate.h"
#include "shell/server_switch.h"

namespace qmv::cli {
namespace {

int runOpen(CliApp& app, const std::string& url, const std::string& source) {
  const bool handled = app.appDelegate().openURL(url, source);
  // Payment results are broadcast a moment later; let them arrive before the run ends.
  if (handled) app.runFor(AppDelegate::kPaySuccessDelay + std::chrono::milliseconds(100));
  app.output().line(handled ? "handled" : "not handled: no handler for this URL");
  app.output().data("handled", handled);
  return kExitOk;
}

int runSandbox(CliApp& app, int port) {
  const std::filesystem::path home =
      app.options().home.empty() ? HomeFileLocations::defaultHome() : std::filesystem::path(app.options().home);
  // Wait for a termination signal on this thread instead of a handler.
  sigset_t signals;
  sigemptyset(&signals);
  sigaddset(&signals, SIGINT);
  sigaddset(&signals, SIGTERM);
  pthread_sigmask(SIG_BLOCK, &signals, nullptr);
  sandbox::SandboxServer server(sandbox::SandboxOptions{home / "sandbox", port});
  if (const Status started = server.start(); !started.ok()) {
    std::cerr << "qmv: cannot start the sandbox: " << started.message() << '\n';
    return kExitFailure;
  }
  app.output().line("qmv-sandbox serving " + server.baseUrl());
  app.output().line(std::string("demo SMS code: ") + sandbox::kDemoSmsCode);
  app.output().data("baseUrl", server.baseUrl());
  app.endCommand();
  std::cout.flush();
  int received = 0;
  sigwait(&signals, &received);
  server.stop();
  return kExitOk;
}

// The shell's own words, beside the commands.
constexpr const char* kShellWords[] = {"help", "answer", "exit", "quit"};

// Every command the shell can run, registered on `parser` as the shell registers them.
std::vector<CLI::App*> shellCommands(CLI::App& parser) {
  return parser.get_subcommands([](CLI::App*) { return true; });
}

std::vector<std::string> completionWords() {
  CLI::App parser;
  CommandRegistry registry(parser, true);
  registerAllCommands(registry);
  std::vector<std::string> words(std::begin(kShellWords), std::end(kShellWords));
  for (CLI::App* command : shellCommands(parser)) words.push_back(command->get_name());
  return words;
}

void printHelp(CliApp& app, CLI::App& parser, const std::vector<std::string>& args) {
  CliOutput& out = app.output();
  if (args.size() > 1) {
    for (CLI::App* command : shellCommands(parser)) {
      if (command->get_name() == args[1]) {
        std::istringstream help(command->help());
        for (std::string line; std::getline(help, line);) out.line(line);
        return;
      }
    }
    std::cerr << "qmv: unknown command \"" << args[1] << "\"\n";
    return;
  }
  out.line("commands (\"help COMMAND\" or \"COMMAND --help\" tells its options):");
  for (CLI::App* command : shellCommands(parser)) {
    std::string name = command->get_name();
    name.resize(std::max<std::size_t>(name.size(), 12), ' ');
    out.line("  " + name + command->get_description());
  }
  out.line("  answer N    answer the alert that waits (its button's number, or the text of its field)");
  out.line("  exit        leave the shell");
}

int runShell(CliApp& app) {
  app.startLineReader(completionWords());
  app.output().line("qmv shell: type a command (\"help\" lists them), \"exit\" to leave");
  while (auto line = app.readLine("qmv> ", /*remember=*/true)) {
    auto args = splitCommandLine(*line);
    if (!args) {
      std::cerr << "qmv: unterminated quote\n";
      continue;
    }
    if (args->empty()) continue;
    const std::string& word = (*args)[0];
    if (word == "exit" || word == "quit") break;
    if (word == "answer") {
      if (args->size() != 2 || !app.answerAlert((*args)[1])) std::cerr << "qmv: no alert waits for that answer\n";
      continue;
    }
    CLI::App parser{"qmv shell"};
    bool json = false;
    parser.add_flag("--json", json, "print one JSON document");
    parser.require_subcommand(1, 1);
    CommandRegistry registry(parser, true);
    registerAllCommands(registry);
    if (word == "help") {
      printHelp(app, parser, *args);
      continue;
    }
    const auto known = shellCommands(parser);
    if (!word.starts_with("-") &&
        std::none_of(known.begin(), known.end(), [&](CLI::App* c) { return c->get_name() == word; })) {
      std::cerr << "qmv: unknown command \"" << word << "\" (\"help\" lists the commands)\n";
      continue;
    }
    std::vector<std::string> reversed(args->rbegin(), args->rend());
    try {
      parser.parse(reversed);
    } catch (const CLI::ParseError& e) {
      std::ostringstream help;
      parser.exit(e, help, std::cerr);
      std::istringstream lines(help.str());
      for (std::string text; std::getline(lines, text);) app.output().line(text);
      continue;
    }
    const CommandRegistry::Entry* entry = registry.chosen();
    if (entry == nullptr) continue;
    app.beginCommand(json || app.options().json);
    runFlow(app, *entry);
    app.endCommand();
  }
  return kExitOk;
}

// ---- server ----

int runServer(CliApp& app, bool choose) {
  const ServerSwitch serverSwitch(app.config());
  CliOutput& out = app.output();
  if (choose) {
    // Whatever the member chooses is in place once the choice has run.
    auto chosen = std::make_shared<std::optional<std::string>>();
    serverSwitch.showAlert([chosen](const std::string& baseUrl) { *chosen = baseUrl; });
    if (!app.waitUntil([&] { return chosen->has_value() || app.pendingAlerts() > 0; }) || !chosen->has_value()) {
      // In the shell the sheet stays open for "answer N" after the command.
      std::cerr << "qmv: the server sheet waits: "
                << alertAnswerHint(app, {ServerSwitch::kProduction, ServerSwitch::kTest, ServerSwitch::kManual}) << " ("
                << ServerSwitch::kManual << " then takes " << (app.inShell() ? "\"answer HOST:PORT\"" : "--answer HOST:PORT")
                << ")\n";
      return kExitFailure;
    }
  }
  const std::string current = NetworkConfig::sharedInstance().baseUrl();
  out.line("server: " + current);
  out.line(std::string(ServerSwitch::kProduction) + ": " + serverSwitch.production());
  out.line(std::string(ServerSwitch::kTest) + ": " + serverSwitch.test());
  out.data("server", current);
  out.data("production", serverSwitch.production());
  out.data("test", serverSwitch.test());
  return kExitOk;
}

}  // namespace

void registerShellCommands(CommandRegistry& registry) {
  {
    auto url = std::make_shared<std::string>();
    auto source = std::make_shared<std::string>();
    CLI::App* open = registry.add("open", "hand an inbound URL to the application, as another application would",
                                  [url, source](CliApp& app) { return runOpen(app, *url, *source); });
    open->add_option("URL", *url, "the inbound URL")->required();
    open->add_option("--source", *source, "the source application's identifier");
  }
  if (!registry.inShell()) {
    auto port = std::make_shared<int>(0);
    CLI::App* sandbox = registry.addWithoutStart("sandbox", "run the local sandbox server until interrupted",
                                                 [port](CliApp& app) { return runSandbox(app, *port); });
    sandbox->add_option("--port", *port, "port to listen on (0: a free port)")
        ->check(CLI::Range(0, 65535))
        ->type_name("PORT");
    registry.add("shell", "run commands one per line in one process", [](CliApp& app) { return runShell(app); });
  }
  {
    auto choose = std::make_shared<std::string>();
    CLI::App* server = registry.add("server", "the application server in use, or switch it for this run",
                                    [choose](CliApp& app) { return runServer(app, !choose->empty()); });
    server->add_option("ACTION", *choose, "\"switch\": the server sheet (answered with --answer)")
        ->check(CLI::IsMember({"switch"}));
  }
}

}  // namespace qmv::cli
