#include "features/orders/amount_text.h"

#include <charconv>
#include <cmath>
#include <cstdio>
#include <limits>

namespace qmv {
namespace {

// The text after leading blanks and a leading "+" (from_chars takes only "-").
std::string_view numberStart(std::string_view text) {
  std::size_t at = text.find_first_not_of(" \t\r\n");
  if (at == std::string_view::npos) return {};
  text.remove_prefix(at);
  if (!text.empty() && text.front() == '+') text.remove_prefix(1);
  return text;
}

template <typename Real>
Real realValueOf(std::string_view text) {
  text = numberStart(text);
  // Words such as "inf" and "nan" are not amounts.
  if (text.empty() || !(std::isdigit(static_cast<unsigned char>(text.front())) || text.front() == '-' ||
                        text.front() == '.')) {
    return 0;
  }
  Real value = 0;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
  if (result.ec != std::errc() || !std::isfinite(value)) return 0;
  return value;
}

}  // namespace

float floatValueOf(std::string_view text) { return realValueOf<float>(text); }

double doubleValueOf(std::string_view text) { return realValueOf<double>(text); }

long long integerValueOf(std::string_view text) {
  text = numberStart(text);
  long long value = 0;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
  if (result.ec == std::errc::result_out_of_range) {
    return text.front() == '-' ? std::numeric_limits<long long>::min() : std::numeric_limits<long long>::max();
  }
  return result.ec == std::errc() ? value : 0;
}

std::string formatAmount(const char* format, double value) {
  char text[64];
  const int length = std::snprintf(text, sizeof text, format, value);
  if (length < 0) return {};
  if (static_cast<std::size_t>(length) < sizeof text) return text;
  // Huge values printed with "%f" need more room than any sane amount.
  std::string wide(static_cast<std::size_t>(length) + 1, '\0');
  std::snprintf(wide.data(), wide.size(), format, value);
  wide.resize(static_cast<std::size_t>(length));
  return wide;
}

}  // namespace qmv
