#include "core/common/control_util.h"

#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

namespace qmv {
namespace {

TEST(ControlUtilTest, PhoneNeedsElevenDigitsWithSecondDigitThreeToNine) {
  EXPECT_TRUE(ControlUtil::validatePhone("13812345678"));
  EXPECT_TRUE(ControlUtil::validatePhone("19912345678"));
  EXPECT_FALSE(ControlUtil::validatePhone("1381234567"));    // 10 digits
  EXPECT_FALSE(ControlUtil::validatePhone("138123456789"));  // 12 digits
  for (const char* second : {"0", "1", "2"}) {
    EXPECT_FALSE(ControlUtil::validatePhone(std::string("1") + second + "012345678")) << second;
  }
  EXPECT_FALSE(ControlUtil::validatePhone("23812345678"));
  EXPECT_FALSE(ControlUtil::validatePhone("13812345678\n"));  // "$" must not accept a final newline
  EXPECT_FALSE(ControlUtil::validatePhone(" 13812345678"));
  EXPECT_FALSE(ControlUtil::validatePhone("１３８１２３４５６７８"));  // full-width digits
  EXPECT_FALSE(ControlUtil::validatePhone(""));
}

TEST(ControlUtilTest, PasswordAndUserNameLengthsAndAlphabet) {
  EXPECT_FALSE(ControlUtil::validatePWD("abc12"));
  EXPECT_TRUE(ControlUtil::validatePWD("abc123"));
  EXPECT_TRUE(ControlUtil::validatePWD("ABCdef0123456789"));
  EXPECT_FALSE(ControlUtil::validatePWD("ABCdef01234567890"));
  EXPECT_FALSE(ControlUtil::validatePWD("abc12!"));
  EXPECT_FALSE(ControlUtil::validatePWD("abc 123"));
  EXPECT_FALSE(ControlUtil::validatePWD("密码abcdef"));

  EXPECT_FALSE(ControlUtil::validateUserName("abcd"));
  EXPECT_TRUE(ControlUtil::validateUserName("abcd5"));
  EXPECT_TRUE(ControlUtil::validateUserName("abcdefghij12345"));
  EXPECT_FALSE(ControlUtil::validateUserName("abcdefghij123456"));
  EXPECT_FALSE(ControlUtil::validateUserName("abc_de"));
}

TEST(ControlUtilTest, EmailMustMatchWholeText) {
  EXPECT_TRUE(ControlUtil::validateEmail("a.b_c%d+e-f@mail.example.com"));
  EXPECT_TRUE(ControlUtil::validateEmail("x@y.cn"));
  EXPECT_FALSE(ControlUtil::validateEmail("x@y.c"));
  EXPECT_FALSE(ControlUtil::validateEmail("x@y.comcn"));     // top-level part of 5 letters
  EXPECT_FALSE(ControlUtil::validateEmail("hello x@y.cn"));  // the pattern has no anchors of its own
  EXPECT_FALSE(ControlUtil::validateEmail("x@y.cn trailing"));
  EXPECT_FALSE(ControlUtil::validateEmail("@y.cn"));
  EXPECT_FALSE(ControlUtil::validateEmail("xy.cn"));
}

TEST(ControlUtilTest, IdNumberOf15Or18WithOptionalFinalX) {
  EXPECT_TRUE(ControlUtil::validateIdNum("110101800101123"));
  EXPECT_TRUE(ControlUtil::validateIdNum("11010180010112x"));
  EXPECT_TRUE(ControlUtil::validateIdNum("110101198001011234"));
  EXPECT_TRUE(ControlUtil::validateIdNum("11010119800101123X"));
  EXPECT_TRUE(ControlUtil::validateIdNum("11010119800101123x"));
  EXPECT_FALSE(ControlUtil::validateIdNum("1101011980010112"));     // 16
  EXPECT_FALSE(ControlUtil::validateIdNum("11010119800101123"));    // 17
  EXPECT_FALSE(ControlUtil::validateIdNum("1101011980010112345"));  // 19
  EXPECT_FALSE(ControlUtil::validateIdNum("1101011980010112Y4"));
  EXPECT_FALSE(ControlUtil::validateIdNum("X10101198001011234"));
}

TEST(ControlUtilTest, MoneyKeepsItsAnyCharacterSeparator) {
  EXPECT_TRUE(ControlUtil::validateMoney("0"));
  EXPECT_TRUE(ControlUtil::validateMoney("12.5"));
  EXPECT_TRUE(ControlUtil::validateMoney("12.50"));
  EXPECT_TRUE(ControlUtil::validateMoney("12."));
  EXPECT_FALSE(ControlUtil::validateMoney("12.505"));
  EXPECT_FALSE(ControlUtil::validateMoney(".5"));
  EXPECT_FALSE(ControlUtil::validateMoney("-1"));
  EXPECT_TRUE(ControlUtil::validateMoney("12a50"));  // the unescaped dot matches any character
  EXPECT_TRUE(ControlUtil::validateMoney("12元5"));  // even a multi-byte one, as one character
  EXPECT_FALSE(ControlUtil::validateMoney(""));
}

TEST(ControlUtilTest, BankMasterAcceptsCjkAndMiddleDotOnly) {
  EXPECT_TRUE(ControlUtil::validateBankMaster("张三"));
  EXPECT_TRUE(ControlUtil::validateBankMaster("一"));  // U+4E00, first of the range
  EXPECT_TRUE(ControlUtil::validateBankMaster("龥"));  // U+9FA5, last of the range
  EXPECT_TRUE(ControlUtil::validateBankMaster("阿依古丽·买买提"));
  EXPECT_FALSE(ControlUtil::validateBankMaster("龦"));  // U+9FA6, just past it
  EXPECT_FALSE(ControlUtil::validateBankMaster("Zhang三"));
  EXPECT_FALSE(ControlUtil::validateBankMaster("张 三"));
  EXPECT_FALSE(ControlUtil::validateBankMaster("张三."));
  EXPECT_FALSE(ControlUtil::validateBankMaster(""));
}

TEST(ControlUtilTest, BankNumberShapeThenLuhn) {
  EXPECT_EQ(ControlUtil::validateBankNum("4111111111111111"), 0);
  EXPECT_EQ(ControlUtil::validateBankNum("6222020200112233446"), 0);
  EXPECT_EQ(ControlUtil::validateBankNum("4111111111111112"), 2);  // last digit changed
  EXPECT_EQ(ControlUtil::validateBankNum("6222020200112233445"), 2);
  EXPECT_EQ(ControlUtil::validateBankNum("41111111111111110"), 1);  // 17 digits
  EXPECT_EQ(ControlUtil::validateBankNum("411111111111111"), 1);    // 15 digits
  EXPECT_EQ(ControlUtil::validateBankNum("4111 1111 1111 1111"), 1);
  EXPECT_EQ(ControlUtil::validateBankNum(""), 1);
  // Doubled digits above 9 lose 9: the classic example 79927398713 holds.
  EXPECT_TRUE(ControlUtil::luhnValid("79927398713"));
  EXPECT_FALSE(ControlUtil::luhnValid("79927398710"));
  EXPECT_FALSE(ControlUtil::luhnValid("7992739871a"));
}

TEST(ControlUtilTest, InvalidUtf8AndNulBytesAreRefusedWithoutCrashing) {
  const std::string badUtf8[] = {"\xE5\xBC", "\xFF\xFE", "\xC0\xAF", "\xED\xA0\x80", std::string("张") + "\x80"};
  for (const auto& text : badUtf8) {
    EXPECT_FALSE(ControlUtil::validateBankMaster(text));
    EXPECT_FALSE(ControlUtil::validateMoney("1" + text));
    EXPECT_FALSE(ControlUtil::validatePhone(text));
    EXPECT_FALSE(ControlUtil::validateEmail(text));
    EXPECT_EQ(ControlUtil::validateBankNum(text), 1);
  }
  EXPECT_FALSE(ControlUtil::validatePWD(std::string("abc123\0", 7)));
  EXPECT_FALSE(ControlUtil::validatePhone(std::string_view()));
}

TEST(ControlUtilTest, ConcurrentCallersShareTheCompiledRules) {
  std::vector<std::thread> threads;
  std::vector<int> failures(8, 0);
  for (int t = 0; t < 8; ++t) {
    threads.emplace_back([t, &failures] {
      for (int i = 0; i < 500; ++i) {
        if (!ControlUtil::validateBankMaster("王五") || ControlUtil::validatePhone("12345678901") ||
            ControlUtil::validateBankNum("4111111111111111") != 0) {
          ++failures[t];
        }
      }
    });
  }
  for (auto& th : threads) th.join();
  for (int f : failures) EXPECT_EQ(f, 0);
}

}  // namespace
}  // namespace qmv
