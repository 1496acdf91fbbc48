#include "apps/qmv/cli_manual.h"

#include "apps/cli_docs/cli11_manual.h"
#include "apps/qmv/command_registry.h"
#include "qmv/version.h"

namespace qmv::cli {

docs::ManPage qmvManPage(const CLI::App& app) {
  docs::ManPage page;
  page.version = std::string("qmv ") + QMV_VERSION_STRING;
  page.summary = "the command-line client of a local-life services platform";
  page.description = {
      "qmv signs a member in with a mobile number, browses the shops and offers of a city by category, "
      "keyword or map, buys and pays for them, and manages the wallet, bank card, referrals and prize wheel. "
      "Each command starts the client, signs the stored member in again, runs one flow and prints what its "
      "screen shows (or one JSON document with --json).",
      "Without --server or a configured server, qmv starts an embedded sandbox: a local server with a demo "
      "world, so that everything works offline. The demo member is 13800000000 with the password qmv123, "
      "and every SMS code is 123456.",
      "Global options may also follow the command. Without a command qmv prints its help.",
  };
  page.program = docs::describeCli(app, "qmv");
  page.exitStatus = {
      {std::to_string(kExitOk), "The flow ended as it should."},
      {std::to_string(kExitFailure),
       "A validation or server failure, a fault reported meanwhile, or a setting that did not reach the disk."},
      {std::to_string(kExitUsage), "The command line could not be parsed."},
  };
  page.files = {
      {"$XDG_DATA_HOME/qmv", "The home (else ~/.local/share/qmv; --home chooses another), private to its member."},
      {"<home>/settings.db", "The settings and the signed-in member."},
      {"<home>/qmv.conf", "The configuration, e.g. the application server."},
      {"<home>/Library/Caches", "Cached answers and pictures."},
      {"<home>/sandbox", "The embedded sandbox's database and uploaded objects."},
      {"<home>/shell_history", "The lines typed into qmv shell."},
      {"/usr/share/qmv/area.db, /usr/share/qmv/bank_card_bin.db",
       "The shipped areas and bank card numbers (share/qmv under the install prefix)."},
  };
  page.environment = {
      {"XDG_DATA_HOME", "Where the default home is made."},
      {"HOME", "The default home when XDG_DATA_HOME is not set."},
      {"QMV_RESOURCE_DIR", "Read the shipped databases from this directory instead."},
      {"QMV_DEBUG", "When set, debug messages are printed on standard error."},
      {"QMV_LOOP_STALL", "When set and not 0, how long callbacks held the main loop is printed as each command ends."},
      {"QMV_SANDBOX_RECORD", "A directory in which the embedded sandbox saves every request and answer."},
  };
  page.seeAlso = {"qmv-gtk(1)", "qmv-sandbox(1)"};
  return page;
}

}  // namespace qmv::cli
