#include "core/common/url_parts.h"

#include <gtest/gtest.h>

namespace qmv {
namespace {

TEST(UrlPartsTest, HostSchemeAndQueryPairs) {
  EXPECT_EQ(urlHost("qqqmmmvvv://safepay/?resultStatus=9000"), "safepay");
  EXPECT_EQ(urlHost("qqqmmmvvv://uppayresult?code=success"), "uppayresult");
  EXPECT_EQ(urlHost("http://user:pw@example.test:8080/a"), "example.test");
  EXPECT_EQ(urlHost("QMV://LOGIN?x=Y"), "login");
  EXPECT_EQ(urlHost("no scheme here"), "");
  EXPECT_EQ(urlAuthority("qqqmmmvvv://evil.test@uppayresult:80?code=success"), "evil.test@uppayresult:80");
  EXPECT_EQ(urlAuthority("qqqmmmvvv://uppayresult#?code=success"), "uppayresult");
  EXPECT_EQ(urlScheme("QMV://pay?x=1"), "qmv");

  const auto pairs =
      urlQueryPairs("qmv://pay?productId=7&series=12&acount=3&memo=%E7%94%A8%E6%88%B7&flag&x=1&x=2#frag");
  EXPECT_EQ(pairs.at("productId"), "7");
  EXPECT_EQ(pairs.at("series"), "12");
  EXPECT_EQ(pairs.at("acount"), "3");
  EXPECT_EQ(pairs.at("memo"), "用户");
  EXPECT_EQ(pairs.at("flag"), "");
  EXPECT_EQ(pairs.at("x"), "2");
  EXPECT_FALSE(pairs.contains("frag"));
  // A broken escape is kept as typed, never read past the end.
  EXPECT_EQ(urlQueryPairs("a://b?v=%E&w=%").at("v"), "%E");
  EXPECT_EQ(urlQueryPairs("a://b?v=%E&w=%").at("w"), "%");
  EXPECT_TRUE(urlQueryPairs("a://b").empty());
}

}  // namespace
}  // namespace qmv
