#include "core/common/decimal_text.h"

#include <algorithm>
#include <cstdlib>
#include <vector>

namespace qmv::detail {
namespace {

constexpr std::size_t kMaxTextLength = 1000;
constexpr int kMaxPrecision = 64;

// Unsigned big integer as decimal digits, most significant first, no leading zeros
// ("" stands for zero).
using Digits = std::string;

struct Decimal {
  bool negative = false;
  Digits unscaled;  // value = unscaled / 10^scale
  int scale = 0;
};

Digits trimmed(Digits d) {
  const auto first = d.find_first_not_of('0');
  return first == Digits::npos ? Digits() : d.substr(first);
}

bool isBlank(char c) { return c == ' ' || c == '\t'; }
bool isDigit(char c) { return c >= '0' && c <= '9'; }

std::optional<Decimal> parse(std::string_view text) {
  if (text.size() > kMaxTextLength) return std::nullopt;
  while (!text.empty() && isBlank(text.front())) text.remove_prefix(1);
  while (!text.empty() && isBlank(text.back())) text.remove_suffix(1);
  Decimal out;
  std::size_t i = 0;
  if (i < text.size() && (text[i] == '+' || text[i] == '-')) out.negative = text[i++] == '-';
  Digits digits;
  bool point = false;
  int fraction = 0;
  for (; i < text.size(); ++i) {
    const char c = text[i];
    if (isDigit(c)) {
      digits.push_back(c);
      if (point) ++fraction;
    } else if (c == '.' && !point) {
      point = true;
    } else {
      break;
    }
  }
  if (digits.empty()) return std::nullopt;
  int exponent = 0;
  if (i < text.size() && (text[i] == 'e' || text[i] == 'E')) {
    ++i;
    bool expNegative = false;
    if (i < text.size() && (text[i] == '+' || text[i] == '-')) expNegative = text[i++] == '-';
    const std::size_t start = i;
    while (i < text.size() && isDigit(text[i]) && i - start < 4) exponent = exponent * 10 + (text[i++] - '0');
    if (i == start || i - start > 3) return std::nullopt;
    if (expNegative) exponent = -exponent;
  }
  if (i != text.size()) return std::nullopt;
  out.unscaled = trimmed(std::move(digits));
  out.scale = fraction - exponent;
  if (out.scale < 0) {
    out.unscaled.append(static_cast<std::size_t>(-out.scale), '0');
    out.unscaled = trimmed(std::move(out.unscaled));
    out.scale = 0;
  }
  if (out.unscaled.empty()) out.negative = false;
  return out;
}

Digits multiply(const Digits& a, const Digits& b) {
  if (a.empty() || b.empty()) return {};
  std::vector<int> acc(a.size() + b.size(), 0);
  for (std::size_t i = a.size(); i-- > 0;) {
    for (std::size_t j = b.size(); j-- > 0;) {
      acc[i + j + 1] += (a[i] - '0') * (b[j] - '0');
    }
  }
  for (std::size_t k = acc.size(); k-- > 1;) {
    acc[k - 1] += acc[k] / 10;
    acc[k] %= 10;
  }
  Digits out;
  for (int v : acc) out.push_back(static_cast<char>('0' + v));
  return trimmed(std::move(out));
}

int compare(const Digits& a, const Digits& b) {
  if (a.size() != b.size()) return a.size() < b.size() ? -1 : 1;
  return a.compare(b) < 0 ? -1 : (a == b ? 0 : 1);
}

// a - b, REQUIRES: a >= b.
Digits subtract(const Digits& a, const Digits& b) {
  Digits out = a;
  int borrow = 0;
  for (std::size_t k = 0; k < out.size(); ++k) {
    const std::size_t ia = out.size() - 1 - k;
    int v = (out[ia] - '0') - borrow - (k < b.size() ? b[b.size() - 1 - k] - '0' : 0);
    borrow = v < 0 ? 1 : 0;
    if (v < 0) v += 10;
    out[ia] = static_cast<char>('0' + v);
  }
  return trimmed(std::move(out));
}

Digits addOne(Digits a) {
  for (std::size_t k = a.size(); k-- > 0;) {
    if (a[k] != '9') {
      ++a[k];
      return a;
    }
    a[k] = '0';
  }
  return "1" + a;
}

// Long division: quotient and remainder of n / d. REQUIRES: d non-zero.
std::pair<Digits, Digits> divide(const Digits& n, const Digits& d) {
  Digits quotient;
  Digits remainder;
  for (char c : n) {
    remainder = trimmed(remainder + c);
    int times = 0;
    while (compare(remainder, d) >= 0) {
      remainder = subtract(remainder, d);
      ++times;
    }
    quotient.push_back(static_cast<char>('0' + times));
  }
  return {trimmed(std::move(quotient)), remainder};
}

std::string format(bool negative, Digits unscaled, int scale) {
  if (unscaled.empty()) return "0";
  if (scale > 0) {
    if (static_cast<int>(unscaled.size()) <= scale) {
      unscaled.insert(0, static_cast<std::size_t>(scale) - unscaled.size() + 1, '0');
    }
    std::string integral = unscaled.substr(0, unscaled.size() - static_cast<std::size_t>(scale));
    std::string fraction = unscaled.substr(integral.size());
    while (!fraction.empty() && fraction.back() == '0') fraction.pop_back();
    unscaled = fraction.empty() ? integral : integral + "." + fraction;
  }
  return negative ? "-" + unscaled : unscaled;
}

}  // namespace

std::optional<std::string> decimalMultiply(std::string_view a, std::string_view b) {
  const auto x = parse(a);
  const auto y = parse(b);
  if (!x || !y) return std::nullopt;
  Digits product = multiply(x->unscaled, y->unscaled);
  const bool negative = !product.empty() && x->negative != y->negative;
  return format(negative, std::move(product), x->scale + y->scale);
}

std::optional<std::string> decimalDivide(std::string_view a, std::string_view b, int precision) {
  if (precision < 0 || precision > kMaxPrecision) return std::nullopt;
  const auto x = parse(a);
  const auto y = parse(b);
  if (!x || !y || y->unscaled.empty()) return std::nullopt;
  // x/y = (X / 10^sx) / (Y / 10^sy); scaled by 10^p: X * 10^(sy + p) / (Y * 10^sx).
  Digits numerator = x->unscaled;
  if (!numerator.empty()) numerator.append(static_cast<std::size_t>(y->scale + precision), '0');
  Digits denominator = y->unscaled + std::string(static_cast<std::size_t>(x->scale), '0');
  auto [quotient, remainder] = divide(numerator, denominator);
  // Half away from zero: round up the magnitude when 2 x remainder >= denominator.
  if (compare(multiply(remainder, "2"), denominator) >= 0) quotient = addOne(std::move(quotient));
  quotient = trimmed(std::move(quotient));
  const bool negative = !quotient.empty() && x->negative != y->negative;
  return format(negative, std::move(quotient), precision);
}

std::optional<int> decimalCompare(std::string_view a, std::string_view b) {
  const auto x = parse(a);
  const auto y = parse(b);
  if (!x || !y) return std::nullopt;
  const int sign = x->negative ? -1 : 1;
  if (x->negative != y->negative) return sign;
  // Both on the larger scale, so that the unscaled digits compare as the values do.
  const int scale = std::max(x->scale, y->scale);
  const Digits mx = trimmed(x->unscaled + std::string(static_cast<std::size_t>(scale - x->scale), '0'));
  const Digits my = trimmed(y->unscaled + std::string(static_cast<std::size_t>(scale - y->scale), '0'));
  return sign * compare(mx, my);
}

}  // namespace qmv::detail
