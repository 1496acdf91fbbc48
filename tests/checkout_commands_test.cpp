// Checkout from the command line, each purchase one start of the application against its
// embedded sandbox, with the sandbox's payment applications completing (or cancelling, or
// failing) the payment and returning through the inbound URL. What was paid is then read
// back from the sandbox itself.
#include <gtest/gtest.h>

#include <set>

#include "tests/cli_runner.h"
#include "tests/fault_server.h"
// Last: httplib brings a DELETE macro.
#include "apps/sandbox/sandbox_test_support.h"

namespace qmv {
namespace {

// The demo offer with a first-purchase price: 15.00, first unit 7.50.
constexpr const char* kFirstPriceOffer = "5";
// The demo voucher offer: 88.00.
constexpr const char* kVoucherOffer = "2";

class CheckoutCommandsTest : public testsupport::CliHomeTest {
 protected:
  // The member's orders of the "to be used" tab, read from the sandbox the runs used.
  Json ordersToUse(const std::string& phone) {
    sandbox::SandboxServer server(sandbox::SandboxOptions{home_.home() / "sandbox", 0});
    if (!server.start().ok()) return Json();
    sandbox::testing::ApiClient api(server.port());
    const Json reply = api.get("getMyPosts", {{"sessionId", api.login(phone)}, {"page", "1"}, {"type", "1"}});
    server.stop();
    return reply["data"]["dataList"];
  }
};

TEST_F(CheckoutCommandsTest, EveryChannelPaysAndCancelOrFailPaysNothing) {
  // A member without balance: the channels show with the wallet chosen.
  const std::string phone = "13800000005";
  ASSERT_EQ(run({"login", phone, "qmv123"}).status, 0);
  auto first = run({"buy", kFirstPriceOffer, "--quantity", "3"});
  ASSERT_EQ(first.status, 0) << first.out;
  EXPECT_TRUE(first.has("现价 15.00元\n首单价 7.50元\n首单价 7.50元 x 1 + 现价 15.00元 x 2 = 37.50\n"))
      << "the first unit at its first-purchase price";
  EXPECT_TRUE(first.has("alipay [x]  wechat [ ]  unionpay [ ]\n确认支付¥37.50\n")) << first.out;
  EXPECT_FALSE(first.has("我的余额")) << "no balance, no balance row";
  EXPECT_TRUE(first.has("支付成功\noutcome: paid\n")) << first.out;
  EXPECT_TRUE(first.has("支付结果\n支付成功\n")) << first.out;
  EXPECT_TRUE(first.has("实付 ¥37.50\n订单号:SB")) << "the total confirmed, as paid";
  EXPECT_TRUE(first.has("\n验证码:")) << "the code, once the payment has settled";

  struct Attempt {
    const char* channel;
    const char* outcome;
    const char* shown;
  };
  for (const Attempt& a : {Attempt{"wechat", "cancel", "支付失败"}, Attempt{"alipay", "fail", "订单支付失败"},
                           Attempt{"unionpay", "cancel", "支付取消"}, Attempt{"unionpay", "fail", "支付失败"}}) {
    auto refused = run({"--pay-outcome", a.outcome, "buy", kFirstPriceOffer, "--channel", a.channel});
    EXPECT_EQ(refused.status, 1) << a.channel << " " << a.outcome << "\n" << refused.out;
    EXPECT_TRUE(refused.has(std::string(a.shown) + "\noutcome: not paid\n")) << refused.out;
    // The failed result's texts are PayNowScreenTest's; here it is shown, with no code.
    EXPECT_TRUE(refused.has("支付结果\n支付失败\n")) << refused.out;
    EXPECT_FALSE(refused.has("支付成功") || refused.has("验证码:")) << refused.out;
  }
  for (const char* channel : {"wechat", "unionpay"}) {
    auto paid = run({"buy", kFirstPriceOffer, "--channel", channel});
    EXPECT_EQ(paid.status, 0) << channel << "\n" << paid.out;
    EXPECT_TRUE(paid.has("现价 15.00元 x 1 = 15.00\n")) << "the first-purchase price is spent";
    // The return and the pay-now screen both say it, while it is on show: one note.
    EXPECT_TRUE(paid.has("确认支付¥15.00\n支付成功\noutcome: paid\n")) << paid.out;
  }

  // Exactly the three payments that succeeded are orders to be used, each with its code.
  std::multiset<std::string> totals;
  for (const Json& order : ordersToUse(phone)) {
    if (order.value("commodityId", "") != kFirstPriceOffer) continue;
    totals.insert(order.value("totalPrices", ""));
    EXPECT_EQ(order.value("promotionCode", "").size(), 12u) << order.dump();
  }
  EXPECT_EQ(totals, (std::multiset<std::string>{"37.50", "15.00", "15.00"}));
}

TEST_F(CheckoutCommandsTest, TheBalancePaysAllOrPartAndTheServerGetsTheFullTotal) {
  ASSERT_EQ(run({"login", "13800000000", "qmv123"}).status, 0);
  // The balance covers it: no channel is offered, and none can be chosen.
  auto covered = run({"buy", kVoucherOffer});
  ASSERT_EQ(covered.status, 0) << covered.out;
  EXPECT_TRUE(covered.has("我的余额 ¥500.00 [x]\n确认支付\n")) << covered.out;
  EXPECT_FALSE(covered.has("alipay ["));
  EXPECT_EQ(balance(), 50000 - 8800);
  EXPECT_EQ(run({"buy", kVoucherOffer, "--channel", "wechat"}).status, 1);

  // 5 × 88.00 against 412.00: the wallet pays the 28.00 left, the balance the rest.
  auto partial = run({"buy", kVoucherOffer, "--quantity", "5"});
  ASSERT_EQ(partial.status, 0) << partial.out;
  EXPECT_TRUE(partial.has("我的余额 ¥412.00 [x]\nalipay [x]  wechat [ ]  unionpay [ ]\n确认支付¥28.00\n"))
      << partial.out;
  EXPECT_TRUE(partial.has("消费金额 440.00元\n余额抵现 412.00元\n还需支付 28.00元\n")) << partial.out;
  EXPECT_EQ(balance(), 0);
  bool found = false;
  for (const Json& order : ordersToUse("13800000000")) found |= order.value("totalPrices", "") == "440.00";
  EXPECT_TRUE(found) << "the prepared total is the whole 440.00, not what the wallet paid";
}

TEST_F(CheckoutCommandsTest, PagesPayForDrawSharesAndStoresPayDirectly) {
  EXPECT_EQ(run({"pay", "--product", "1", "--series", "12", "--acount", "3"}).status, 1) << "not logged in";
  ASSERT_EQ(run({"login", "13800000000", "qmv123"}).status, 0);
  // A page's link carries no total: the server prices the three shares itself.
  auto draw = run({"pay", "--product", "1", "--series", "12", "--acount", "3"});
  ASSERT_EQ(draw.status, 0) << draw.out;
  EXPECT_TRUE(draw.has("一元夺宝-第12期\n")) << draw.out;
  EXPECT_TRUE(draw.has("outcome: paid\n"));
  EXPECT_EQ(balance(), 50000 - 300);

  auto store = run({"pay", "--store", "1", "--total", "12.50", "--no-balance", "--channel", "unionpay"});
  ASSERT_EQ(store.status, 0) << store.out;
  EXPECT_TRUE(store.has("确认支付¥12.50\n支付成功\n")) << store.out;
  EXPECT_EQ(balance(), 50000 - 300) << "the plug-in paid it all";

  EXPECT_EQ(run({"pay", "--store", "1"}).status, 2);
  EXPECT_EQ(run({"pay", "--store", "1", "--product", "1", "--total", "1"}).status, 2);
  EXPECT_EQ(run({"pay", "--product", "1", "--series", "12"}).status, 2);
}

TEST_F(CheckoutCommandsTest, APagesDrawLinkTakesTheRunsChannelAndBalanceSwitch) {
  ASSERT_EQ(run({"login", "13800000000", "qmv123"}).status, 0);
  // The page host opens the pay-now screen, which prices the draw and reads the balance
  // (both PayNowScreenTest's); the run's switches then hold for it.
  auto page = run({"page", "0", "--follow", "1", "--no-balance", "--channel", "unionpay"});
  ASSERT_EQ(page.status, 0) << page.out;
  EXPECT_TRUE(page.has("一元夺宝-第12期\n¥1.00\n我的余额 ¥500.00 [x]\n")) << page.out;
  EXPECT_TRUE(page.has("alipay [ ]  wechat [ ]  unionpay [x]\n确认支付¥1.00\n支付成功\n")) << page.out;
  EXPECT_TRUE(page.has("outcome: paid\n")) << page.out;
  EXPECT_EQ(balance(), 50000) << "the plug-in paid the share";
}

TEST_F(CheckoutCommandsTest, TotalsThatAreNoPlainAmountAreRefused) {
  ASSERT_EQ(run({"login", "13800000000", "qmv123"}).status, 0);
  for (const char* bad : {"1,000", "1e2", "12.345", "1.5abc", "1_000", "-5", "0", "12.", ".5", "100000.01", ""}) {
    ::testing::internal::CaptureStderr();
    const auto refused = run({"pay", "--store", "1", "--total=" + std::string(bad)});
    const std::string said = ::testing::internal::GetCapturedStderr();
    EXPECT_EQ(refused.status, 2) << bad << "\n" << refused.out;
    // An empty value is refused as a missing one, before the amount rule.
    if (*bad != '\0') {
      EXPECT_NE(said.find("expected a plain amount in yuan such as 12.50"), std::string::npos) << said;
    }
  }
  EXPECT_EQ(balance(), 50000) << "nothing was paid";
  auto largest = run({"pay", "--store", "1", "--total", "100000.00", "--no-balance", "--channel", "wechat"});
  EXPECT_TRUE(largest.has("确认支付¥100000.00\n")) << largest.out;

  // A price no number can mean is refused on the submit screen, not shown as 0.00.
  testsupport::FaultServer server;
  TempHome other;
  const auto buy =
      testsupport::runQmv(other.home(), {"--server", server.url("extreme"), "buy", "9", "--quantity", "2"});
  EXPECT_EQ(buy.status, 1) << buy.out;
  EXPECT_TRUE(buy.has("1e308元 x 2 = 金额有误\n订单金额有误,无法提交\n")) << buy.out;
  EXPECT_FALSE(buy.has("支付订单")) << buy.out;
}

}  // namespace
}  // namespace qmv
