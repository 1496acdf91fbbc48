#include "apps/qmv/command_line_split.h"

namespace qmv::cli {

std::optional<std::vector<std::string>> splitCommandLine(const std::string& line) {
  std::vector<std::string> args;
  std::string current;
  bool inWord = false;
  char quote = 0;
  for (std::size_t i = 0; i < line.size(); ++i) {
    const char c = line[i];
    if (quote != 0) {
      if (c == quote) {
        quote = 0;
      } else if (c == '\\' && quote == '"' && i + 1 < line.size()) {
        current += line[++i];
      } else {
        current += c;
      }
    } else if (c == '\'' || c == '"') {
      quote = c;
      inWord = true;
    } else if (c == '\\' && i + 1 < line.size()) {
      current += line[++i];
      inWord = true;
    } else if (c == ' ' || c == '\t') {
      if (inWord) args.push_back(std::move(current));
      current.clear();
      inWord = false;
    } else {
      current += c;
      inWord = true;
    }
  }
  if (quote != 0) return std::nullopt;
  if (inWord) args.push_back(std::move(current));
  return args;
}

}  // namespace qmv::cli
