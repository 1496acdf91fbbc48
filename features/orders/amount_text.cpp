#include "features/orders/amount_text.h"

#include <algorithm>
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

// The leading number, 0 when there is none; nullopt when it lies outside Real's range.
template <typename Real>
std::optional<Real> leadingNumber(std::string_view text) {
  text = numberStart(text);
  // Words such as "inf" and "nan" are not amounts.
  if (text.empty() ||
      !(std::isdigit(static_cast<unsigned char>(text.front())) || text.front() == '-' || text.front() == '.')) {
    return 0;
  }
  Real value = 0;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
  if (result.ec == std::errc::result_out_of_range) return std::nullopt;
  if (result.ec != std::errc() || !std::isfinite(value)) return 0;
  return value;
}

template <typename Real>
Real realValueOf(std::string_view text) {
  return leadingNumber<Real>(text).value_or(0);
}

}  // namespace

float floatValueOf(std::string_view text) { return realValueOf<float>(text); }

std::optional<float> floatAmountOf(std::string_view text) {
  if (const auto value = leadingNumber<float>(text)) return value;
  // Out of float's range: too small reads as 0, too large (or beyond double) as nothing.
  const auto wide = leadingNumber<double>(text);
  if (wide && std::fabs(*wide) <= std::numeric_limits<float>::max()) return 0.0f;
  return std::nullopt;
}

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

std::optional<std::int64_t> plainYuanFen(std::string_view text) {
  const std::size_t point = text.find('.');
  const std::string_view whole = text.substr(0, point);
  const std::string_view fraction = point == std::string_view::npos ? std::string_view() : text.substr(point + 1);
  const auto digits = [](std::string_view part) {
    return std::all_of(part.begin(), part.end(), [](char c) { return c >= '0' && c <= '9'; });
  };
  if (whole.empty() || !digits(whole) || !digits(fraction)) return std::nullopt;
  if (point != std::string_view::npos && (fraction.empty() || fraction.size() > 2)) return std::nullopt;
  // Leading zeros aside, more digits than the limit has cannot be in range.
  const std::string_view significant = whole.substr(std::min(whole.find_first_not_of('0'), whole.size()));
  if (significant.size() > 12) return std::nullopt;
  std::int64_t fen = 0;
  for (const char c : significant) fen = fen * 10 + (c - '0');
  fen *= 100;
  if (!fraction.empty()) fen += (fraction[0] - '0') * 10;
  if (fraction.size() == 2) fen += fraction[1] - '0';
  return fen;
}

std::optional<std::int64_t> payableFen(std::string_view text) {
  const auto fen = plainYuanFen(text);
  if (!fen || *fen < 1 || *fen > kMaxPayFen) return std::nullopt;
  return fen;
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
