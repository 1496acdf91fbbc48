#pragma once
// An output stream whose every complete line becomes one system message of the CLI
// output, so the stream-based overlay and alert adapters also feed the --json document.
#include <functional>
#include <ostream>
#include <streambuf>
#include <string>

namespace qmv::cli {

class MessageLineBuffer : public std::streambuf {
 public:
  explicit MessageLineBuffer(std::function<void(const std::string&)> onLine) : onLine_(std::move(onLine)) {}

 protected:
  int_type overflow(int_type ch) override {
    if (traits_type::eq_int_type(ch, traits_type::eof())) return traits_type::not_eof(ch);
    if (ch == '\n') {
      onLine_(line_);
      line_.clear();
    } else {
      line_ += static_cast<char>(ch);
    }
    return ch;
  }

 private:
  std::function<void(const std::string&)> onLine_;
  std::string line_;
};

class MessageStream : public std::ostream {
 public:
  explicit MessageStream(std::function<void(const std::string&)> onLine)
      : std::ostream(nullptr), buffer_(std::move(onLine)) {
    rdbuf(&buffer_);
  }

 private:
  MessageLineBuffer buffer_;
};

}  // namespace qmv::cli
