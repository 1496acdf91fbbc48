#pragma once
// Line editing of `qmv shell` on a terminal, through libedit: the usual editing keys,
// a history kept in a file across runs, and completion of command names at the start
// of a line (later words complete as file names). One editor per process: libedit's
// line state is global.
//
// The history file lies in the home and is opened as its other files are: never through
// a symbolic link, never a FIFO, never another user's. Passwords typed on a line are
// not remembered (see historyEntry).
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace qmv::cli {

// What the history keeps of a typed line: the line itself, or, when it carries a
// secret, the line without it (a login's password, the values of --password and
// --confirm, the text answered into an alert's field); nullopt when nothing is kept
// (a blank line, or one whose quote is left open and whose words cannot be told).
std::optional<std::string> historyEntry(const std::string& line);

class LineEditor {
 public:
  static constexpr int kHistoryLines = 500;

  // Reads the history file when it exists; `commands` are the words offered for the
  // first word of a line.
  LineEditor(std::filesystem::path historyFile, std::vector<std::string> commands);
  LineEditor(const LineEditor&) = delete;
  LineEditor& operator=(const LineEditor&) = delete;

  // Shows `prompt` and reads one line; nullopt at end of input (Ctrl-D). With
  // `remember`, the line goes into the history and its file (see remember).
  std::optional<std::string> readLine(const std::string& prompt, bool remember);

  // Adds historyEntry(line) to the history and writes the file at once, so that a run
  // that ends abruptly keeps what was typed. Returns false (and writes nothing) when the
  // file is refused or cannot be written; the history in memory still has the line.
  bool remember(const std::string& line);

 private:
  std::filesystem::path historyFile_;
};

}  // namespace qmv::cli
