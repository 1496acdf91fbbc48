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
