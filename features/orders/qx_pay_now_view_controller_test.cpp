#include "features/orders/qx_pay_now_view_controller.h"

#include <gtest/gtest.h>

#include "core/request/net_api_test_support.h"
#include "features/orders/pay_now_runner.h"
#include "features/orders/pay_result_view_controller.h"
#include "features/orders/payment_results.h"
#include "platform/testing/recording_payment_channels.h"

namespace qmv {
namespace {

using Channel = QXPayNowViewController::Channel;
using Outcome = PayNowRunner::Outcome;
using namespace std::chrono_literals;

class PayNowScreenTest : public testsupport::ApiServerTest {
 protected:
  void SetUp() override {
    ApiServerTest::SetUp();
    // The record read at login says 0.00; the server has 5.00 by now.
    GlobalData::sharedInstance().setSelfInfo(
        std::make_shared<UserInfoModel>(Json{{"sessionId", "S1"}, {"balance", "0"}}));
    answer("getUserInfo", R"({"success":"0","message":"","data":{"balance":"500"}})");
    Env::current().payments = std::make_shared<PaymentChannels>(PaymentChannels{wechat_, alipay_, uppay_});
  }

  // Shows the screen and waits for what it reads on load.
  void appear(PayNowRunner& runner) {
    runner.appear();
    ASSERT_TRUE(loop_->runUntil([&] { return runner.ready(); }, 15s));
  }
  // Confirms and waits until the prepare answer has been handled.
  void confirm(PayNowRunner& runner) {
    runner.confirm();
    ASSERT_TRUE(loop_->runUntil([&] { return !runner.screen().isPreparing(); }, 15s));
  }

  std::shared_ptr<RecordingWeChatApi> wechat_ = std::make_shared<RecordingWeChatApi>();
  std::shared_ptr<RecordingAlipayService> alipay_ = std::make_shared<RecordingAlipayService>();
  std::shared_ptr<RecordingUPPayControl> uppay_ = std::make_shared<RecordingUPPayControl>();
};

const Json kStoreTotal = {{"storeId", "3"}, {"totalFee", "12.50"}};

TEST_F(PayNowScreenTest, TheRefreshedBalanceChoosesAndCanBeTurnedBackOn) {
  answer("postPayForStore", R"({"success":"0","data":{"prepay_id":"wx1"}})");
  PayNowRunner runner(kStoreTotal);
  runner.appear();
  ASSERT_TRUE(runner.screen().isLoading());
  runner.screen().toggleBalance();  // before the record is in: nothing to undo later
  ASSERT_TRUE(loop_->runUntil([&] { return runner.ready(); }, 15s));
  QXPayNowViewController& screen = runner.screen();
  EXPECT_EQ(screen.balanceText(), "我的余额 ¥5.00");
  EXPECT_TRUE(screen.balanceSelected());
  EXPECT_EQ(screen.confirmTitle(), "确认支付¥7.50");

  // Off, WeChat, then on again: 5.00 does not cover 12.50, so the channels stay with the
  // member's choice and only the rest is left for them.
  screen.toggleBalance();
  EXPECT_EQ(screen.confirmTitle(), "确认支付¥12.50");
  screen.selectWeChat();
  screen.toggleBalance();
  EXPECT_TRUE(screen.balanceSelected());
  EXPECT_FALSE(screen.bottomHidden());
  EXPECT_TRUE(screen.weChatSelected() && !screen.alipaySelected() && !screen.unionPaySelected());
  EXPECT_EQ(screen.confirmTitle(), "确认支付¥7.50");
  confirm(runner);
  EXPECT_EQ(last().endpoint, "postPayForStore");
  EXPECT_EQ(sent("totalFee"), "1250") << "the full total; the server takes the balance part";
  EXPECT_EQ(sent("accountType"), "1");
  EXPECT_EQ(sent("useBalance"), "true");
  ASSERT_EQ(wechat_->sent.size(), 1u);
  EXPECT_EQ(wechat_->sent[0].prepayId, "wx1");

  // 5.00 against 5.00 is covered: no channel is offered or selected, and confirm is the
  // balance payment.
  PayNowRunner covered(Json{{"storeId", "3"}, {"totalFee", "5.00"}});
  appear(covered);
  EXPECT_TRUE(covered.screen().bottomHidden());
  EXPECT_FALSE(covered.screen().alipaySelected() || covered.screen().weChatSelected() ||
               covered.screen().unionPaySelected());
  EXPECT_EQ(covered.screen().confirmTitle(), "确认支付");
  EXPECT_FALSE(covered.tap({true, Channel::Alipay}));
  confirm(covered);
  EXPECT_EQ(covered.outcome(), Outcome::Paid);
  EXPECT_EQ(sent("accountType"), "3");
  EXPECT_EQ(sent("totalFee"), "500");
}

TEST_F(PayNowScreenTest, NoPrepayIdHandsNothingOverAndUnionPayRunsInProduction) {
  for (const char* body : {R"({"success":"0","data":{"orderId":"A"}})", R"({"success":"0","data":{"prepay_id":""}})",
                           R"({"success":"0","data":{"prepay_id":null}})", R"({"success":"0","data":"TN"})"}) {
    answer("postPayForStore", body);
    PayNowRunner runner(kStoreTotal);
    appear(runner);
    ASSERT_TRUE(runner.tap({false, Channel::UnionPay}));
    confirm(runner);
    EXPECT_EQ(runner.outcome(), Outcome::Refused) << body;
  }
  EXPECT_TRUE(uppay_->started.empty());

  // The receipt takes the server's figures, and only when they add up.
  answer("postPayForStore",
         R"({"success":"0","data":{"prepay_id":"TN9","orderId":"A1","price":"12.50","blance":"5.00","money":"7.50"}})");
  PayNowRunner runner(kStoreTotal);
  appear(runner);
  ASSERT_TRUE(runner.tap({true, Channel::UnionPay}));
  confirm(runner);
  ASSERT_TRUE(runner.handedOver());
  EXPECT_EQ(uppay_->started, std::vector<std::string>{"TN9|qqqmmmvvv|00|QXPayNowViewController"});
  const auto receipt = runner.screen().receipt();
  ASSERT_TRUE(receipt.has_value());
  ASSERT_EQ(receipt->rows().size(), 3u);
  EXPECT_EQ(receipt->rows()[0].value, "12.50元");
  EXPECT_EQ(receipt->rows()[1].value, "5.00元");
  EXPECT_EQ(receipt->rows()[2].value, "7.50元");

  // While the plug-in has it, a refused authorisation of the wallet is no payment result;
  // the plug-in's own failure is.
  handleAlipayAuthResult(Json{{"resultStatus", "4000"}, {"memo", "\\u6388\\u6743\\u5931\\u8d25"}});
  EXPECT_EQ(overlay_->statuses().back(), "授权失败");
  EXPECT_FALSE(runner.finished());
  uppay_->nextCode = "fail";
  UPPayUtil::handleURL("qqqmmmvvv://uppayresult?code=fail", nullptr);
  EXPECT_EQ(runner.outcome(), Outcome::NotPaid);
  // The failed result opens over the screen, and no receipt of the unpaid order stays.
  EXPECT_FALSE(runner.screen().receipt().has_value());
  ASSERT_EQ(topName(), "PayResultViewController");
  PayResultViewController failed(navigator_->topScreen()->payload);
  EXPECT_FALSE(failed.paid());
  EXPECT_EQ(failed.resultText(), "支付失败");
  EXPECT_EQ(failed.amountText(), "未支付 ¥12.50");
  EXPECT_EQ(failed.orderIdText(), "订单号:A1");
  EXPECT_EQ(failed.codeText(), "");
  EXPECT_NE(failed.noteText(), "为了确保您成功消费，请尽快和商家确认");

  // Figures that do not add up, and figures that add up to another amount than the total
  // shown (a unit price): the order stands, the receipt is not drawn.
  for (const char* body :
       {R"({"success":"0","data":{"prepay_id":"TN8","price":"88.00","blance":"463.00","money":"65.00"}})",
        R"({"success":"0","data":{"prepay_id":"TN7","price":"25.00","blance":"0.00","money":"25.00"}})"}) {
    answer("postPayForStore", body);
    PayNowRunner runner(kStoreTotal);
    appear(runner);
    confirm(runner);
    EXPECT_TRUE(runner.screen().order().has_value()) << body;
    EXPECT_FALSE(runner.screen().receipt().has_value()) << body;
  }
}

TEST_F(PayNowScreenTest, TotalsOfPartFenAreSentAsPercentZeroFRoundsThem) {
  answer("postPayForStore", R"({"success":"0","data":{"prepay_id":"ali"}})");
  // Round half to even on the binary value: 12.5 and 37.5 are halves, while 0.145 × 100
  // is 14.499999999999998; 0.29 × 100 is 28.999999999999996, which truncation would spoil.
  for (const auto& [total, fen] : std::vector<std::pair<const char*, const char*>>{
           {"0.125", "12"}, {"0.375", "38"}, {"0.145", "14"}, {"0.29", "29"}, {"12.5", "1250"}}) {
    PayNowRunner runner(Json{{"storeId", "3"}, {"totalFee", total}});
    appear(runner);
    confirm(runner);
    EXPECT_EQ(sent("totalFee"), fen) << total;
  }
}

TEST_F(PayNowScreenTest, ADrawIsPricedByTheServerOrNotConfirmedAtAll) {
  answer("getIndianaProduct", R"({"success":"0","data":{"price":"1.00"}})");
  answer("postPayForIndiana", R"({"success":"0","data":{"prepay_id":"wx2"}})");
  PayNowRunner draw(QXPayNowViewController::drawProductPayload("1", "12", "400"));
  appear(draw);
  EXPECT_EQ(draw.screen().totalText(), "¥400.00");
  EXPECT_EQ(draw.screen().confirmTitle(), "确认支付¥395.00");
  ASSERT_TRUE(draw.tap({false, Channel::WeChat}));
  confirm(draw);
  EXPECT_EQ(last().endpoint, "postPayForIndiana");
  EXPECT_EQ(sent("totalFee"), "40000");
  EXPECT_EQ(sent("accountType"), "1") << "the channel chosen, not the balance";
  EXPECT_EQ(sent("useBalance"), "false");

  // A price or share count that is no plain amount, or a product the server does not know:
  // no amount to show, and confirm sends nothing.
  const std::vector<std::pair<std::string, const char*>> cases = {
      {R"({"success":"0","data":{"price":"1e2"}})", "3"},
      {R"({"success":"0","data":{"price":"1.00"}})", "abc"},
      {R"({"success":"0","data":{"price":"1.00"}})", "0"},
      {R"({"success":"0","data":{"price":"60000.00"}})", "2"},
      {R"({"success":"1","message":"夺宝商品不存在","data":{}})", "3"}};
  for (const auto& [body, shareCount] : cases) {
    answer("getIndianaProduct", body);
    PayNowRunner unknown(QXPayNowViewController::drawProductPayload("1", "12", shareCount));
    appear(unknown);
    EXPECT_EQ(unknown.screen().totalText(), "金额未知") << body << " " << shareCount;
    const std::size_t before = received().size();
    ASSERT_TRUE(unknown.tap({false, Channel::WeChat}));
    unknown.confirm();
    EXPECT_EQ(unknown.outcome(), Outcome::NothingConfirmed);
    EXPECT_EQ(received().size(), before);
    EXPECT_EQ(overlay_->statuses().back(), "未能确认支付金额,请稍后再试");
  }
}

}  // namespace
}  // namespace qmv
