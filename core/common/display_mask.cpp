#include "core/common/display_mask.h"

#include <vector>

#include "core/common/utf8.h"

namespace qmv::display_mask {

namespace {

// The code points of `text`, each as its bytes.
std::vector<std::string> characters(std::string_view text) {
  const std::string clean = utf8::replacingInvalid(text);
  std::vector<std::string> out;
  for (std::size_t i = 0; i < clean.size();) {
    const std::size_t length = utf8::sequenceLength(clean, i);
    const std::size_t step = length == 0 ? 1 : length;
    out.emplace_back(clean.substr(i, step));
    i += step;
  }
  return out;
}

std::string masked(const std::vector<std::string>& chars, std::size_t front, std::size_t back, const char* gap) {
  const std::size_t count = chars.size();
  if (front + back >= count) front = back = count / 4;
  std::string out;
  for (std::size_t i = 0; i < front; ++i) out += chars[i];
  if (front > 0) out += gap;
  out.append(count - front - back, '*');
  if (back > 0) out += gap;
  for (std::size_t i = count - back; i < count; ++i) out += chars[i];
  return out;
}

}  // namespace

std::string maskMiddle(std::string_view text, std::size_t front, std::size_t back) {
  return masked(characters(text), front, back, "");
}

std::string phone(std::string_view phone) { return maskMiddle(phone, 3, 4); }

std::string cardNumber(std::string_view cardId) {
  std::vector<std::string> chars = characters(cardId);
  std::erase_if(chars, [](const std::string& c) { return c == " " || c == "\t"; });
  // Set apart only when both ends are kept: a short number reads as one word.
  constexpr std::size_t kKept = 4;
  return masked(chars, kKept, kKept, chars.size() > 2 * kKept ? " " : "");
}

}  // namespace qmv::display_mask
