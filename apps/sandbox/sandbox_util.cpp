#include "apps/sandbox/sandbox_util.h"

#include <openssl/rand.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <ctime>
#include <stdexcept>
#include <string_view>

#include "core/common/string_util.h"

namespace qmv::sandbox {
namespace {

// Bytes from the system's CSPRNG: session ids and SMS codes must not be predictable from
// earlier ones, and a forked process must not repeat its parent's.
void randomBytes(unsigned char* out, size_t length) {
  if (RAND_bytes(out, static_cast<int>(length)) != 1) throw std::runtime_error("no random bytes available");
}

// `length` symbols each drawn uniformly from the first `radix` characters of `alphabet`:
// bytes at or above the largest multiple of `radix` are drawn again, so no symbol is favoured.
std::string randomText(size_t length, const char* alphabet, unsigned radix) {
  const unsigned limit = 256 - 256 % radix;
  std::string out;
  unsigned char pool[64];
  while (out.size() < length) {
    randomBytes(pool, sizeof pool);
    for (const unsigned char byte : pool) {
      if (byte < limit && out.size() < length) out.push_back(alphabet[byte % radix]);
    }
  }
  return out;
}

std::string formatTime(int64_t seconds, const char* format) {
  std::time_t t = static_cast<std::time_t>(seconds);
  std::tm parts{};
  localtime_r(&t, &parts);
  char buffer[32];
  std::strftime(buffer, sizeof buffer, format, &parts);
  return buffer;
}

}  // namespace

int64_t nowSeconds() {
  return std::chrono::duration_cast<std::chrono::seconds>(std::chrono::system_clock::now().time_since_epoch()).count();
}

std::string timeText(int64_t seconds) { return formatTime(seconds, "%Y-%m-%d %H:%M:%S"); }
std::string dateText(int64_t seconds) { return formatTime(seconds, "%Y-%m-%d"); }

std::string randomHex(size_t length) { return randomText(length, "0123456789abcdef", 16); }

std::string randomDigits(size_t length) { return randomText(length, "0123456789", 10); }

std::optional<int64_t> parseInteger(const std::string& text, int64_t min, int64_t max) {
  if (text.empty() || text.size() > 18) return std::nullopt;
  size_t i = (text[0] == '-' || text[0] == '+') ? 1 : 0;
  if (i == text.size()) return std::nullopt;
  int64_t value = 0;
  for (size_t k = i; k < text.size(); ++k) {
    if (text[k] < '0' || text[k] > '9') return std::nullopt;
    value = value * 10 + (text[k] - '0');
  }
  if (text[0] == '-') value = -value;
  if (value < min || value > max) return std::nullopt;
  return value;
}

std::optional<int64_t> parsePage(const std::string& text) {
  if (text.empty()) return 1;
  return parseInteger(text, 1, 1000000);
}

bool isDigits(const std::string& text, size_t minLength, size_t maxLength) {
  if (text.size() < minLength || text.size() > maxLength) return false;
  for (char c : text) {
    if (c < '0' || c > '9') return false;
  }
  return true;
}

bool isPhone(const std::string& text) {
  return isDigits(text, 11, 11) && text[0] == '1' && text[1] >= '3' && text[1] <= '9';
}

bool isMd5Hex(const std::string& text) {
  if (text.size() != 32) return false;
  for (char c : text) {
    if (!((c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F'))) return false;
  }
  return true;
}

std::optional<std::pair<double, double>> parseLatLng(const std::string& text) {
  const auto comma = text.find(',');
  if (comma == std::string::npos || text.find(',', comma + 1) != std::string::npos) return std::nullopt;
  try {
    size_t used = 0;
    const std::string latText = text.substr(0, comma);
    const std::string lngText = text.substr(comma + 1);
    const double lat = std::stod(latText, &used);
    if (used != latText.size()) return std::nullopt;
    const double lng = std::stod(lngText, &used);
    if (used != lngText.size()) return std::nullopt;
    if (!std::isfinite(lat) || !std::isfinite(lng) || std::fabs(lat) > 90 || std::fabs(lng) > 180) {
      return std::nullopt;
    }
    return std::make_pair(lat, lng);
  } catch (const std::exception&) {
    return std::nullopt;
  }
}

double distanceMetres(double lat1, double lng1, double lat2, double lng2) {
  constexpr double kEarthRadius = 6378137.0;
  constexpr double kRad = M_PI / 180.0;
  const double dLat = (lat2 - lat1) * kRad;
  const double dLng = (lng2 - lng1) * kRad;
  const double a = std::sin(dLat / 2) * std::sin(dLat / 2) +
                   std::cos(lat1 * kRad) * std::cos(lat2 * kRad) * std::sin(dLng / 2) * std::sin(dLng / 2);
  return 2 * kEarthRadius * std::asin(std::min(1.0, std::sqrt(a)));
}

std::map<std::string, std::string> parseCookies(const std::string& header) {
  std::map<std::string, std::string> cookies;
  size_t start = 0;
  while (start < header.size()) {
    const size_t end = std::min(header.find(';', start), header.size());
    const std::string item(trimmed(std::string_view(header).substr(start, end - start)));
    start = end + 1;
    const size_t eq = item.find('=');
    if (eq == 0 || eq == std::string::npos) continue;
    cookies.emplace(item.substr(0, eq), item.substr(eq + 1));
  }
  return cookies;
}

std::string yuanText(int64_t fen) {
  char buffer[32];
  std::snprintf(buffer, sizeof buffer, "%s%lld.%02lld", fen < 0 ? "-" : "",
                static_cast<long long>(std::llabs(fen) / 100), static_cast<long long>(std::llabs(fen) % 100));
  return buffer;
}

}  // namespace qmv::sandbox
