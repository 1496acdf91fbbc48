#pragma once
// qmv's manual page around the parser's own commands and options.
#include <CLI/CLI.hpp>

#include "apps/cli_docs/manual.h"

namespace qmv::cli {

docs::ManPage qmvManPage(const CLI::App& app);

}  // namespace qmv::cli
