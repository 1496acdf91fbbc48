#include "apps/qmv/line_editor.h"

// libedit's readline interface; its header needs <stdio.h> first.
#include <editline/readline.h>
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>

#include "apps/qmv/command_line_split.h"
#include "core/common/log.h"
#include "platform/linux/home_files.h"

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

// Options whose value is a password, in every command that has them.
bool isSecretOption(const std::string& word) {
  for (const char* name : {"--password", "--confirm"}) {
    const std::size_t length = std::strlen(name);
    if (word.compare(0, length, name) == 0 && (word.size() == length || word[length] == '=')) return true;
  }
  return false;
}

// A word as splitCommandLine reads it back.
std::string quoted(const std::string& word) {
  if (!word.empty() && word.find_first_of(" \t'\"\\") == std::string::npos) return word;
  std::string out = "\"";
  for (const char c : word) {
    if (c == '"' || c == '\\') out += '\\';
    out += c;
  }
  return out + "\"";
}

// Runs `use` on a /proc path to the history file opened by home_files (libedit takes
// only names): libedit then reads or writes the very file that was checked.
bool withHistoryFile(const std::filesystem::path& file, int flags, const std::function<int(const char*)>& use) {
  std::error_code ec;
  if (!(flags & O_CREAT) && !std::filesystem::exists(std::filesystem::symlink_status(file, ec))) return true;
  const auto opened = home_files::openPrivate(file, flags);
  if (opened.fd < 0) {
    logWarning("shell history not kept: " + opened.error);
    return false;
  }
  const std::string path = "/proc/self/fd/" + std::to_string(opened.fd);
  const int result = use(path.c_str());
  ::close(opened.fd);
  if (result != 0)
    logWarning("shell history " + file.string() + " could not be " + (flags & O_CREAT ? "written" : "read"));
  return result == 0;
}

}  // namespace

std::optional<std::string> historyEntry(const std::string& line) {
  if (isBlank(line)) return std::nullopt;
  const auto words = splitCommandLine(line);
  if (!words) return std::nullopt;
  const auto command =
      std::find_if(words->begin(), words->end(), [](const std::string& w) { return !w.starts_with("-"); });
  if (command == words->end()) return line;
  std::vector<std::string> kept;
  bool dropped = false;
  int positionals = 0;
  for (std::size_t i = 0; i < words->size(); ++i) {
    const std::string& word = (*words)[i];
    const bool afterCommand = i > static_cast<std::size_t>(command - words->begin());
    if (isSecretOption(word)) {
      dropped = true;
      if (word.find('=') == std::string::npos) ++i;  // its value
      continue;
    }
    if (afterCommand && !word.starts_with("-")) ++positionals;
    // login PHONE PASSWORD; password OLD NEW CONFIRM; answer TEXT, unless TEXT is a button's number
    const bool secretPositional =
        (*command == "login" && positionals >= 2) || (*command == "password" && positionals >= 1) ||
        (*command == "answer" && positionals >= 1 && word.find_first_not_of("0123456789") != std::string::npos);
    if (afterCommand && !word.starts_with("-") && secretPositional) {
      dropped = true;
      continue;
    }
    kept.push_back(word);
  }
  if (!dropped) return line;
  std::string out;
  for (const auto& word : kept) out += (out.empty() ? "" : " ") + quoted(word);
  return out;
}

LineEditor::LineEditor(std::filesystem::path historyFile, std::vector<std::string> commands)
    : historyFile_(std::move(historyFile)) {
  commandWords() = std::move(commands);
  rl_readline_name = "qmv";
  rl_attempted_completion_function = completeLine;
  using_history();
  clear_history();
  stifle_history(kHistoryLines);
  withHistoryFile(historyFile_, O_RDONLY, [](const char* path) { return read_history(path); });
}

std::optional<std::string> LineEditor::readLine(const std::string& prompt, bool remember) {
  char* raw = readline(prompt.c_str());
  if (raw == nullptr) return std::nullopt;
  std::string line(raw);
  std::free(raw);
  if (remember) this->remember(line);
  return line;
}

bool LineEditor::remember(const std::string& line) {
  const auto entry = historyEntry(line);
  if (!entry) return true;
  add_history(entry->c_str());
  // The stifled history holds at most kHistoryLines, so the file written does too.
  return withHistoryFile(historyFile_, O_WRONLY | O_CREAT, [](const char* path) { return write_history(path); });
}

}  // namespace qmv::cli
