#pragma once
// Exact decimal arithmetic on numeric texts, for prices and amounts that must not pass
// through binary floating point ("10.01" x "100" is exactly "1001").
//
// Accepted text: optional blanks, an optional sign, digits with at most one decimal point
// (at least one digit in all), an optional exponent ("e" or "E", an optional sign and at
// most three digits), optional blanks. Anything else, and texts longer than 1000
// characters, are refused.
//
// Results are in plain notation without trailing fractional zeros and without a
// trailing point ("1001", "0.5", "-2.25"); zero is "0".
#include <optional>
#include <string>
#include <string_view>

namespace qmv::detail {

// a x b exactly; nullopt when either text is not a number.
std::optional<std::string> decimalMultiply(std::string_view a, std::string_view b);

// a / b rounded half away from zero to `precision` fractional digits (0..64); nullopt when
// either text is not a number, b is zero, or precision is out of range.
std::optional<std::string> decimalDivide(std::string_view a, std::string_view b, int precision);

// -1, 0 or 1 as a is below, equal to or above b, exactly; nullopt when either text is not
// a number.
std::optional<int> decimalCompare(std::string_view a, std::string_view b);

}  // namespace qmv::detail
