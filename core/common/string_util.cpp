#include "core/common/string_util.h"

#include <openssl/evp.h>

#include <cstdio>
#include <random>
#include <vector>

#include "core/common/decimal_text.h"
#include "core/common/url_parts.h"
#include "qmv/version.h"

namespace qmv {
namespace {

// The code unit of an escape "\uXXXX" starting at `pos`, or -1 when there is none.
long escapeAt(std::string_view text, std::size_t pos) {
  if (pos + 6 > text.size() || text[pos] != '\\' || (text[pos + 1] != 'u' && text[pos + 1] != 'U')) return -1;
  long unit = 0;
  for (std::size_t k = pos + 2; k < pos + 6; ++k) {
    const int v = hexDigitValue(text[k]);
    if (v < 0) return -1;
    unit = unit * 16 + v;
  }
  return unit;
}

void appendUtf8(std::string& out, char32_t cp) {
  if (cp < 0x80) {
    out.push_back(static_cast<char>(cp));
  } else if (cp < 0x800) {
    out.push_back(static_cast<char>(0xC0 | (cp >> 6)));
    out.push_back(static_cast<char>(0x80 | (cp & 0x3F)));
  } else if (cp < 0x10000) {
    out.push_back(static_cast<char>(0xE0 | (cp >> 12)));
    out.push_back(static_cast<char>(0x80 | ((cp >> 6) & 0x3F)));
    out.push_back(static_cast<char>(0x80 | (cp & 0x3F)));
  } else {
    out.push_back(static_cast<char>(0xF0 | (cp >> 18)));
    out.push_back(static_cast<char>(0x80 | ((cp >> 12) & 0x3F)));
    out.push_back(static_cast<char>(0x80 | ((cp >> 6) & 0x3F)));
    out.push_back(static_cast<char>(0x80 | (cp & 0x3F)));
  }
}

// Byte offsets of the code points of `text` (invalid bytes count as one character each).
std::vector<std::size_t> characterStarts(std::string_view text) {
  std::vector<std::size_t> starts;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const auto byte = static_cast<unsigned char>(text[i]);
    if ((byte & 0xC0) != 0x80 || starts.empty()) starts.push_back(i);
  }
  return starts;
}

}  // namespace

std::string StringUtil::getmd5WithString(std::string_view text) {
  unsigned char digest[EVP_MAX_MD_SIZE];
  unsigned int length = 0;
  if (EVP_Digest(text.data(), text.size(), digest, &length, EVP_md5(), nullptr) != 1) return {};
  std::string hex;
  hex.reserve(length * 2);
  for (unsigned int i = 0; i < length; ++i) {
    char pair[3];
    std::snprintf(pair, sizeof pair, "%02x", digest[i]);
    hex += pair;
  }
  return hex;
}

std::string StringUtil::formatPhone(std::string_view phone) {
  const auto starts = characterStarts(phone);
  const std::size_t count = starts.size();
  if (count <= 8) return std::string(phone);  // nothing lies between the kept ends
  std::string out(phone.substr(0, starts[4]));
  out.append(count - 8, '*');
  out.append(phone.substr(starts[count - 4]));
  return out;
}

std::string StringUtil::formatSize(std::int64_t bytes) {
  if (bytes == 0) return "0K";
  if (bytes < 1000) return std::to_string(bytes) + "B";
  if (bytes < 1000000) return std::to_string(bytes / 1000) + "K";
  return std::to_string(bytes / 1000000) + "M";
}

std::string StringUtil::convertUnicodeToString(std::string_view text) {
  std::string out;
  out.reserve(text.size());
  for (std::size_t i = 0; i < text.size();) {
    if (text[i] != '\\' || i + 1 >= text.size() || (text[i + 1] != 'u' && text[i + 1] != 'U')) {
      out.push_back(text[i++]);
      continue;
    }
    const long unit = escapeAt(text, i);
    if (unit <= 0) return std::string(text);                         // short, non-hex or NUL escape
    if (unit >= 0xDC00 && unit <= 0xDFFF) return std::string(text);  // low surrogate alone
    if (unit >= 0xD800 && unit <= 0xDBFF) {
      const long low = escapeAt(text, i + 6);
      if (low < 0xDC00 || low > 0xDFFF) return std::string(text);
      appendUtf8(out, static_cast<char32_t>(0x10000 + ((unit - 0xD800) << 10) + (low - 0xDC00)));
      i += 12;
      continue;
    }
    appendUtf8(out, static_cast<char32_t>(unit));
    i += 6;
  }
  return out;
}

std::optional<std::string> StringUtil::multiplyDecimalTexts(std::string_view a, std::string_view b) {
  return detail::decimalMultiply(a, b);
}

std::optional<std::string> StringUtil::divideDecimalTexts(std::string_view a, std::string_view b, int precision) {
  return detail::decimalDivide(a, b, precision);
}

std::optional<int> StringUtil::stringCompareWithString(std::string_view a, std::string_view b) {
  return detail::decimalCompare(a, b);
}

std::string StringUtil::getAppVersion() { return QMV_VERSION_STRING; }

std::string StringUtil::signingString(const std::map<std::string, std::string>& dictionary,
                                      std::string_view merchantKey) {
  std::string text;
  for (const auto& [key, value] : dictionary) {  // std::map iterates in ascending key order
    if (value.empty() || key == "sign" || key == "key") continue;
    text += key + "=" + value + "&";
  }
  text += "key=";
  text += merchantKey;
  return text;
}

std::string StringUtil::createMd5Sign(const std::map<std::string, std::string>& dictionary,
                                      std::string_view merchantKey) {
  return getmd5WithString(signingString(dictionary, merchantKey));
}

std::string StringUtil::random32Letters() {
  thread_local std::mt19937 engine{std::random_device{}()};
  std::uniform_int_distribution<int> letter(0, 25);
  std::string nonce(32, 'A');
  for (char& c : nonce) c = static_cast<char>('A' + letter(engine));
  return nonce;
}

std::string_view trimmed(std::string_view text) {
  const auto blank = [](char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; };
  while (!text.empty() && blank(text.front())) text.remove_prefix(1);
  while (!text.empty() && blank(text.back())) text.remove_suffix(1);
  return text;
}

}  // namespace qmv
