// The display and input rules of the wallet screens that the end-to-end runs do not reach:
// the bind screen's phone mask and the bounds of the amount field's clamp.
#include <gtest/gtest.h>

#include "features/wallet/qx_bind_bank_card_view_controller.h"
#include "features/wallet/qx_with_draw_view_controller.h"

namespace qmv {
namespace {

TEST(WalletRulesTest, PhoneMaskKeepsThreeAndFourAroundOneStarPerCharacterBeyondSeven) {
  using Screen = QXBindBankCardViewController;
  EXPECT_EQ(Screen::maskedPhone(""), "");
  EXPECT_EQ(Screen::maskedPhone("138000"), "138000");
  EXPECT_EQ(Screen::maskedPhone("1380000"), "1380000");
  EXPECT_EQ(Screen::maskedPhone("13800001234"), "138****1234");
  EXPECT_EQ(Screen::maskedPhone("138000012345"), "138*****2345");
  // Characters, not bytes: a multi-byte character is one star or kept whole.
  EXPECT_EQ(Screen::maskedPhone("电话13800001234"), "电话1******1234");
}

TEST(WalletRulesTest, AmountFieldClampsFromTenMillionYuan) {
  using Screen = QXWithDrawViewController;
  EXPECT_EQ(Screen::clampedAmount("9999999.99"), "9999999.99");
  EXPECT_EQ(Screen::clampedAmount("10000000"), "9999999");
  EXPECT_EQ(Screen::clampedAmount("0010000000.5"), "9999999");
  EXPECT_EQ(Screen::clampedAmount("1e7"), "9999999");
  EXPECT_EQ(Screen::clampedAmount("12345678abc"), "9999999");
  EXPECT_EQ(Screen::clampedAmount("-12345678"), "-12345678");
  EXPECT_EQ(Screen::clampedAmount("abc"), "abc");
  EXPECT_EQ(Screen::leadingNumber(" 12a50"), "12");
  EXPECT_EQ(Screen::leadingNumber("1e5000"), "1");
}

}  // namespace
}  // namespace qmv
