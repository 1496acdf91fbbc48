// The card screens against a scripted server: what the my-bank-card screen does with each
// kind of answer, and the bind screen's code button, checks and binding.
#include <gtest/gtest.h>

#include "core/request/net_api_test_support.h"
#include "features/wallet/my_bank_card_view_controller.h"
#include "features/wallet/qx_bind_bank_card_view_controller.h"

namespace qmv {
namespace {

class WalletScreensTest : public testsupport::ApiServerTest {
 protected:
  void SetUp() override {
    ApiServerTest::SetUp();
    GlobalData::sharedInstance().setSelfInfo(
        std::make_shared<UserInfoModel>(Json{{"sessionId", "S1"}, {"phone", "13800001234"}, {"bankCardNum", "0"}}));
    navigator_->push("QXWalletViewController");
  }
  std::string topScreen() const { return navigator_->topScreen().value_or(Screen{}).name; }
  bool waitFor(const std::optional<bool>& value) {
    return loop_->runUntil([&] { return value.has_value(); }, std::chrono::seconds(10));
  }
};

TEST_F(WalletScreensTest, MyBankCardShowsOnlyACardWithANumberAndLeavesOnAFailedLoad) {
  navigator_->push(wallet_texts::kMyBankCardScreen);
  MyBankCardViewController screen;
  std::optional<bool> stayed;
  screen.onLoaded = [&](bool s) { stayed = s; };
  const auto load = [&](const std::string& body, int status = 200) {
    answer("getBoundBankCard", body, status);
    stayed.reset();
    screen.viewWillAppear();
    EXPECT_TRUE(waitFor(stayed));
    return stayed.value_or(false);
  };
  EXPECT_TRUE(load(R"({"success":"0","data":{"cardId":"","name":"张三","cardBank":"中国银行"}})"));
  EXPECT_TRUE(screen.view().addPanelShown());
  EXPECT_TRUE(load(R"({"success":"0","data":{"cardId":null}})"));
  EXPECT_TRUE(screen.view().addPanelShown());
  EXPECT_TRUE(load(R"({"success":"0","data":{"cardId":"6222020200112233446","name":"张三","cardBank":"中国银行"}})"));
  EXPECT_EQ(screen.view().nameText(), "张三   中国银行");
  EXPECT_EQ(screen.view().cardNumberText(), "6222020200112233446");
  EXPECT_EQ(topScreen(), wallet_texts::kMyBankCardScreen);

  EXPECT_FALSE(load(R"({"success":"1","message":"系统繁忙"})"));
  EXPECT_TRUE(screen.view().addPanelShown()) << "every appearance hides the card first";
  EXPECT_EQ(topScreen(), "QXWalletViewController");
  navigator_->push(wallet_texts::kMyBankCardScreen);
  EXPECT_FALSE(load("", 500));
  EXPECT_EQ(topScreen(), "QXWalletViewController");
}

TEST_F(WalletScreensTest, BindScreenSendsTheCodeChecksInOrderAndBindsTheFieldsAsTyped) {
  navigator_->push(wallet_texts::kMyBankCardScreen);
  navigator_->push(wallet_texts::kBindScreen);
  QXBindBankCardViewController screen;
  screen.viewDidLoad();
  EXPECT_EQ(screen.phoneLabelText(), "    138****1234");

  answer("getMobileCode", R"({"success":"0","data":{"sessionId":"C1"}})");
  std::optional<bool> sent;
  screen.onCodeFinished = [&](bool correct) { sent = correct; };
  screen.getCodeAction();
  ASSERT_TRUE(waitFor(sent));
  EXPECT_EQ(last().arguments, (testsupport::Arguments{{"sessionId", "S1"}, {"mobile", "13800001234"}}));
  EXPECT_EQ(overlay_->statuses().back(), "验证码发送成功");
  screen.intervalTimerCallback();
  EXPECT_EQ(screen.codeButtonTitle(), "00:59");
  EXPECT_FALSE(screen.codeButtonEnabled());

  using Field = QXBindBankCardViewController::Field;
  EXPECT_EQ(screen.textFieldShouldReturn(Field::Name), Field::IdNumber);
  EXPECT_EQ(screen.textFieldShouldReturn(Field::IdNumber), Field::CardNumber);
  EXPECT_EQ(screen.textFieldShouldReturn(Field::CardNumber), Field::Code);
  // Every field wrong at once: each fix reveals the next check; the code field's return
  // key binds.
  const auto expectRefusal = [&](const std::string& message) {
    EXPECT_EQ(screen.textFieldShouldReturn(Field::Code), std::nullopt);
    EXPECT_EQ(overlay_->statuses().back(), message);
  };
  expectRefusal("请输入持卡人姓名");
  screen.nameText = "Zhang";
  expectRefusal("请输入身份证号码");
  screen.idNumText = "37130219900101123";
  expectRefusal("请输入银行卡号");
  screen.cardNumText = "62220202001122334";
  expectRefusal("持卡人姓名格式不正确");
  screen.nameText = "张·三";
  expectRefusal("身份证号格式不正确");
  screen.idNumText = "37130219900101123x";
  expectRefusal("银行卡格式不正确");
  screen.cardNumText = "6222020200112233445";
  expectRefusal("暂时不支持此类银行卡");
  screen.cardNumText = "6222020200112233446";
  expectRefusal("请输入验证码");
  EXPECT_EQ(received().size(), 1u) << "only the code request went out";

  answer("bindBankCard", R"({"success":"0","message":""})");
  screen.codeText = "123456";
  std::optional<bool> bound;
  screen.onFinished = [&](bool correct) { bound = correct; };
  ASSERT_TRUE(screen.bindAction());
  ASSERT_TRUE(waitFor(bound));
  EXPECT_TRUE(*bound);
  EXPECT_EQ(last().endpoint, "bindBankCard");
  EXPECT_EQ(last().arguments, (testsupport::Arguments{{"sessionId", "S1"},
                                                      {"name", "张·三"},
                                                      {"cardId", "6222020200112233446"},
                                                      {"certifId", "37130219900101123x"},
                                                      {"identifying", "123456"}}));
  EXPECT_EQ(overlay_->statuses().back(), "绑定成功");
  EXPECT_EQ(GlobalData::sharedInstance().selfInfo()->bankCardNum, "1");
  EXPECT_EQ(topScreen(), wallet_texts::kMyBankCardScreen);
}

}  // namespace
}  // namespace qmv
