#pragma once
// Input validation for the forms of the client: phone numbers, passwords, account names,
// e-mail addresses, identity and bank card numbers, card holder names and amounts.
// Every rule is a regular expression that must match the whole text (UTF-8); a text that
// is not valid UTF-8 never matches. All operations are thread-safe.
#include <string_view>

namespace qmv {

class ControlUtil {
 public:
  // Mobile numbers: 11 digits, the first 1, the second 3 to 9.
  static bool validatePhone(std::string_view text);
  // Login and payment passwords: 6 to 16 ASCII letters or digits.
  static bool validatePWD(std::string_view text);
  // Account names: 5 to 15 ASCII letters or digits.
  static bool validateUserName(std::string_view text);
  static bool validateEmail(std::string_view text);
  // Identity-card numbers: 15 or 18 characters, digits with an optional final x or X.
  static bool validateIdNum(std::string_view text);
  // Amounts with at most two decimals. The separator is matched by any single character
  // ("12a50" passes), a long-standing quirk of the rule that callers rely on.
  static bool validateMoney(std::string_view text);
  // Card holder names: CJK ideographs (U+4E00..U+9FA5) and the middle dot only.
  static bool validateBankMaster(std::string_view text);

  // Bank card numbers. 1 when the text is not 16 or 19 digits; otherwise 0 when the Luhn
  // checksum holds and 2 when it does not.
  static int validateBankNum(std::string_view text);

  // The Luhn checksum over a text of ASCII digits (false for anything else or empty text).
  static bool luhnValid(std::string_view digits);
};

}  // namespace qmv
