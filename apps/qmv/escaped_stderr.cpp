#include "apps/qmv/escaped_stderr.h"

#include <iostream>

#include "apps/qmv/cli_output.h"

namespace qmv::cli {

EscapedStderr::EscapedStderr()
    : previous_(std::cerr.rdbuf()), buffer_(previous_), previousFilter_(setWarningFilter(&forTerminal)) {
  std::cerr.rdbuf(&buffer_);
}

EscapedStderr::~EscapedStderr() {
  buffer_.flushPartial();
  std::cerr.rdbuf(previous_);
  setWarningFilter(previousFilter_);
}

void EscapedStderr::LineBuffer::put(char c) {
  if (c != '\n') {
    line_ += c;
    return;
  }
  const std::string shown = forTerminal(line_) + '\n';
  next_->sputn(shown.data(), static_cast<std::streamsize>(shown.size()));
  line_.clear();
}

EscapedStderr::LineBuffer::int_type EscapedStderr::LineBuffer::overflow(int_type ch) {
  if (traits_type::eq_int_type(ch, traits_type::eof())) return traits_type::not_eof(ch);
  std::lock_guard lock(mutex_);
  put(traits_type::to_char_type(ch));
  return ch;
}

std::streamsize EscapedStderr::LineBuffer::xsputn(const char* text, std::streamsize count) {
  std::lock_guard lock(mutex_);
  for (std::streamsize i = 0; i < count; ++i) put(text[i]);
  return count;
}

// A flush without a line end (a prompt) shows what is gathered so far.
int EscapedStderr::LineBuffer::sync() {
  flushPartial();
  return 0;
}

void EscapedStderr::LineBuffer::flushPartial() {
  std::lock_guard lock(mutex_);
  if (!line_.empty()) {
    const std::string shown = forTerminal(line_);
    next_->sputn(shown.data(), static_cast<std::streamsize>(shown.size()));
    line_.clear();
  }
  next_->pubsync();
}

}  // namespace qmv::cli
