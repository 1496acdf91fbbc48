#pragma once
// Text helpers shared by the screens and the request layer: MD5 digests and the payment
// signature, display masks and sizes, unescaping of "\uXXXX" texts, exact decimal
// arithmetic on price texts and the application version. All operations are thread-safe.
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace qmv {

class StringUtil {
 public:
  // MD5 of the bytes of `text`, as 32 lower-case hexadecimal digits.
  static std::string getmd5WithString(std::string_view text);

  // Masks a phone number for display. Texts of at most 6 characters are returned as is;
  // otherwise the first four and the last four characters stay and every character
  // between becomes "*" ("13812345678" -> "1381***5678"). Texts of 7 or 8 characters have
  // nothing between and come back unchanged. Characters are UTF-8 code points.
  static std::string formatPhone(std::string_view phone);

  // Byte count in decimal units with integer division: 0 -> "0K", 999 -> "999B",
  // 1500 -> "1K", 1500000 -> "1M".
  static std::string formatSize(std::int64_t bytes);

  // Replaces every "\uXXXX" (or "\UXXXX") escape by the character it denotes; a high and
  // a low surrogate escape in a row make one character. When any escape is malformed
  // (fewer than four hexadecimal digits, an unpaired surrogate, a NUL) the text is returned
  // unchanged. Other backslashes are kept as they are.
  static std::string convertUnicodeToString(std::string_view text);

  // a x b, exact. nullopt when either text is not a decimal number (see decimal_text.h
  // for the accepted form). Results have no trailing fractional zeros: "10.01" x "100"
  // is "1001". The system's stringMutiplyWithString:withString:.
  static std::optional<std::string> multiplyDecimalTexts(std::string_view a, std::string_view b);

  // a / b rounded half away from zero to `precision` fractional digits (0..64), trailing
  // zeros dropped. nullopt when either text is not a number, b is zero, or the precision
  // is out of range. The system's stringDividWithString:withString:.
  static std::optional<std::string> divideDecimalTexts(std::string_view a, std::string_view b, int precision = 2);

  // -1, 0 or 1 as a is below, equal to or above b, compared exactly ("10.10" equals
  // "10.1"); nullopt when either text is not a decimal number.
  static std::optional<int> stringCompareWithString(std::string_view a, std::string_view b);

  // The application's short version ("0.1.0").
  static std::string getAppVersion();

  // Payment signature: keys in ascending order, pairs "key=value&" for every key except
  // "sign" and "key" and except empty values, then "key=<merchantKey>"; the MD5 of that
  // text in lower-case hexadecimal.
  static std::string createMd5Sign(const std::map<std::string, std::string>& dictionary, std::string_view merchantKey);

  // The text createMd5Sign digests (exposed so that a signature can be checked by eye).
  static std::string signingString(const std::map<std::string, std::string>& dictionary, std::string_view merchantKey);

  // 32 upper-case letters 'A'..'Z', each drawn uniformly at random (a payment nonce).
  static std::string random32Letters();  // the system's ret32bitString
};

// `text` without the spaces, tabs, carriage returns and line feeds at either end.
std::string_view trimmed(std::string_view text);

}  // namespace qmv
