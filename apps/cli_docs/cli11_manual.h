#pragma once
// Reads a CLI11 parser back as the manual's description of commands and options.
#include <CLI/CLI.hpp>

#include "apps/cli_docs/manual.h"

namespace qmv::docs {

// `app`, named `name`, with its visible options and commands (an empty group hides one, as
// in the parser's own help).
ManCommand describeCli(const CLI::App& app, const std::string& name);

// Handles the hidden --man and --bash-completion flags every program has: prints the
// page or the script to `out` and returns true when one of them was given.
bool printDocsIfAsked(const ManPage& page, bool man, bool completion, std::ostream& out);

}  // namespace qmv::docs
