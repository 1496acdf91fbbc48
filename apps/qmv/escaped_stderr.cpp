#include "apps/qmv/escaped_stderr.h"

#include <iostream>
#include <string>
#include <string_view>

#include "apps/qmv/cli_output.h"

namespace qmv::cli {

EscapedStderr::EscapedStderr()
    : previous_(std::cerr.rdbuf()), buffer_(previous_), previousFilter_(setWarningFilter(&forTerminal)) {
  std::cerr.rdbuf(&buffer_);
}

EscapedStderr::~EscapedStderr() {
  std::cerr.flush();
  std::cerr.rdbuf(previous_);
  setWarningFilter(previousFilter_);
}

EscapedStderr::EscapingBuffer::int_type EscapedStderr::EscapingBuffer::overflow(int_type ch) {
  if (traits_type::eq_int_type(ch, traits_type::eof())) return traits_type::not_eof(ch);
  const char c = traits_type::to_char_type(ch);
  xsputn(&c, 1);
  return ch;
}

std::streamsize EscapedStderr::EscapingBuffer::xsputn(const char* text, std::streamsize count) {
  std::string shown;
  std::string_view rest(text, static_cast<std::size_t>(count));
  for (std::size_t end; (end = rest.find('\n')) != std::string_view::npos; rest.remove_prefix(end + 1))
    shown += forTerminal(rest.substr(0, end)) + '\n';
  shown += forTerminal(rest);
  next_->sputn(shown.data(), static_cast<std::streamsize>(shown.size()));
  return count;
}

int EscapedStderr::EscapingBuffer::sync() { return next_->pubsync(); }

}  // namespace qmv::cli
