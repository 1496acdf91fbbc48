#include "core/common/url_parts.h"

#include <cctype>

namespace qmv {
namespace {

// Malformed escapes are kept as typed rather than dropped.
std::string percentDecode(std::string_view text) {
  std::string out;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '%' && i + 2 < text.size()) {
      const int hi = hexDigitValue(text[i + 1]);
      const int lo = hexDigitValue(text[i + 2]);
      if (hi >= 0 && lo >= 0) {
        out += static_cast<char>(hi * 16 + lo);
        i += 2;
        continue;
      }
    }
    out += text[i];
  }
  return out;
}

}  // namespace

int hexDigitValue(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

std::string percentEncode(std::string_view text) {
  static constexpr char kHex[] = "0123456789ABCDEF";
  std::string out;
  out.reserve(text.size());
  for (const unsigned char c : text) {
    const bool unreserved = (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '-' ||
                            c == '.' || c == '_' || c == '~';
    if (unreserved) {
      out += static_cast<char>(c);
    } else {
      out += '%';
      out += kHex[c >> 4];
      out += kHex[c & 0xF];
    }
  }
  return out;
}

std::string urlScheme(std::string_view url) {
  const auto sep = url.find("://");
  if (sep == std::string_view::npos) return {};
  std::string scheme(url.substr(0, sep));
  for (char& c : scheme) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return scheme;
}

std::string urlAuthority(std::string_view url) {
  const auto sep = url.find("://");
  if (sep == std::string_view::npos) return {};
  const std::string_view rest = url.substr(sep + 3);
  return std::string(rest.substr(0, rest.find_first_of("/?#")));
}

std::string urlHost(std::string_view url) {
  const std::string authority = urlAuthority(url);
  std::string_view rest = authority;
  if (const auto at = rest.rfind('@'); at != std::string_view::npos) rest = rest.substr(at + 1);
  if (const auto colon = rest.find(':'); colon != std::string_view::npos) rest = rest.substr(0, colon);
  std::string host(rest);
  for (char& c : host) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return host;
}

std::map<std::string, std::string> urlQueryPairs(std::string_view url) {
  std::map<std::string, std::string> pairs;
  const auto q = url.find('?');
  if (q == std::string_view::npos) return pairs;
  std::string_view query = url.substr(q + 1);
  query = query.substr(0, query.find('#'));
  while (!query.empty()) {
    const auto amp = query.find('&');
    const std::string_view pair = query.substr(0, amp);
    if (!pair.empty()) {
      const auto eq = pair.find('=');
      if (eq == std::string_view::npos) {
        pairs[percentDecode(pair)] = "";
      } else {
        pairs[percentDecode(pair.substr(0, eq))] = percentDecode(pair.substr(eq + 1));
      }
    }
    if (amp == std::string_view::npos) break;
    query = query.substr(amp + 1);
  }
  return pairs;
}

}  // namespace qmv
