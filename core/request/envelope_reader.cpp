#include "core/request/envelope_reader.h"

#include <array>

#include "core/common/json.h"

namespace qmv {
namespace {

// Numbers longer than this might not be finite as parseJson reads them.
constexpr std::size_t kLongestNumber = 300;

bool isDigit(char c) { return c >= '0' && c <= '9'; }

int hexValue(char c) {
  if (isDigit(c)) return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

// A reader of the text that gives up (false) on anything it does not read plainly.
class Cursor {
 public:
  explicit Cursor(std::string_view text) : at_(text.data()), end_(text.data() + text.size()) {}

  bool atEnd() const { return at_ == end_; }
  char peek() const { return *at_; }
  void skip() { ++at_; }
  void skipSpace() {
    while (at_ != end_ && (*at_ == ' ' || *at_ == '\n' || *at_ == '\r' || *at_ == '\t')) ++at_;
  }

  // At the opening quote: reads up to the closing one. `raw` is the text between them and
  // `escaped` whether it holds an escape (`raw` is then not the string's value).
  bool string(std::string_view& raw, bool& escaped) {
    const char* begin = ++at_;
    escaped = false;
    while (at_ != end_) {
      const char c = *at_;
      if (c == '"') {
        raw = std::string_view(begin, static_cast<std::size_t>(at_ - begin));
        ++at_;
        return true;
      }
      if (static_cast<unsigned char>(c) < 0x20) return false;
      if (c == '\\') {
        escaped = true;
        if (!escape()) return false;
      } else {
        ++at_;
      }
    }
    return false;
  }

  bool literal(std::string_view word) {
    if (static_cast<std::size_t>(end_ - at_) < word.size() || std::string_view(at_, word.size()) != word) return false;
    at_ += word.size();
    return true;
  }

  // An integer or a decimal fraction without an exponent.
  bool number() {
    const char* begin = at_;
    if (at_ != end_ && *at_ == '-') ++at_;
    if (at_ == end_) return false;
    if (*at_ == '0') {
      ++at_;
    } else if (isDigit(*at_)) {
      while (at_ != end_ && isDigit(*at_)) ++at_;
    } else {
      return false;
    }
    if (at_ != end_ && *at_ == '.') {
      ++at_;
      if (at_ == end_ || !isDigit(*at_)) return false;
      while (at_ != end_ && isDigit(*at_)) ++at_;
    }
    if (at_ != end_ && (*at_ == 'e' || *at_ == 'E')) return false;
    return static_cast<std::size_t>(at_ - begin) <= kLongestNumber;
  }

 private:
  // At a backslash. A \u escape of half a surrogate pair is left to the full reader.
  bool escape() {
    ++at_;
    if (at_ == end_) return false;
    const char c = *at_++;
    switch (c) {
      case '"':
      case '\\':
      case '/':
      case 'b':
      case 'f':
      case 'n':
      case 'r':
      case 't':
        return true;
      case 'u': {
        if (end_ - at_ < 4) return false;
        int code = 0;
        for (int i = 0; i < 4; ++i) {
          const int digit = hexValue(*at_++);
          if (digit < 0) return false;
          code = code * 16 + digit;
        }
        return code < 0xD800 || code > 0xDFFF;
      }
      default:
        return false;
    }
  }

  const char* at_;
  const char* end_;
};

}  // namespace

std::optional<Envelope> scanEnvelope(std::string_view text) {
  // Checked at once for the whole text: a byte outside a string that is not ASCII is
  // refused below anyway.
  if (!simdjson::validate_utf8(text)) return std::nullopt;
  Cursor cursor(text);
  cursor.skipSpace();
  if (cursor.atEnd() || cursor.peek() != '{') return std::nullopt;

  Envelope envelope;
  envelope.isObject = true;
  // Whether each open container is an object, outermost first.
  std::array<bool, kMaxJsonDepth> inObject{};
  std::size_t depth = 0;
  // The envelope text that the value being read sets, when it is a member of the root
  // named "success" or "message".
  std::string* target = nullptr;

  // After an opening brace or a comma in an object: the key and its colon.
  const auto key = [&]() -> bool {
    cursor.skipSpace();
    if (cursor.atEnd() || cursor.peek() != '"') return false;
    std::string_view name;
    bool escaped = false;
    if (!cursor.string(name, escaped)) return false;
    if (depth == 1) {
      if (escaped) return false;
      target = name == "success" ? &envelope.success : name == "message" ? &envelope.message : nullptr;
    }
    cursor.skipSpace();
    if (cursor.atEnd() || cursor.peek() != ':') return false;
    cursor.skip();
    return true;
  };

  bool wantValue = true;
  for (;;) {
    cursor.skipSpace();
    if (wantValue) {
      if (cursor.atEnd()) return std::nullopt;
      const char c = cursor.peek();
      if (c == '{' || c == '[') {
        // An envelope text that is not a string is left to the full reader.
        if (target != nullptr || depth == kMaxJsonDepth) return std::nullopt;
        cursor.skip();
        inObject[depth++] = c == '{';
        cursor.skipSpace();
        if (cursor.atEnd()) return std::nullopt;
        if (cursor.peek() == (c == '{' ? '}' : ']')) {
          cursor.skip();
          --depth;
          wantValue = false;
        } else if (c == '{' && !key()) {
          return std::nullopt;
        }
        continue;
      }
      if (c == '"') {
        std::string_view value;
        bool escaped = false;
        if (!cursor.string(value, escaped)) return std::nullopt;
        if (target != nullptr) {
          if (escaped) return std::nullopt;
          target->assign(value);
        }
      } else if (target != nullptr) {
        return std::nullopt;
      } else if (c == 't' || c == 'f' || c == 'n') {
        if (!cursor.literal(c == 't' ? "true" : c == 'f' ? "false" : "null")) return std::nullopt;
      } else if (!cursor.number()) {
        return std::nullopt;
      }
      target = nullptr;
      wantValue = false;
      continue;
    }
    if (depth == 0) return cursor.atEnd() ? std::optional<Envelope>(std::move(envelope)) : std::nullopt;
    if (cursor.atEnd()) return std::nullopt;
    const bool object = inObject[depth - 1];
    const char c = cursor.peek();
    cursor.skip();
    if (c == ',') {
      if (object && !key()) return std::nullopt;
      wantValue = true;
    } else if (c != (object ? '}' : ']')) {
      return std::nullopt;
    } else {
      --depth;
    }
  }
}

}  // namespace qmv
