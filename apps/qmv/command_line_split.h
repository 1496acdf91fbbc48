#pragma once
// Splits one line typed into `qmv shell` into arguments: blanks separate, single and
// double quotes group, a backslash escapes the next character.
#include <optional>
#include <string>
#include <vector>

namespace qmv::cli {

// nullopt when a quote is left open.
std::optional<std::vector<std::string>> splitCommandLine(const std::string& line);

}  // namespace qmv::cli
