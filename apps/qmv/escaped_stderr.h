#pragma once
// Puts std::cerr and the core's warnings behind a filter for as long as it lives: both
// quote what came from outside (an alert's message, a server's reason, a URL, a file
// name), so each line reaches the terminal with its controls escaped, as the data lines
// on stdout do.
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
  // Escapes each piece as it is written. std::cerr is unit-buffered, so every insertion
  // arrives whole and nothing needs gathering; line ends pass through as they are.
  class EscapingBuffer : public std::streambuf {
   public:
    explicit EscapingBuffer(std::streambuf* next) : next_(next) {}

   protected:
    int_type overflow(int_type ch) override;
    std::streamsize xsputn(const char* text, std::streamsize count) override;
    int sync() override;

   private:
    std::streambuf* next_;
  };

  std::streambuf* previous_;
  EscapingBuffer buffer_;
  WarningFilter previousFilter_;
};

}  // namespace qmv::cli
