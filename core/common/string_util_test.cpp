#include "core/common/string_util.h"

#include <gtest/gtest.h>

#include <set>

namespace qmv {
namespace {

TEST(StringUtilTest, Md5IsLowerCaseHexOfTheUtf8Bytes) {
  EXPECT_EQ(StringUtil::getmd5WithString(""), "d41d8cd98f00b204e9800998ecf8427e");
  EXPECT_EQ(StringUtil::getmd5WithString("中文"), "a7bac2239fcdcb3a067903d8077c4a07");
}

TEST(StringUtilTest, FormatPhoneKeepsFourAtEachEnd) {
  EXPECT_EQ(StringUtil::formatPhone("13812345678"), "1381***5678");
  EXPECT_EQ(StringUtil::formatPhone("123456"), "123456");
  EXPECT_EQ(StringUtil::formatPhone(""), "");
  EXPECT_EQ(StringUtil::formatPhone("1234567"), "1234567");  // ends overlap: nothing to mask
  EXPECT_EQ(StringUtil::formatPhone("12345678"), "12345678");
  EXPECT_EQ(StringUtil::formatPhone("123456789"), "1234*6789");
  EXPECT_EQ(StringUtil::formatPhone("一二三四五六七八九十"), "一二三四**七八九十");
}

TEST(StringUtilTest, FormatSizeUsesDecimalUnitsAndIntegerDivision) {
  EXPECT_EQ(StringUtil::formatSize(0), "0K");
  EXPECT_EQ(StringUtil::formatSize(1), "1B");
  EXPECT_EQ(StringUtil::formatSize(999), "999B");
  EXPECT_EQ(StringUtil::formatSize(1000), "1K");
  EXPECT_EQ(StringUtil::formatSize(999999), "999K");
  EXPECT_EQ(StringUtil::formatSize(1000000), "1M");
  EXPECT_EQ(StringUtil::formatSize(1500000), "1M");
  EXPECT_EQ(StringUtil::formatSize(2500000000LL), "2500M");
}

TEST(StringUtilTest, ConvertUnicodeToStringDecodesEscapes) {
  EXPECT_EQ(StringUtil::convertUnicodeToString(R"(\u7528\u6237\u4e2d\u9014\u53d6\u6d88)"), "用户中途取消");
  EXPECT_EQ(StringUtil::convertUnicodeToString(R"(\U4E2D: ok)"), "中: ok");
  EXPECT_EQ(StringUtil::convertUnicodeToString(R"(a\u0041\u00e9)"), "aAé");
  EXPECT_EQ(StringUtil::convertUnicodeToString(R"(\ud83d\ude00!)"), "\U0001F600!");  // surrogate pair
  EXPECT_EQ(StringUtil::convertUnicodeToString("plain 文本"), "plain 文本");
  EXPECT_EQ(StringUtil::convertUnicodeToString(R"(path\to\file)"), R"(path\to\file)");
  // Malformed escapes leave the whole text as it was.
  for (const char* bad :
       {R"(\u12)", R"(x\u12G4y \u4e2d)", R"(\ud83d alone)", R"(\ude00)", R"(\ud83d\u0041)", R"(\u0000)", R"(end\u)"}) {
    EXPECT_EQ(StringUtil::convertUnicodeToString(bad), bad);
  }
}

TEST(StringUtilTest, DecimalArithmeticIsExact) {
  EXPECT_EQ(StringUtil::multiplyDecimalTexts("10.01", "100"), "1001");
  EXPECT_EQ(StringUtil::multiplyDecimalTexts("0.1", "3"), "0.3");
  EXPECT_EQ(StringUtil::multiplyDecimalTexts("19.99", "3"), "59.97");
  EXPECT_EQ(StringUtil::multiplyDecimalTexts("-1.5", "2"), "-3");
  EXPECT_EQ(StringUtil::multiplyDecimalTexts("-1.5", "-0.5"), "0.75");
  EXPECT_EQ(StringUtil::multiplyDecimalTexts("0", "-7"), "0");
  EXPECT_EQ(StringUtil::multiplyDecimalTexts(" 1e2 ", "0.35"), "35");
  EXPECT_EQ(StringUtil::multiplyDecimalTexts("99999999999999999999", "99999999999999999999"),
            "9999999999999999999800000000000000000001");

  EXPECT_EQ(StringUtil::divideDecimalTexts("1001", "100"), "10.01");
  EXPECT_EQ(StringUtil::divideDecimalTexts("2", "3"), "0.67");
  EXPECT_EQ(StringUtil::divideDecimalTexts("1", "3", 5), "0.33333");
  EXPECT_EQ(StringUtil::divideDecimalTexts("-2", "3"), "-0.67");  // half away from zero
  EXPECT_EQ(StringUtil::divideDecimalTexts("0.125", "1"), "0.13");
  EXPECT_EQ(StringUtil::divideDecimalTexts("5", "2", 0), "3");
  EXPECT_EQ(StringUtil::divideDecimalTexts("150", "100"), "1.5");
  EXPECT_EQ(StringUtil::divideDecimalTexts("0.001", "1"), "0");
  EXPECT_EQ(StringUtil::divideDecimalTexts("1", "0.004"), "250");

  EXPECT_EQ(StringUtil::stringCompareWithString("10.10", "1e1"), 1);
  EXPECT_EQ(StringUtil::stringCompareWithString("10.10", "10.1"), 0);
  EXPECT_EQ(StringUtil::stringCompareWithString("9.99999989", "9.9999999"), -1);
  EXPECT_EQ(StringUtil::stringCompareWithString("-2", "-10"), 1);
  EXPECT_EQ(StringUtil::stringCompareWithString("-0.0", "0"), 0);
  EXPECT_EQ(StringUtil::stringCompareWithString("-1", "0.5"), -1);
  // Beyond what a double tells apart.
  EXPECT_EQ(StringUtil::stringCompareWithString("100000000000000000001", "1e20"), 1);
}

TEST(StringUtilTest, DecimalArithmeticRefusesNonNumbers) {
  for (const char* bad : {"", " ", "abc", "1.2.3", "1,5", "--1", "1e", "1e1000", "0x10", ".", "NaN", "12元"}) {
    EXPECT_EQ(StringUtil::multiplyDecimalTexts(bad, "1"), std::nullopt) << bad;
    EXPECT_EQ(StringUtil::divideDecimalTexts("1", bad), std::nullopt) << bad;
    EXPECT_EQ(StringUtil::stringCompareWithString(bad, "1"), std::nullopt) << bad;
  }
  EXPECT_EQ(StringUtil::divideDecimalTexts("1", "0"), std::nullopt);
  EXPECT_EQ(StringUtil::divideDecimalTexts("1", "0.000"), std::nullopt);
  EXPECT_EQ(StringUtil::divideDecimalTexts("1", "3", -1), std::nullopt);
  EXPECT_EQ(StringUtil::divideDecimalTexts("1", "3", 65), std::nullopt);
  EXPECT_EQ(StringUtil::multiplyDecimalTexts(std::string(1001, '9'), "1"), std::nullopt);
  // The largest accepted operands still finish.
  std::string hugeA(900, '7');
  hugeA.append("e-999");
  std::string hugeB(900, '3');
  hugeB.append("e999");
  EXPECT_TRUE(StringUtil::divideDecimalTexts(hugeA, hugeB, 64));
}

TEST(StringUtilTest, SignatureSortsKeysAndSkipsEmptySignAndKey) {
  std::map<std::string, std::string> dict = {{"timestamp", "T"}, {"prepayid", "Y"}, {"package", "Sign=WXPay"},
                                             {"partnerid", "P"}, {"noncestr", "N"}, {"appid", "A"}};
  const std::string expected = "appid=A&noncestr=N&package=Sign=WXPay&partnerid=P&prepayid=Y&timestamp=T&key=K";
  EXPECT_EQ(StringUtil::signingString(dict, "K"), expected);
  EXPECT_EQ(StringUtil::createMd5Sign(dict, "K"), "dd128dfe90f72405810cde983df98acb");

  dict["sign"] = "old";
  dict["key"] = "leak";
  dict["prepayid"] = "";
  EXPECT_EQ(StringUtil::signingString(dict, "K"),
            "appid=A&noncestr=N&package=Sign=WXPay&partnerid=P&timestamp=T&key=K");
  EXPECT_EQ(StringUtil::signingString({}, "K"), "key=K");
}

TEST(StringUtilTest, NonceIsThirtyTwoUpperCaseLetters) {
  std::set<std::string> seen;
  std::set<char> letters;
  for (int i = 0; i < 200; ++i) {
    const std::string nonce = StringUtil::random32Letters();
    ASSERT_EQ(nonce.size(), 32u);
    for (char c : nonce) {
      ASSERT_TRUE(c >= 'A' && c <= 'Z') << nonce;
      letters.insert(c);
    }
    seen.insert(nonce);
  }
  EXPECT_EQ(seen.size(), 200u);
  EXPECT_EQ(letters.size(), 26u);  // 6400 draws reach every letter
}

}  // namespace
}  // namespace qmv
