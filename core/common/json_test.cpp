#include "core/common/json.h"

#include <gtest/gtest.h>

#include "core/common/utf8.h"

namespace qmv {
namespace {

std::string nested(std::size_t depth, const char* open, const char* close, const std::string& inner = "1") {
  std::string text;
  for (std::size_t i = 0; i < depth; ++i) text += open;
  text += inner;
  for (std::size_t i = 0; i < depth; ++i) text += close;
  return text;
}

TEST(JsonTest, NestingIsBoundedWhereverItHides) {
  // The limit itself is accepted, one more level is not, whatever the container.
  EXPECT_TRUE(isParsed(parseJson(nested(kMaxJsonDepth, "[", "]"))));
  EXPECT_FALSE(isParsed(parseJson(nested(kMaxJsonDepth + 1, "[", "]"))));
  EXPECT_FALSE(isParsed(parseJson(nested(kMaxJsonDepth + 1, "{\"a\":", "}"))));
  // Deep values under "data" or "message" of an otherwise good envelope refuse it whole,
  // as does a deep document that is also truncated or not UTF-8.
  const std::string deep = nested(60000, "[", "]");
  EXPECT_FALSE(isParsed(parseJson(R"({"success":"0","data":)" + deep + "}")));
  EXPECT_FALSE(isParsed(parseJson(R"({"success":"1","message":)" + nested(60000, "{\"m\":", "}") + "}")));
  EXPECT_FALSE(isParsed(parseJson("\xff" + deep.substr(0, 40000))));
}

// Equal values of the same kinds all the way down (nlohmann's == takes 0u for 0).
bool sameTree(const Json& a, const Json& b) {
  if (a.is_discarded() || b.is_discarded()) return a.is_discarded() && b.is_discarded();
  if (a.type() != b.type()) return false;
  if (a.is_object()) {
    if (a.size() != b.size()) return false;
    for (auto x = a.begin(), y = b.begin(); x != a.end(); ++x, ++y) {
      if (x.key() != y.key() || !sameTree(*x, *y)) return false;
    }
    return true;
  }
  if (a.is_array()) {
    if (a.size() != b.size()) return false;
    for (std::size_t i = 0; i < a.size(); ++i) {
      if (!sameTree(a[i], b[i])) return false;
    }
    return true;
  }
  return a == b;
}

// parseJson reads well-formed text in place where it can; what it builds must be what
// nlohmann builds, kind of number and order of keys included, and what either refuses the
// other refuses too.
TEST(JsonTest, ReadsEveryDocumentAsNlohmannDoes) {
  for (const char* text :
       {R"({"b":1,"a":[0,-1,1.5,-0.0,1E2,1e-300,0.1,9223372036854775807,9223372036854775808,18446744073709551615,
            -9223372036854775808,18446744073709551616,-9223372036854775809,1e400]})",
        R"({"z":[-0,{"y":-0}]})", R"({"k":1,"j":2,"k":{"x":null},"k":[true,false]})",
        R"( [ "\u6c82\"\\\/\b\f\n\r\t", "\ud83d\ude00", "a\u0000b", "2026-01-01" ] )", R"({"":{},"e":[],"n":null})",
        "7", "\"text\"", "null", "\xEF\xBB\xBF{\"bom\":1}", "", "   ", "[1,]", "{\"a\":1} x", "[\"\\ud800\"]",
        "{\"a\":\"\x01\"}", "[01]", "[.5]", "[1.]", "[1e]", "[tru]", "nul"}) {
    const Json fast = parseJson(text);
    const Json plain = Json::parse(text, nullptr, false);
    EXPECT_TRUE(sameTree(fast, plain)) << text << "\n" << fast.dump() << "\n" << plain.dump();
  }
}

TEST(JsonTest, StrayBytesReadAsReplacementAndNeverAbortADump) {
  const Json envelope = parseJson("{\"success\":\"1\",\"message\":\"\xff\xfe余额不足\xe4\xbd\"}");
  ASSERT_TRUE(envelope.is_object());
  EXPECT_EQ(envelope["message"], "\uFFFD\uFFFD余额不足\uFFFD\uFFFD");
  // Garbage stays garbage.
  EXPECT_FALSE(isParsed(parseJson("\xff not json")));

  const Json typed = Json::array({"ok", std::string("\xff\xc0\xaf")});
  EXPECT_THROW((void)typed.dump(), nlohmann::json::type_error);
  EXPECT_EQ(dumpJson(typed), "[\"ok\",\"\uFFFD\uFFFD\uFFFD\"]");
}

TEST(Utf8Test, AcceptsExactlyTheWellFormedSequences) {
  for (const char* good : {"", "abc", "济南", "\xF0\x9F\x98\x80", "\xED\x9F\xBF", "\xF4\x8F\xBF\xBF"}) {
    EXPECT_TRUE(utf8::isValid(good)) << good;
  }
  // Stray continuation, overlong forms, a surrogate, above U+10FFFF, cut short.
  for (const char* bad : {"\x80", "\xC0\xAF", "\xE0\x80\xAF", "\xED\xA0\x80", "\xF4\x90\x80\x80", "\xE6\xB5", "\xFF"}) {
    EXPECT_FALSE(utf8::isValid(bad)) << bad;
    EXPECT_TRUE(utf8::isValid(utf8::replacingInvalid(bad)));
  }
  EXPECT_EQ(utf8::replacingInvalid("a\xFF" "b济"), "a\uFFFDb济");
}

}  // namespace
}  // namespace qmv
