#pragma once
// Puts std::cerr and the core's warnings behind a filter for as long as it lives: both
// quote what came from outside (an alert's message, a server's reason, a URL, a file
// name), so each line reaches the terminal with its controls escaped, as the data lines
// on stdout do.
#include <mutex>
#include <streambuf>
#include <string>

#include "core/common/log.h"

namespace qmv::cli {

class EscapedStderr {
 public:
  EscapedStderr();
  ~EscapedStderr();
  EscapedStderr(const EscapedStderr&) = delete;
  EscapedStderr& operator=(const EscapedStderr&) = delete;

 private:
  // Gathers a line, then hands it on escaped. Locked: warnings may come from any thread.
  class LineBuffer : public std::streambuf {
   public:
    explicit LineBuffer(std::streambuf* next) : next_(next) {}
    void flushPartial();

   protected:
    int_type overflow(int_type ch) override;
    std::streamsize xsputn(const char* text, std::streamsize count) override;
    int sync() override;

   private:
    void put(char c);
    std::streambuf* next_;
    std::mutex mutex_;
    std::string line_;
  };

  std::streambuf* previous_;
  LineBuffer buffer_;
  WarningFilter previousFilter_;
};

}  // namespace qmv::cli
