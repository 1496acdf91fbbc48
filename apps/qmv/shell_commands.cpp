// Commands of the application shell: inbound URLs, the standalone sandbox and the
// interactive shell.
#include <csignal>
#include <iostream>
#include <memory>

#include "apps/qmv/cli_app.h"
#include "apps/qmv/command_line_split.h"
#include "apps/qmv/command_registry.h"
#include "apps/sandbox/sandbox_server.h"
#include "platform/file_locations.h"
#include "shell/app_delegate.h"

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
  if (std::string error = server.start(); !error.empty()) {
    std::cerr << "qmv: cannot start the sandbox: " << error << '\n';
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

int runShell(CliApp& app) {
  app.startLineReader();
  app.output().line("qmv shell: type a command (e.g. \"me\", \"search 火锅\"), \"exit\" to leave");
  while (auto line = app.readLine("qmv> ")) {
    auto args = splitCommandLine(*line);
    if (!args) {
      std::cerr << "qmv: unterminated quote\n";
      continue;
    }
    if (args->empty()) continue;
    if ((*args)[0] == "exit" || (*args)[0] == "quit") break;
    if ((*args)[0] == "answer") {
      if (args->size() != 2 || !app.answerAlert((*args)[1])) std::cerr << "qmv: no alert waits for that answer\n";
      continue;
    }
    CLI::App parser{"qmv shell"};
    bool json = false;
    parser.add_flag("--json", json, "print one JSON document");
    parser.require_subcommand(1, 1);
    CommandRegistry registry(parser, true);
    registerAllCommands(registry);
    std::vector<std::string> reversed(args->rbegin(), args->rend());
    try {
      parser.parse(reversed);
    } catch (const CLI::ParseError& e) {
      parser.exit(e, std::cout, std::cerr);
      continue;
    }
    const CommandRegistry::Entry* entry = registry.chosen();
    if (entry == nullptr || !entry->needsStart) {
      std::cerr << "qmv: that command cannot run inside the shell\n";
      continue;
    }
    app.beginCommand(json || app.options().json);
    entry->run(app);
    app.endCommand();
  }
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
    sandbox->add_option("--port", *port, "port to listen on (0: a free port)")->check(CLI::Range(0, 65535));
    registry.add("shell", "run commands one per line in one process", [](CliApp& app) { return runShell(app); });
  }
}

}  // namespace qmv::cli
