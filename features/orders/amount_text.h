#pragma once
// Readings of the amount texts checkout receives (prices in yuan, the balance in fen) the
// way the screens have always read them: the leading number after blanks, 0 when there is
// none. Server and page texts are hostile: nothing here fails, and what is not a finite
// number reads as 0.
#include <string>
#include <string_view>

namespace qmv {

float floatValueOf(std::string_view text);
double doubleValueOf(std::string_view text);
// Digits after an optional sign; a fraction is cut off and out-of-range values saturate.
long long integerValueOf(std::string_view text);

// printf of one number, e.g. formatAmount("%.2f", 12.5) -> "12.50".
std::string formatAmount(const char* format, double value);

}  // namespace qmv
