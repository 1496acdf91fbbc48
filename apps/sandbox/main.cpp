// qmv-sandbox: the sandbox server on its own, for a client on another machine or as a
// user service (qmv-sandbox.service), until SIGINT or SIGTERM.
#include <CLI/CLI.hpp>
#include <csignal>
#include <cstdlib>
#include <iostream>

#include "apps/cli_docs/cli11_manual.h"
#include "apps/sandbox/sandbox_server.h"
#include "qmv/version.h"

namespace {

// Server state is state, not user data: $XDG_STATE_HOME/qmv-sandbox.
std::filesystem::path defaultHome() {
  if (const char* state = std::getenv("XDG_STATE_HOME"); state && *state) {
    return std::filesystem::path(state) / "qmv-sandbox";
  }
  if (const char* home = std::getenv("HOME"); home && *home) {
    return std::filesystem::path(home) / ".local" / "state" / "qmv-sandbox";
  }
  return std::filesystem::current_path() / ".qmv-sandbox";
}

qmv::docs::ManPage manPage(const CLI::App& app) {
  qmv::docs::ManPage page;
  page.version = std::string("qmv ") + QMV_VERSION_STRING;
  page.summary = "a local server speaking the qmv application server's HTTP contract";
  page.description = {
      "qmv-sandbox serves the application API under /qmv/app/v3/, the server's pages, pictures, an object "
      "store and the payment completion of the sandbox's payment applications, over a demo world seeded in "
      "its home the first time the home is used. It runs until interrupted or terminated.",
      "Point a client at it with qmv --server http://HOST:PORT/qmv/app/v3/. The demo member is "
      "13800000000 with the password qmv123, and every SMS code is 123456 (also printed on standard error).",
      "As a user service: systemctl --user start qmv-sandbox (port 8787, home under $XDG_STATE_HOME).",
  };
  page.program = qmv::docs::describeCli(app, "qmv-sandbox");
  page.exitStatus = {{"0", "Stopped by SIGINT or SIGTERM."},
                     {"1", "The home could not be opened or the port not be bound."},
                     {"2", "The command line could not be parsed."}};
  page.files = {{"$XDG_STATE_HOME/qmv-sandbox", "The default home (else ~/.local/state/qmv-sandbox)."},
                {"<home>/sandbox.db", "Members, sessions, balances and orders (SQLite)."},
                {"<home>/oss", "Uploaded objects."},
                {"/usr/share/qmv/area.db", "The areas served (share/qmv under the install prefix)."},
                {"/usr/share/qmv/map.db", "The outlines the map tiles under /tiles/ are drawn from."},
                {"/usr/lib/systemd/user/qmv-sandbox.service", "The user service."}};
  page.environment = {{"XDG_STATE_HOME", "Where the default home is made."},
                      {"HOME", "The default home when XDG_STATE_HOME is not set."},
                      {"QMV_RESOURCE_DIR", "Read area.db and map.db from this directory instead."},
                      {"QMV_SANDBOX_RECORD", "A directory in which every request and answer is saved."}};
  page.seeAlso = {"qmv(1)", "qmv-gtk(1)"};
  return page;
}

}  // namespace

int main(int argc, char** argv) {
  CLI::App app{"qmv-sandbox: the local sandbox server"};
  app.set_version_flag("--version", std::string("qmv-sandbox ") + QMV_VERSION_STRING);
  qmv::sandbox::SandboxOptions options;
  std::string home;
  app.add_option("--port", options.port, "port to listen on (0: a free port)")
      ->check(CLI::Range(0, 65535))
      ->type_name("PORT");
  app.add_option("--host", options.host, "address to listen on (default 127.0.0.1)")->type_name("ADDRESS");
  app.add_option("--home", home, "home directory (default $XDG_STATE_HOME/qmv-sandbox)")->type_name("DIR");
  bool randomCodes = false;
  app.add_flag("--random-codes", randomCodes, "send random SMS codes instead of the demo code");
  bool man = false;
  bool completion = false;
  app.add_flag("--man", man, "print the manual page (roff)")->group("");
  app.add_flag("--bash-completion", completion, "print the bash completion script")->group("");
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& e) {
    // --help and --version end here too, successfully; CLI11's own codes are not ours.
    return app.exit(e) == 0 ? 0 : 2;
  }
  if (qmv::docs::printDocsIfAsked(manPage(app), man, completion, std::cout)) return 0;

  options.home = home.empty() ? defaultHome() : std::filesystem::path(home);
  options.demoSmsCode = !randomCodes;
  // Wait for a termination signal on this thread instead of a handler.
  sigset_t signals;
  sigemptyset(&signals);
  sigaddset(&signals, SIGINT);
  sigaddset(&signals, SIGTERM);
  pthread_sigmask(SIG_BLOCK, &signals, nullptr);
  qmv::sandbox::SandboxServer server(options);
  if (const qmv::Status started = server.start(); !started.ok()) {
    std::cerr << "qmv-sandbox: cannot start: " << started.message() << '\n';
    return 1;
  }
  std::cout << "qmv-sandbox serving " << server.baseUrl() << '\n'
            << "home " << options.home.string() << '\n'
            << (options.demoSmsCode ? std::string("demo SMS code: ") + qmv::sandbox::kDemoSmsCode
                                    : std::string("SMS codes are random (printed on stderr)"))
            << std::endl;
  int received = 0;
  sigwait(&signals, &received);
  server.stop();
  return 0;
}
