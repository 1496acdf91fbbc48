#include <set>
#include <thread>

#include "apps/sandbox/sandbox_test_support.h"

namespace qmv::sandbox::testing {
namespace {

Args storePayment(const std::string& session, long long fen, const std::string& channel, bool useBalance) {
  return {{"sessionId", session},
          {"totalFee", std::to_string(fen)},
          {"accountType", channel},
          {"useBalance", useBalance ? "true" : "false"},
          {"storeId", "3"}};
}

TEST_F(SandboxTest, BalancePaymentCompletesAtOnceAndNeverGoesNegative) {
  const std::string session = api_->login();
  const Json paid = api_->post("postPayForStore", storePayment(session, 2500, "3", true));
  ASSERT_EQ(code(paid), "0");
  EXPECT_FALSE(paid["data"]["prepay_id"].get<std::string>().empty());
  const std::string orderId = paid["data"]["orderId"];
  EXPECT_EQ(api_->balance(session), kDemoBalanceFen - 2500);
  const Json detail = api_->get("getOrderDetail", {{"sessionId", session}, {"orderId", orderId}})["data"];
  EXPECT_EQ(detail["status"], "2");
  EXPECT_EQ(detail["orderType"], "1");
  EXPECT_EQ(detail["totalPrices"], "25.00");
  EXPECT_FALSE(detail["time"].get<std::string>().empty());

  const Json refused = api_->post("postPayForStore", storePayment(session, kDemoBalanceFen, "3", true));
  EXPECT_EQ(refused["message"], "余额不足");
  EXPECT_EQ(api_->balance(session), kDemoBalanceFen - 2500);
}

TEST_F(SandboxTest, ChannelPaymentWaitsForItsCompletionAndTakesTheBalancePartThen) {
  const std::string session = api_->login();
  const long long total = kDemoBalanceFen + 1500;
  const Json waiting = api_->post("postPayForStore", storePayment(session, total, "0", true));
  ASSERT_EQ(code(waiting), "0");
  const std::string prepay = waiting["data"]["prepay_id"];
  const std::string orderId = waiting["data"]["orderId"];
  EXPECT_EQ(waiting["data"]["payState"], "waiting");
  EXPECT_EQ(api_->balance(session), kDemoBalanceFen) << "nothing is taken before the channel reports";
  EXPECT_EQ(code(api_->get("getOrderDetail", {{"sessionId", session}, {"orderId", orderId}})), "0");
  const Json listed = api_->get("getMyPosts", {{"sessionId", session}, {"type", "0"}})["data"]["dataList"];
  for (const Json& order : listed) {
    EXPECT_NE(order["orderId"], orderId) << "unpaid orders are not listed";
  }
  EXPECT_EQ(code(complete(prepay, "maybe")), "1");
  EXPECT_EQ(code(complete("unknown", "success")), "1");
  ASSERT_EQ(code(complete(prepay, "success")), "0");
  EXPECT_EQ(api_->balance(session), 0);
  EXPECT_EQ(api_->get("getOrderDetail", {{"sessionId", session}, {"orderId", orderId}})["data"]["status"], "2");
  EXPECT_EQ(complete(prepay, "success")["message"], "该订单已处理");

  // Without balance use the channel pays it all; a cancelled payment closes the order.
  const Json cancelled = api_->post("postPayForStore", storePayment(session, 800, "2", false));
  ASSERT_EQ(code(complete(cancelled["data"]["prepay_id"], "cancel")), "0");
  EXPECT_EQ(code(complete(cancelled["data"]["prepay_id"], "success")), "1");
  EXPECT_EQ(api_->balance(session), 0);
}

TEST_F(SandboxTest, BalancePartThatVanishedBeforeCompletionIsRefused) {
  const std::string session = api_->login();
  const Json waiting = api_->post("postPayForStore", storePayment(session, kDemoBalanceFen + 100, "1", true));
  ASSERT_EQ(code(waiting), "0");
  ASSERT_EQ(code(api_->post("postPayForStore", storePayment(session, 1000, "3", true))), "0");
  EXPECT_EQ(complete(waiting["data"]["prepay_id"], "success")["message"], "余额不足");
  EXPECT_EQ(api_->balance(session), kDemoBalanceFen - 1000);
}

TEST_F(SandboxTest, ActivityAndDrawOrdersCheckTheirTotals) {
  const std::string session = api_->login();
  const Json offer = api_->get("getCommodityDetailInfo", {{"commodityId", "39"}, {"sessionId", session}})["data"];
  ASSERT_EQ(offer["isFirst"], "1");
  const long long now = std::llround(std::stod(offer["nowPrice"].get<std::string>()) * 100);
  const long long first = std::llround(std::stod(offer["firstPrice"].get<std::string>()) * 100);
  Args form = {{"sessionId", session}, {"accountType", "3"},   {"useBalance", "true"}, {"storeId", "20"},
               {"activityId", "39"},   {"activityCount", "3"}, {"isFirstOrder", "1"}};
  form["totalFee"] = std::to_string(3 * now);
  EXPECT_EQ(api_->post("postPayForActivity", form)["message"], "支付金额不正确");
  form["totalFee"] = std::to_string(2 * now + first);
  const Json paid = api_->post("postPayForActivity", form);
  ASSERT_EQ(code(paid), "0");
  const Json order =
      api_->get("getOrderDetail", {{"sessionId", session}, {"orderId", paid["data"]["orderId"]}})["data"];
  EXPECT_EQ(order["status"], "1");
  EXPECT_EQ(order["number"], "3");
  EXPECT_EQ(order["promotionCode"].get<std::string>().size(), 12u);
  EXPECT_EQ(api_->balance(session), kDemoBalanceFen - 2 * now - first);
  EXPECT_EQ(api_->get("getCommodityDetailInfo", {{"commodityId", "39"}, {"sessionId", session}})["data"]["isFirst"],
            "0");
  EXPECT_EQ(api_->post("postPayForActivity", form)["message"], "您已享受过首单优惠");

  // A draw is priced by its share price, which the server states; only acount × that is
  // taken as the total, so the member pays what he was shown.
  const Json product = api_->get("getIndianaProduct", {{"productId", "1"}})["data"];
  EXPECT_EQ(product["price"], "1.00");
  EXPECT_EQ(product["series"], "12");
  const long long beforeDraw = api_->balance(session);
  Args draw = {{"sessionId", session}, {"accountType", "3"}, {"useBalance", "true"}, {"productId", "1"},
               {"series", "12"},       {"acount", "5"},      {"totalFee", "0"}};
  for (const char* wrong : {"0", "499", "501", ""}) {
    draw["totalFee"] = wrong;
    EXPECT_EQ(api_->post("postPayForIndiana", draw)["message"], "支付金额不正确") << wrong;
  }
  draw["totalFee"] = "500";
  const Json drawn = api_->post("postPayForIndiana", draw);
  ASSERT_EQ(code(drawn), "0");
  EXPECT_EQ(drawn["data"]["totalPrices"], "5.00");
  EXPECT_EQ(api_->balance(session), beforeDraw - 500);
  draw["productId"] = "99";
  EXPECT_EQ(code(api_->post("postPayForIndiana", draw)), "1");
  EXPECT_EQ(code(api_->get("getIndianaProduct", {{"productId", "99"}})), "1");
}

TEST_F(SandboxTest, APreparedPaymentStatesItsPriceTheBalancePartAndTheRest) {
  const std::string session = api_->login();
  // 6 × 88.00 of the voucher offer against the 500.00 balance, and a wallet payment.
  const Json partly = api_->post("postPayForActivity", {{"sessionId", session},
                                                        {"totalFee", "52800"},
                                                        {"accountType", "0"},
                                                        {"useBalance", "true"},
                                                        {"storeId", "1"},
                                                        {"activityId", "2"},
                                                        {"activityCount", "6"},
                                                        {"isFirstOrder", "0"}});
  ASSERT_EQ(code(partly), "0") << partly.dump();
  EXPECT_EQ(partly["data"]["price"], "528.00");
  EXPECT_EQ(partly["data"]["blance"], "500.00");
  EXPECT_EQ(partly["data"]["money"], "28.00");
  const Json channelOnly = api_->post("postPayForStore", storePayment(session, 1250, "1", false));
  ASSERT_EQ(code(channelOnly), "0");
  EXPECT_EQ(channelOnly["data"]["price"], "12.50");
  EXPECT_EQ(channelOnly["data"]["blance"], "0.00");
  EXPECT_EQ(channelOnly["data"]["money"], "12.50");
}

TEST_F(SandboxTest, OrderTabsRefundAndRating) {
  const std::string session = api_->login();
  auto tab = [&](int type, int page = 1) {
    return api_->get(
        "getMyPosts",
        {{"sessionId", session}, {"type", std::to_string(type)}, {"page", std::to_string(page)}})["data"]["dataList"];
  };
  const Json all = tab(0);
  EXPECT_EQ(all.size(), 10u);
  EXPECT_EQ(tab(0, 2).size(), 5u);
  std::set<std::string> statuses;
  for (const Json& order : all) {
    statuses.insert(order["status"].get<std::string>());
    for (const char* key :
         {"storeId", "storeName", "time", "isComment", "orderId", "price", "name", "orderName", "commodityId",
          "imageURL", "star", "promotionCode", "phone", "number", "totalPrices", "content", "status", "orderType"}) {
      EXPECT_TRUE(order.contains(key)) << key;
    }
  }
  for (const Json& order : tab(0, 2)) statuses.insert(order["status"].get<std::string>());
  EXPECT_EQ(statuses, (std::set<std::string>{"1", "2", "3", "4"}));
  for (const Json& order : tab(1)) EXPECT_EQ(order["status"], "1");
  for (const Json& order : tab(2)) EXPECT_EQ(order["status"], "2");
  for (const Json& order : tab(3)) EXPECT_TRUE(order["status"] == "3" || order["status"] == "4");

  const Json toUse = tab(1)[0];
  const long long before = api_->balance(session);
  ASSERT_EQ(code(api_->post("postRefund", {{"sessionId", session}, {"orderId", toUse["orderId"]}})), "0");
  EXPECT_EQ(api_->balance(session), before + std::llround(std::stod(toUse["totalPrices"].get<std::string>()) * 100));
  EXPECT_EQ(api_->get("getOrderDetail", {{"sessionId", session}, {"orderId", toUse["orderId"]}})["data"]["status"],
            "3");
  EXPECT_EQ(api_->post("postRefund", {{"sessionId", session}, {"orderId", toUse["orderId"]}})["message"],
            "该订单不能退款");
  EXPECT_EQ(api_->balance(session), before + std::llround(std::stod(toUse["totalPrices"].get<std::string>()) * 100));

  const Json toRate = tab(2)[0];
  EXPECT_EQ(code(api_->post("PostGrade", {{"sessionId", session}, {"orderId", toRate["orderId"]}, {"star", "6"}})),
            "1");
  ASSERT_EQ(
      code(api_->post("PostGrade",
                      {{"sessionId", session}, {"orderId", toRate["orderId"]}, {"star", "4"}, {"content", "不错"}})),
      "0");
  const Json rated = api_->get("getOrderDetail", {{"sessionId", session}, {"orderId", toRate["orderId"]}})["data"];
  EXPECT_EQ(rated["star"], "4");
  EXPECT_EQ(rated["isComment"], "1");
  const Json remarks = api_->get("getRemarkMeByUser", {{"storeId", rated["storeId"]}, {"star", "4"}})["data"];
  ASSERT_FALSE(remarks["dataList"].empty());
  for (const Json& remark : remarks["dataList"]) EXPECT_EQ(remark["star"], "4");
  EXPECT_EQ(code(api_->post("PostGrade", {{"sessionId", session}, {"orderId", toRate["orderId"]}, {"star", "4"}})),
            "1");
  // Another member's order is unknown to this one.
  const std::string other = api_->login("13800000001");
  EXPECT_EQ(api_->get("getOrderDetail", {{"sessionId", other}, {"orderId", toRate["orderId"]}})["message"],
            "订单不存在");
}

// Payments racing for one balance, through one server and through a second one on the
// same home (the CLI's and a standalone sandbox share the database file): their immediate
// transactions let exactly as many through as the balance covers, refuse the rest for the
// balance alone, and the fund records still add up to what is left.
TEST(SandboxConcurrentOrders, RacingPaymentsOnOneOrTwoServersKeepTheBalanceConsistent) {
  const auto home = freshHome();
  SandboxServer first(SandboxOptions{home, 0, "127.0.0.1", true});
  SandboxServer second(SandboxOptions{home, 0, "127.0.0.1", true});
  ASSERT_TRUE(first.start().ok());
  ASSERT_TRUE(second.start().ok());
  ApiClient api(first.port());
  const std::string session = api.login();
  ASSERT_FALSE(session.empty());
  constexpr int kThreads = 6;
  constexpr int kAttempts = 8;
  constexpr long long kFee = 1100;  // 48 attempts of 11 yuan exceed the 500 yuan balance
  std::atomic<int> paid{0};
  std::atomic<int> refusedForBalance{0};
  std::atomic<int> other{0};
  std::vector<std::thread> threads;
  for (int t = 0; t < kThreads; ++t) {
    threads.emplace_back([&, t] {
      ApiClient client(t % 3 == 0 ? second.port() : first.port());
      for (int i = 0; i < kAttempts; ++i) {
        const Json reply = client.post("postPayForStore", storePayment(session, kFee, "3", true));
        if (reply.value("success", "") == "0") {
          ++paid;
        } else if (reply.value("message", "") == "余额不足") {
          ++refusedForBalance;
        } else {
          ++other;
        }
      }
    });
  }
  for (auto& thread : threads) thread.join();
  EXPECT_EQ(other.load(), 0);
  EXPECT_EQ(paid.load(), kDemoBalanceFen / kFee);
  EXPECT_EQ(paid + refusedForBalance, kThreads * kAttempts);
  const long long balance = ApiClient(second.port()).balance(session);
  EXPECT_EQ(balance, kDemoBalanceFen - paid * kFee);
  long long sum = 0;
  for (int page = 1;; ++page) {
    const Json records =
        api.get("getTopUpListForUser", {{"sessionId", session}, {"page", std::to_string(page)}})["data"]["dataList"];
    if (records.empty()) break;
    for (const Json& record : records) sum += std::stoll(record["amount"].get<std::string>());
  }
  EXPECT_EQ(sum, balance);
  first.stop();
  second.stop();
  std::filesystem::remove_all(home);
}

TEST_F(SandboxTest, VouchersAreListedWithTheirStoreDaysAndEveryState) {
  const std::string session = api_->login();
  Json vouchers = Json::array();
  for (int page = 1; page < 10; ++page) {
    const Json list =
        api_->get("getMyVoucher", {{"sessionId", session}, {"page", std::to_string(page)}})["data"]["dataList"];
    if (list.empty()) break;
    for (const Json& voucher : list) vouchers.push_back(voucher);
  }
  ASSERT_EQ(vouchers.size(), 14u) << "more than one page";
  EXPECT_EQ(vouchers[0]["price"], "5.00");
  EXPECT_EQ(vouchers[0]["storeName"], "") << "the new member's voucher is for every store";
  std::set<std::string> states;
  const std::string today = dateText(nowSeconds());
  for (const Json& voucher : vouchers) {
    states.insert(voucher["status"].get<std::string>());
    if (voucher["storeId"] != "") {
      EXPECT_FALSE(voucher["storeName"].get<std::string>().empty());
    }
    // The server says which are expired: an unused voucher is never past its last day.
    if (voucher["status"] == "0") {
      EXPECT_GE(voucher["date"].get<std::string>(), today);
    } else if (voucher["status"] == "2") {
      EXPECT_LT(voucher["date"].get<std::string>(), today);
    }
  }
  EXPECT_EQ(states, (std::set<std::string>{"0", "1", "2"}));
}

}  // namespace
}  // namespace qmv::sandbox::testing
