#pragma once
// Debug log. Lines go to stderr when QMV_DEBUG is set in the environment, and always to
// an installed sink (tests install one to assert that a line was written). Warnings go
// to stderr always.
#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

namespace qmv {

using LogSink = std::function<void(const std::string& line)>;

void logLine(const std::string& line);
// Whether logLine() writes anywhere (QMV_DEBUG is set or a sink is installed): lines
// built for every request are only built when someone reads them.
bool logLineEnabled();

// A fault the user should hear of although the system shows no message for it (an answer
// that could not be read, a setting that could not be saved): always written to stderr
// as "qmv: <line>", and to the installed sink.
void logWarning(const std::string& line);

// Warnings logged so far in this process. A front end compares it before and after a flow:
// a flow during which one was logged did not end as it should. Thread-safe.
std::size_t warningCount();

// Turns the stderr copy of warnings off (or back on); the sink still gets them. For a
// process that feeds hostile input in a loop, where a line per input would drown the rest.
void setWarningsOnStderr(bool on);

// Rewrites each warning's text before it reaches stderr (a terminal front end escapes the
// controls that outside text may carry); null writes it as it is. Returns the previous one.
using WarningFilter = std::string (*)(std::string_view line);
WarningFilter setWarningFilter(WarningFilter filter);

// Installs `sink` for the lifetime of the returned guard; the previous sink comes back
// when the guard is destroyed. Thread-safe.
class ScopedLogSink {
 public:
  explicit ScopedLogSink(LogSink sink);
  ~ScopedLogSink();
  ScopedLogSink(const ScopedLogSink&) = delete;
  ScopedLogSink& operator=(const ScopedLogSink&) = delete;

 private:
  LogSink previous_;
};

}  // namespace qmv
