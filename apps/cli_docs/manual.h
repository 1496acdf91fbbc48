#pragma once
// The programs' manual pages and shell completion, rendered from the same description of
// commands and options the programs parse with, so that neither can drift from them.
#include <string>
#include <utility>
#include <vector>

namespace qmv::docs {

struct ManOption {
  std::vector<std::string> names;  // "-h", "--help"; a positional's one name, e.g. "URL"
  std::string value;               // what the option takes ("DIR"); empty for a flag
  std::string description;
  bool positional = false;
  bool required = false;
  bool repeated = false;  // a positional taking several values
};

struct ManCommand {
  std::string name;
  std::string description;
  std::vector<ManOption> options;
  std::vector<ManCommand> commands;
};

using ManEntries = std::vector<std::pair<std::string, std::string>>;  // term, explanation

struct ManPage {
  std::string version;  // "qmv 0.1.0"
  std::string summary;                   // the NAME line after the dash
  std::vector<std::string> description;  // paragraphs
  ManCommand program;                    // its name (as typed), options and commands
  ManEntries exitStatus;
  ManEntries files;
  ManEntries environment;
  std::vector<std::string> seeAlso;  // "qmv-gtk(1)"
};

// The page in roff (man(7) macros), section 1.
std::string renderManPage(const ManPage& page);

// A bash completion script for `program`: its commands, the options of each, directories
// and files after an option that takes a value.
std::string renderBashCompletion(const ManCommand& program);

}  // namespace qmv::docs
