#include "apps/qmv/line_editor.h"

// libedit's readline interface; its header needs <stdio.h> first.
#include <editline/readline.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace qmv::cli {
namespace {

// The completion callbacks of libedit take no context: the word list is set once,
// before any line is read, and only read afterwards.
std::vector<std::string>& commandWords() {
  static std::vector<std::string> words;
  return words;
}

char* nextCommand(const char* text, int state) {
  static std::size_t index = 0;
  if (state == 0) index = 0;
  const std::size_t length = std::strlen(text);
  const auto& words = commandWords();
  while (index < words.size()) {
    const std::string& word = words[index++];
    if (word.compare(0, length, text) == 0) return strdup(word.c_str());
  }
  return nullptr;
}

char** completeLine(const char* text, int start, int /*end*/) {
  if (start != 0) return nullptr;  // arguments: libedit's file names
  rl_attempted_completion_over = 1;
  return rl_completion_matches(text, nextCommand);
}

bool isBlank(const std::string& line) { return line.find_first_not_of(" \t") == std::string::npos; }

}  // namespace

LineEditor::LineEditor(std::filesystem::path historyFile, std::vector<std::string> commands)
    : historyFile_(std::move(historyFile)) {
  commandWords() = std::move(commands);
  rl_readline_name = "qmv";
  rl_attempted_completion_function = completeLine;
  using_history();
  stifle_history(kHistoryLines);
  std::error_code ec;
  if (std::filesystem::exists(historyFile_, ec)) read_history(historyFile_.c_str());
}

std::optional<std::string> LineEditor::readLine(const std::string& prompt, bool remember) {
  char* raw = readline(prompt.c_str());
  if (raw == nullptr) return std::nullopt;
  std::string line(raw);
  std::free(raw);
  if (remember && !isBlank(line)) {
    add_history(line.c_str());
    // Written at once, so that a run that ends abruptly keeps what was typed.
    if (write_history(historyFile_.c_str()) == 0) history_truncate_file(historyFile_.c_str(), kHistoryLines);
  }
  return line;
}

}  // namespace qmv::cli
