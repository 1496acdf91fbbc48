#include "apps/cli_docs/cli11_manual.h"

#include <ostream>
#include <set>

namespace qmv::docs {
namespace {

// CLI11 names a value by its type ("TEXT"), or by what the option says it is ("DIR"), then
// its checks: "TEXT:{a,b}", "DIR:...". A generic type is better told by its check.
std::string valueName(const CLI::Option& option) {
  std::string type = option.get_type_name();
  const auto colon = type.find(':');
  if (colon == std::string::npos) return type.empty() ? "VALUE" : type;
  const std::string named = type.substr(0, colon);
  static const std::set<std::string> generic = {"TEXT", "INT", "UINT", "FLOAT", "NUMBER", ""};
  return generic.count(named) ? type.substr(colon + 1) : named;
}

}  // namespace

ManCommand describeCli(const CLI::App& app, const std::string& name) {
  ManCommand command{name, app.get_description(), {}, {}};
  // A command's own --help says what the program's does.
  const bool isCommand = app.get_parent() != nullptr;
  for (const CLI::Option* option : app.get_options()) {
    if (option->get_group().empty() || (isCommand && option == app.get_help_ptr())) continue;
    ManOption described;
    described.description = option->get_description();
    described.required = option->get_required();
    if (option->get_positional() && option->get_snames().empty() && option->get_lnames().empty()) {
      described.positional = true;
      described.names.push_back(option->get_name(true));
      described.repeated = option->get_items_expected_max() > 1;
    } else {
      for (const auto& s : option->get_snames()) described.names.push_back("-" + s);
      for (const auto& l : option->get_lnames()) described.names.push_back("--" + l);
      // A flag expects no value at all.
      if (option->get_expected_max() > 0) described.value = valueName(*option);
    }
    command.options.push_back(std::move(described));
  }
  for (const CLI::App* sub : app.get_subcommands([](const CLI::App*) { return true; })) {
    if (sub->get_group().empty()) continue;
    command.commands.push_back(describeCli(*sub, sub->get_name()));
  }
  return command;
}

bool printDocsIfAsked(const ManPage& page, bool man, bool completion, std::ostream& out) {
  if (man) {
    out << renderManPage(page);
  } else if (completion) {
    out << renderBashCompletion(page.program);
  }
  return man || completion;
}

}  // namespace qmv::docs
