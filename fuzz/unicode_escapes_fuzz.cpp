// convertUnicodeToString, which turns the "\uXXXX" escapes of server messages into the
// characters shown to the user. Input: any bytes. Besides not crashing: an escape never
// takes fewer bytes than its character, and well-formed UTF-8 stays well-formed.
#include <cstddef>
#include <cstdint>
#include <string>

#include "core/common/string_util.h"
#include "core/common/utf8.h"
#include "fuzz/fuzz_env.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text = qmv::fuzz::asText(data, size);
  const std::string shown = qmv::StringUtil::convertUnicodeToString(text);
  if (shown.size() > text.size()) __builtin_trap();
  if (text.find('\\') == std::string_view::npos && shown != text) __builtin_trap();
  if (qmv::utf8::isValid(text) && !qmv::utf8::isValid(shown)) __builtin_trap();
  return 0;
}
