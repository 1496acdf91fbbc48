#include "core/common/display_mask.h"

#include <gtest/gtest.h>

namespace qmv {
namespace {

TEST(DisplayMaskTest, PhonesAndCardsHideTheirMiddleAndShortOnesAreNeverShownWhole) {
  EXPECT_EQ(display_mask::phone("13812345678"), "138****5678");
  EXPECT_EQ(display_mask::phone("12345678"), "123*5678");
  // Too short to keep 3 and 4: a quarter at each end, or nothing at all.
  EXPECT_EQ(display_mask::phone("1234567"), "1*****7");
  EXPECT_EQ(display_mask::phone("1234"), "1**4");
  EXPECT_EQ(display_mask::phone("123"), "***");
  EXPECT_EQ(display_mask::phone(""), "");

  EXPECT_EQ(display_mask::cardNumber("6222020200112233446"), "6222 *********** 3446");
  EXPECT_EQ(display_mask::cardNumber("6222 0202 0011 2233"), "6222 ******** 2233");  // blanks dropped first
  EXPECT_EQ(display_mask::cardNumber("62220202"), "62****02");
  EXPECT_EQ(display_mask::cardNumber("12"), "**");

  // Characters, not bytes: a mask never cuts a character, and stray bytes become U+FFFD.
  EXPECT_EQ(display_mask::phone("一二三四五六七八九十壹"), "一二三****八九十壹");
  EXPECT_EQ(display_mask::maskMiddle("甲乙丙丁", 3, 4), "甲**丁");
  EXPECT_EQ(display_mask::maskMiddle("\xff" "2345678", 1, 1), "\xEF\xBF\xBD******8");
}

}  // namespace
}  // namespace qmv
