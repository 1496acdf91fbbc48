#include "apps/qmv/command_registry.h"

#include <iostream>

#include "apps/cli_docs/cli11_manual.h"
#include "apps/qmv/cli_app.h"
#include "apps/qmv/cli_manual.h"
#include "apps/qmv/escaped_stderr.h"
#include "core/common/log.h"
#include "core/session/global_data.h"
#include "platform/fixed_location_source.h"
#include "platform/settings_store.h"
#include "qmv/version.h"

namespace qmv::cli {

CLI::App* CommandRegistry::add(const std::string& name, const std::string& description, CommandRun run) {
  CLI::App* command = app_.add_subcommand(name, description);
  entries_.push_back({command, std::move(run), true});
  return command;
}

CLI::App* CommandRegistry::addWithoutStart(const std::string& name, const std::string& description, CommandRun run) {
  CLI::App* command = app_.add_subcommand(name, description);
  entries_.push_back({command, std::move(run), false});
  return command;
}

const CommandRegistry::Entry* CommandRegistry::chosen() const {
  for (const auto& entry : entries_) {
    if (entry.command->parsed()) return &entry;
  }
  return nullptr;
}

void registerAllCommands(CommandRegistry& registry) {
  registerAccountCommands(registry);
  registerDiscoveryCommands(registry);
  registerOrderCommands(registry);
  registerWalletCommands(registry);
  registerCheckoutCommands(registry);
  registerReferralCommands(registry);
  registerWheelCommands(registry);
  registerPageCommands(registry);
  registerWalletCentreCommands(registry);
  registerReviewCommands(registry);
  registerMemberCentreCommands(registry);
  registerAccountCentreCommands(registry);
  registerProfileCommands(registry);
  registerPortraitCommands(registry);
  registerPictureCommands(registry);
  registerShellCommands(registry);
}

int runFlow(CliApp& app, const CommandRegistry::Entry& entry) {
  // The shell runs each of its lines through here; its own end has nothing to add.
  if (entry.command->get_name() == "shell") return entry.run(app);
  // A command that needs no start (convert, sandbox) has no session, nor a settings store
  // to read one from.
  if (!entry.needsStart) return entry.run(app);
  const std::size_t warnings = warningCount();
  const bool signedIn = GlobalData::sharedInstance().selfInfo() != nullptr;
  int status = entry.run(app);
  if (status == kExitOk && warningCount() != warnings) status = kExitFailure;
  if (GlobalData::sharedInstance().selfInfo()) return status;
  if (signedIn && entry.command->get_name() != "logout") {
    std::cerr << "qmv: signed out by the server: run \"qmv login PHONE PASSWORD\" to sign in again\n";
    return kExitFailure;
  }
  if (status != kExitOk) app.tellAutoLoginFailure();
  return status;
}

int runCli(int argc, char** argv, std::ostream& out, std::istream& in) {
  const EscapedStderr escapedStderr;
  CLI::App app{"qmv: the client of a local-life services platform"};
  app.set_version_flag("--version", std::string("qmv ") + QMV_VERSION_STRING);
  GlobalOptions options;
  app.add_option("--server", options.server,
                 "application server base URL (else the configured one, else the embedded sandbox)")
      ->type_name("URL");
  app.add_option("--home", options.home, "home directory (default $XDG_DATA_HOME/qmv)")->type_name("DIR");
  app.add_option("--at", options.at, "device position LAT,LON (WGS-84)")
      ->check(CLI::Validator(
          [](std::string& text) {
            return FixedLocationSource::parsePosition(text) ? std::string()
                                                            : std::string("expected LAT,LON in degrees");
          },
          "LAT,LON"));
  app.add_flag("--json", options.json, "print one JSON document");
  app.add_option("--answer", options.answers, "answers for alerts, in order (a button's title or number)")
      ->type_name("ANSWER");
  app.add_option("--pay-outcome", options.payOutcome,
                 "what the embedded sandbox's payment applications do with a payment (default success)")
      ->check(CLI::IsMember({"success", "cancel", "fail"}));
  // Hidden: the build writes the manual page and the bash completion with these.
  bool man = false;
  bool completion = false;
  app.add_flag("--man", man, "print the manual page (roff)")->group("");
  app.add_flag("--bash-completion", completion, "print the bash completion script")->group("");
  app.require_subcommand(0, 1);
  // Global options may also follow the command: qmv sandbox --home DIR.
  app.fallthrough();
  CommandRegistry registry(app, false);
  registerAllCommands(registry);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& e) {
    const int code = app.exit(e, out, std::cerr);
    return code == 0 ? kExitOk : kExitUsage;
  }
  if (docs::printDocsIfAsked(qmvManPage(app), man, completion, out)) return kExitOk;
  const CommandRegistry::Entry* entry = registry.chosen();
  if (entry == nullptr) {
    out << app.help();
    return kExitOk;
  }
  CliApp cli(options, out, in);
  if (entry->needsStart) {
    if (const Status booted = cli.boot(); !booted.ok()) {
      std::cerr << "qmv: " << booted.message() << '\n';
      return kExitFailure;
    }
  }
  int status = runFlow(cli, *entry);
  cli.endCommand();
  // A setting that did not reach the disk is gone at the next start, so the flow did not
  // end as it should; the store has said why on stderr. A command that needs no start has
  // no store.
  const auto& settings = cli.env().settings;
  if (status == kExitOk && settings && !settings->lastWriteStatus().ok()) status = kExitFailure;
  return status;
}

}  // namespace qmv::cli
