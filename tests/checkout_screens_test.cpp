// The checkout screens against the sandbox: the submit screen's totals and a payment whose
// success reaches the pay-now screen twice (the wallet's own callback and its return URL).
#include "features/orders/checkout_texts.h"
#include "features/orders/pay_now_runner.h"
#include "features/orders/qx_submit_oder_view_controller.h"
#include "platform/testing/recording_payment_channels.h"
#include "shell/app_delegate.h"
#include "tests/discovery_sandbox_fixture.h"

namespace qmv {
namespace {

class CheckoutScreensTest : public testsupport::DiscoverySandboxTest {};

TEST_F(CheckoutScreensTest, SubmitTotalsFollowTheFirstPurchaseFlagInSinglePrecision) {
  ActivityModel offer(Json{{"nowPrice", "10"}, {"firstPrice", "1"}, {"commodityId", "9"}, {"storeId", "3"}});
  QXSubmitOderViewController first(offer, "1");
  first.reduceAction();
  EXPECT_EQ(first.quantityText(), "1") << "never below one";
  first.plusAction();
  first.plusAction();
  EXPECT_EQ(first.totalText(), "21.00");
  EXPECT_EQ(first.unitPriceText(), "10元");
  QXSubmitOderViewController other(offer, "2");
  other.plusAction();
  EXPECT_EQ(other.totalText(), "1.00") << "any other flag sells one at the first price";
  // 3 × 0.055 is a hair above 0.165 in double precision (0.17) but 0.16499999 in single
  // precision: the screen has always said 0.16.
  QXSubmitOderViewController cheap(ActivityModel(Json{{"nowPrice", "0.055"}}), "0");
  cheap.plusAction();
  cheap.plusAction();
  EXPECT_EQ(cheap.totalText(), "0.16");
  const Json payload = first.payNowPayload();
  EXPECT_EQ(payload, (Json{{"payType", 0},
                           {"storeId", "3"},
                           {"totalFee", "21.00"},
                           {"activityId", "9"},
                           {"activityCount", "3"},
                           {"name", ""},
                           {"isFirst", "1"}}));
  EXPECT_EQ(QXPayNowViewController(payload).payload(), (Json{{"payType", 0},
                                                             {"totalFee", "21.00"},
                                                             {"storeId", "3"},
                                                             {"activityId", "9"},
                                                             {"activityCount", "3"},
                                                             {"isFirst", "1"}}));
}

TEST_F(CheckoutScreensTest, ATotalNoPriceCanMeanIsShownAsSuchAndNeverSubmitted) {
  ASSERT_NE(login(), nullptr);
  const auto& navigator = navigator_;
  navigator->setRoot("TabBarViewController");
  // Beyond single precision (read as 0 before), below zero, and more than one checkout
  // may take.
  for (const auto& [price, quantity] :
       std::vector<std::pair<const char*, int>>{{"1e308", 2}, {"3e38", 2}, {"-5", 1}, {"60000", 2}}) {
    QXSubmitOderViewController submit(ActivityModel(Json{{"nowPrice", price}, {"commodityId", "2"}}), "0");
    for (int i = 1; i < quantity; ++i) submit.plusAction();
    EXPECT_EQ(submit.totalText(), "金额有误") << price;
    bool refused = false;
    submit.onRefused = [&] { refused = true; };
    submit.onSubmitted = [](std::optional<ScreenId>) { ADD_FAILURE() << "submitted"; };
    submit.submitAction();
    EXPECT_TRUE(refused) << price;
    EXPECT_EQ(shown().back(), "订单金额有误,无法提交");
  }
  EXPECT_EQ(navigator->topScreen()->name, "TabBarViewController");
}

TEST_F(CheckoutScreensTest, ASuccessArrivingTwicePaysAndGoesBackOnce) {
  ASSERT_NE(login(), nullptr);
  auto alipay = std::make_shared<RecordingAlipayService>();
  Env::current().payments = std::make_shared<PaymentChannels>(PaymentChannels{nullptr, alipay, nullptr});
  AppDelegate delegate{AppConfig{}};
  Env::current().notifications = std::make_shared<SynchronousNotificationCenter>();
  {
    const auto& navigator = navigator_;
    navigator->setRoot("TabBarViewController");
    navigator->push("QXActivitiesViewController");
    navigator->push(checkout_texts::kSubmitScreen);
    const Json payload = {{"storeId", "1"}, {"totalFee", "12.50"}};
    navigator->push(checkout_texts::kPayNowScreen, payload);
    const std::size_t shownBefore = shown().size();

    PayNowRunner runner(payload);
    runner.appear();
    ASSERT_TRUE(runUntil([&] { return runner.ready(); }));
    ASSERT_TRUE(runner.tap({false, QXPayNowViewController::Channel::Alipay}));
    EXPECT_EQ(runner.screen().confirmTitle(), "确认支付¥12.50");
    runner.confirm();
    // The wallet answers its own callback with success; its return URL then says it again.
    ASSERT_TRUE(runUntil([&] { return runner.finished(); }));
    EXPECT_EQ(runner.outcome(), PayNowRunner::Outcome::Paid);
    EXPECT_TRUE(delegate.openURL("qqqmmmvvv://safepay/?resultStatus=9000", ""));
    EXPECT_TRUE(delegate.openURL("qqqmmmvvv://safepay/?resultStatus=9000", ""));
    loop_->runUntil([] { return false; }, std::chrono::milliseconds(50));

    ASSERT_EQ(alipay->orders.size(), 1u);
    EXPECT_TRUE(alipay->orders.back().starts_with("sbx")) << alipay->orders.back();
    EXPECT_TRUE(alipay->orders.back().ends_with("|qqqmmmvvv"));
    const auto layers = navigator->layers();
    ASSERT_EQ(layers.size(), 1u);
    ASSERT_EQ(layers[0].size(), 4u) << "one screen back, to the submit screen, and no further";
    EXPECT_EQ(layers[0][2].name, checkout_texts::kSubmitScreen);
    EXPECT_EQ(layers[0].back().name, checkout_texts::kPayResultScreen) << "one result over it";
    const auto all = shown();
    const std::vector<std::string> said(all.begin() + static_cast<long>(shownBefore), all.end());
    EXPECT_EQ(said, std::vector<std::string>{"支付成功"});
  }
}

}  // namespace
}  // namespace qmv
