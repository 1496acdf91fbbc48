#pragma once
// What the CLI prints. Messages the system shows (status overlay, alert title and
// message) are printed on their own line exactly as the system says them; data is
// printed as readable lines, or, with --json, gathered into one JSON document
// {"messages": [...], "data": {...}} printed when the command ends. Text mode writes
// control characters, stray bytes and invisible format characters (direction overrides,
// zero-width marks) as visible escapes, so that no text from outside reaches the
// terminal as a command or disguised; the JSON document carries them escaped already.
#include <ostream>
#include <string>
#include <string_view>

#include "core/common/json.h"

namespace qmv::cli {

// `text` with every control, stray byte and invisible format character written as a
// visible escape (\x1b, \u202e); tabs stay.
std::string forTerminal(std::string_view text);

class CliOutput {
 public:
  CliOutput(bool json, std::ostream& out);

  bool json() const { return json_; }
  // A text the system shows to the user.
  void message(const std::string& text);
  // A readable data line (text mode only; ignored with --json).
  void line(const std::string& text);
  // A data member of the --json document (ignored in text mode).
  void data(const std::string& key, Json value);
  // Prints the --json document (once); does nothing in text mode.
  void finish();

  const Json& messages() const { return messages_; }

 private:
  bool json_;
  std::ostream& out_;
  Json messages_ = Json::array();
  Json data_ = Json::object();
  bool finished_ = false;
};

}  // namespace qmv::cli
