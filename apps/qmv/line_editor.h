#pragma once
// Line editing of `qmv shell` on a terminal, through libedit: the usual editing keys,
// a history kept in a file across runs, and completion of command names at the start
// of a line (later words complete as file names). One editor per process: libedit's
// line state is global.
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace qmv::cli {

class LineEditor {
 public:
  static constexpr int kHistoryLines = 500;

  // Reads the history file when it exists; `commands` are the words offered for the
  // first word of a line.
  LineEditor(std::filesystem::path historyFile, std::vector<std::string> commands);
  LineEditor(const LineEditor&) = delete;
  LineEditor& operator=(const LineEditor&) = delete;

  // Shows `prompt` and reads one line; nullopt at end of input (Ctrl-D). With
  // `remember`, a non-blank line goes into the history and its file.
  std::optional<std::string> readLine(const std::string& prompt, bool remember);

 private:
  std::filesystem::path historyFile_;
};

}  // namespace qmv::cli
