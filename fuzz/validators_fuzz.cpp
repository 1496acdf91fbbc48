// The form validators and the exact decimal arithmetic on price texts. Input: two texts
// separated by the first newline. Each validator sees the whole input; what it accepts
// must have the shape its rule promises, and the arithmetic must be symmetric where
// arithmetic is.
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "core/common/control_util.h"
#include "core/common/string_util.h"
#include "fuzz/fuzz_env.h"

namespace {

void check(bool holds) {
  if (!holds) __builtin_trap();
}

bool allOf(std::string_view text, bool (*pred)(char)) {
  for (const char c : text) {
    if (!pred(c)) return false;
  }
  return true;
}

bool isDigit(char c) { return c >= '0' && c <= '9'; }
bool isAlnum(char c) { return isDigit(c) || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using qmv::ControlUtil;
  const std::string_view text = qmv::fuzz::asText(data, size);

  if (ControlUtil::validatePhone(text)) check(text.size() == 11 && allOf(text, isDigit) && text[0] == '1');
  if (ControlUtil::validatePWD(text)) check(text.size() >= 6 && text.size() <= 16 && allOf(text, isAlnum));
  if (ControlUtil::validateUserName(text)) check(text.size() >= 5 && text.size() <= 15 && allOf(text, isAlnum));
  if (ControlUtil::validateIdNum(text)) check(text.size() == 15 || text.size() == 18);
  ControlUtil::validateEmail(text);
  ControlUtil::validateMoney(text);
  ControlUtil::validateBankMaster(text);
  const int bank = ControlUtil::validateBankNum(text);
  const bool cardShape = (text.size() == 16 || text.size() == 19) && allOf(text, isDigit);
  check(bank == (cardShape ? (ControlUtil::luhnValid(text) ? 0 : 2) : 1));

  const auto [a, b] = qmv::fuzz::splitFirstLine(text);
  using qmv::StringUtil;
  const auto ab = StringUtil::stringCompareWithString(a, b);
  const auto ba = StringUtil::stringCompareWithString(b, a);
  check(ab.has_value() == ba.has_value() && (!ab || *ab == -*ba));
  if (ab) check(StringUtil::stringCompareWithString(a, a) == 0);
  check(StringUtil::multiplyDecimalTexts(a, b) == StringUtil::multiplyDecimalTexts(b, a));
  StringUtil::divideDecimalTexts(a, b, static_cast<int>(size % 70));
  return 0;
}
