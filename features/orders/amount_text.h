#pragma once
// Readings of the amount texts checkout receives (prices in yuan, the balance in fen) the
// way the screens have always read them: the leading number after blanks, 0 when there is
// none. Server and page texts are hostile: nothing here fails, and what is not a finite
// number reads as 0.
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace qmv {

// The most one checkout may take, in fen (¥100,000.00): the submit screen's single
// precision holds whole fen only up to about this much.
inline constexpr std::int64_t kMaxPayFen = 10'000'000;

float floatValueOf(std::string_view text);
double doubleValueOf(std::string_view text);
// floatValueOf, except that a number beyond single precision's range ("1e308"), which
// that reads as 0, gives nullopt. A number too small for it still reads as 0.
std::optional<float> floatAmountOf(std::string_view text);
// Digits after an optional sign; a fraction is cut off and out-of-range values saturate.
long long integerValueOf(std::string_view text);

// A plain amount in yuan: digits, then at most two decimals after a point, nothing else
// ("12", "12.5", "12.50"; not "1,000", "1e2", "12.345", "-5" or " 12"). Its fen, or
// nullopt when the text is not one or has more than 12 digits before the point.
std::optional<std::int64_t> plainYuanFen(std::string_view text);
// The same, kept only when it is an amount one checkout may take: 1..kMaxPayFen fen.
std::optional<std::int64_t> payableFen(std::string_view text);

// printf of one number, e.g. formatAmount("%.2f", 12.5) -> "12.50".
std::string formatAmount(const char* format, double value);

}  // namespace qmv
