#include "core/common/utf8.h"

namespace qmv::utf8 {
namespace {

constexpr std::string_view kReplacement = "\xEF\xBF\xBD";

bool inRange(unsigned char c, unsigned char low, unsigned char high) { return c >= low && c <= high; }

}  // namespace

std::size_t sequenceLength(std::string_view text, std::size_t at) {
  const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[at + i]); };
  const unsigned char lead = byte(0);
  if (lead < 0x80) return 1;
  std::size_t length = 0;
  // The second byte's range depends on the lead (no overlong forms, no surrogates,
  // nothing above U+10FFFF); later bytes are plain continuations.
  unsigned char low = 0x80, high = 0xBF;
  if (inRange(lead, 0xC2, 0xDF)) {
    length = 2;
  } else if (inRange(lead, 0xE0, 0xEF)) {
    length = 3;
    if (lead == 0xE0) low = 0xA0;
    if (lead == 0xED) high = 0x9F;
  } else if (inRange(lead, 0xF0, 0xF4)) {
    length = 4;
    if (lead == 0xF0) low = 0x90;
    if (lead == 0xF4) high = 0x8F;
  } else {
    return 0;
  }
  if (text.size() - at < length || !inRange(byte(1), low, high)) return 0;
  for (std::size_t i = 2; i < length; ++i) {
    if (!inRange(byte(i), 0x80, 0xBF)) return 0;
  }
  return length;
}

bool isValid(std::string_view text) {
  for (std::size_t i = 0; i < text.size();) {
    const std::size_t length = sequenceLength(text, i);
    if (length == 0) return false;
    i += length;
  }
  return true;
}

std::string replacingInvalid(std::string_view text) {
  std::string out;
  out.reserve(text.size());
  for (std::size_t i = 0; i < text.size();) {
    const std::size_t length = sequenceLength(text, i);
    if (length == 0) {
      out += kReplacement;
      ++i;
    } else {
      out.append(text.substr(i, length));
      i += length;
    }
  }
  return out;
}

std::optional<std::size_t> typedLength(std::string_view text, bool lineBreaks) {
  std::size_t count = 0;
  for (std::size_t at = 0; at < text.size(); ++count) {
    const std::size_t length = sequenceLength(text, at);
    if (length == 0) return std::nullopt;
    const auto first = static_cast<unsigned char>(text[at]);
    const bool c0 = length == 1 && (first < 0x20 || first == 0x7f);
    const bool c1 = length == 2 && first == 0xc2 && static_cast<unsigned char>(text[at + 1]) < 0xa0;
    const bool allowed = lineBreaks && (first == '\n' || first == '\r' || first == '\t');
    if ((c0 && !allowed) || c1) return std::nullopt;
    at += length;
  }
  return count;
}

}  // namespace qmv::utf8
