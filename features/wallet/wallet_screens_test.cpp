// The wallet screens against a scripted server: what the my-bank-card screen does with each
// kind of answer and with an unbinding, the bind screen's code button, checks and binding,
// and the withdrawal's checks and the amount it sends.
#include <gtest/gtest.h>

#include "core/request/net_api_test_support.h"
#include "features/wallet/my_bank_card_view_controller.h"
#include "features/wallet/qx_bind_bank_card_view_controller.h"
#include "features/wallet/qx_with_draw_view_controller.h"

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
  EXPECT_EQ(screen.view().cardNumberText(), "6222 *********** 3446");
  EXPECT_EQ(screen.view().bank()->cardId, "6222020200112233446");
  EXPECT_EQ(topName(), wallet_texts::kMyBankCardScreen);

  // A correct unbinding: the member has no card any more, and the screen loads again.
  GlobalData::sharedInstance().selfInfo()->bankCardNum = "1";
  answer("unBindingBankCard", R"({"success":"0","message":""})");
  answer("getBoundBankCard", R"({"success":"0","data":{"cardId":""}})");
  std::optional<MyBankCardViewController::UnbindOutcome> unbound;
  screen.onUnbindFinished = [&](MyBankCardViewController::UnbindOutcome outcome) { unbound = outcome; };
  stayed.reset();
  screen.unbindNet();
  ASSERT_TRUE(loop_->runUntil([&] { return unbound.has_value() && stayed.has_value(); }, std::chrono::seconds(10)));
  EXPECT_EQ(unbound, MyBankCardViewController::UnbindOutcome::Unbound);
  EXPECT_EQ(GlobalData::sharedInstance().selfInfo()->bankCardNum, "0");
  EXPECT_EQ(overlay_->statuses().back(), "解绑成功");
  EXPECT_TRUE(screen.view().addPanelShown());

  EXPECT_FALSE(load(R"({"success":"1","message":"系统繁忙"})"));
  EXPECT_TRUE(screen.view().addPanelShown()) << "every appearance hides the card first";
  EXPECT_EQ(topName(), "QXWalletViewController");
  navigator_->push(wallet_texts::kMyBankCardScreen);
  EXPECT_FALSE(load("", 500));
  EXPECT_EQ(topName(), "QXWalletViewController");
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
  sent.reset();
  screen.getCodeAction();
  EXPECT_FALSE(loop_->runUntil([&] { return sent.has_value(); }, std::chrono::milliseconds(500)))
      << "the code button refuses while counting down";

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
  EXPECT_EQ(topName(), wallet_texts::kMyBankCardScreen);
}

TEST_F(WalletScreensTest, WithdrawalChecksInOrderAndSendsWholeFen) {
  navigator_->push(wallet_texts::kWithDrawScreen);
  answer("getUserInfo", R"({"success":"0","data":{"sessionId":"S1","phone":"13800001234","balance":"100000"}})");
  answer("getBoundBankCard", R"({"success":"0","data":{"cardId":"6222020200112233446","name":"张三","cardBank":"工商银行"}})");
  QXWithDrawViewController screen;
  bool refreshed = false;
  screen.onRefreshed = [&] { refreshed = true; };
  screen.viewWillAppear();
  ASSERT_TRUE(loop_->runUntil([&] { return refreshed; }, std::chrono::seconds(10)));
  EXPECT_EQ(screen.balanceText(), "1000.00元");
  ASSERT_TRUE(screen.bank());
  EXPECT_EQ(screen.bank()->cardBank, "工商银行");
  const std::size_t reads = received().size();

  // Each refusal is the first check that fails, whatever else is wrong; none sends.
  const auto refusal = [&](const std::string& typed) {
    screen.amountText = typed;
    screen.textFieldDidEndEditing();
    EXPECT_FALSE(screen.withDrawAction()) << typed;
    return overlay_->statuses().back();
  };
  EXPECT_EQ(refusal(""), "请输入提现金额");
  EXPECT_EQ(refusal("9.999"), "提现最小金额为10元") << "the minimum before the decimals";
  EXPECT_EQ(refusal("-20"), "提现最小金额为10元");
  EXPECT_EQ(refusal("10.001"), "金额为整数或者最多两位小数");
  for (const char* hostile : {"NaN", "inf", "0x10", "1e3", " 20", "２０", "12a50", "+20"}) {
    EXPECT_EQ(refusal(hostile), "金额为整数或者最多两位小数") << hostile;
  }
  EXPECT_EQ(refusal("1000.01"), "余额不足");
  EXPECT_EQ(refusal(std::string(1200, '7')), "余额不足") << "clamped to 9999999 when the field was left";
  EXPECT_EQ(screen.amountText, "9999999");
  screen.amountText = "3" + std::string(1199, '0');
  EXPECT_FALSE(screen.withDrawAction()) << "unclamped, still measured";
  EXPECT_EQ(overlay_->statuses().back(), "余额不足");
  EXPECT_EQ(received().size(), reads);

  // The amount goes out in whole fen, exactly: 10.01 x 100 is 1001, not 1000.
  answer("withDraw", R"({"success":"0","message":""})");
  std::optional<bool> done;
  screen.onFinished = [&](bool correct) { done = correct; };
  screen.amountText = "10.01";
  ASSERT_TRUE(screen.withDrawAction());
  ASSERT_TRUE(waitFor(done));
  EXPECT_TRUE(*done);
  EXPECT_EQ(last().endpoint, "withDraw");
  EXPECT_EQ(last().arguments, (testsupport::Arguments{{"sessionId", "S1"}, {"amount", "1001"}}));
  EXPECT_EQ(overlay_->statuses().back(), "您的提现申请已提交,申请将在1-3个工作日内处理完成");
  EXPECT_EQ(topName(), "QXWalletViewController");
  // What is left shows everywhere at once, before any screen reads the record again.
  EXPECT_EQ(GlobalData::sharedInstance().selfInfo()->balance, "98999");
  EXPECT_EQ(screen.balanceText(), "989.99元");
  done.reset();
  navigator_->push(wallet_texts::kWithDrawScreen);
  screen.amountText = "989.99";
  ASSERT_TRUE(screen.withDrawAction()) << "exactly the balance";
  ASSERT_TRUE(waitFor(done));
  EXPECT_EQ(last().arguments.back(), (std::pair<std::string, std::string>{"amount", "98999"}));
  EXPECT_EQ(GlobalData::sharedInstance().selfInfo()->balance, "0");
}

}  // namespace
}  // namespace qmv
