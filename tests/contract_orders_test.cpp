// Orders contract: prepare-pay from the balance and through a channel, the order list's tabs,
// refunds, and concurrent payments keeping the balance consistent.
#include <cmath>
#include <map>

#include "features/discovery/activity_model.h"
#include "features/orders/my_order_net_api.h"
#include "features/orders/order_detail_net_api.h"
#include "features/orders/prepare_pay_net_api.h"
#include "features/orders/refund_net_api.h"
#include "features/wallet/top_up_record_net_api.h"
#include "tests/sandbox_fixture.h"

namespace qmv::contract {
namespace {

// The demo's voucher offer of its first store.
constexpr const char* kVoucherOffer = "2";

class OrdersContractTest : public SandboxContractTest {
 protected:
  void SetUp() override {
    SandboxContractTest::SetUp();
    self_ = login();
    ASSERT_NE(self_, nullptr);
  }

  // The offer as the detail screen reads it (the detail request is not the subject here).
  ActivityModel offer(const std::string& id) {
    const Json reply = vendor_->get("getCommodityDetailInfo", {{"commodityId", id}, {"sessionId", self_->sessionId}});
    return ActivityModel(reply.value("data", Json::object()));
  }
  static long long fen(const std::string& yuan) { return std::llround(std::stod(yuan) * 100); }

  // The orders of one tab (first page) as "status" by "orderId".
  std::map<std::string, std::string> tab(long type) {
    auto request = std::make_shared<MyOrderNetApi>("1", type);
    std::map<std::string, std::string> out;
    if (!sendCorrect(request)) return out;
    const Json list = dataOf(*request).value("dataList", Json::array());
    for (const Json& order : list) out[strForKey(order, "orderId")] = strForKey(order, "status");
    return out;
  }

  std::shared_ptr<UserInfoModel> self_;
};

TEST_F(OrdersContractTest, BalancePaymentForAnOfferChargesTheBalanceAndARefundReturnsIt) {
  const ActivityModel voucher = offer(kVoucherOffer);
  const long long unit = fen(voucher.nowPrice);
  ASSERT_GT(unit, 0);
  const auto before = balance();
  ASSERT_TRUE(before.has_value());

  auto pay =
      std::make_shared<PreparePayNetApi>(std::to_string(2 * unit), "3", voucher.storeId, true, kVoucherOffer, "2", "0");
  ASSERT_EQ(pay->requestUrl(), "postPayForActivity");
  ASSERT_TRUE(sendCorrect(pay)) << pay->responseString();
  const Json paid = dataOf(*pay);
  const std::string orderId = strForKey(paid, "orderId");
  EXPECT_FALSE(strForKey(paid, "prepay_id").empty());
  EXPECT_EQ(strForKey(paid, "status"), "1");
  EXPECT_EQ(balance(), *before - 2 * unit);
  EXPECT_EQ(GlobalData::sharedInstance().selfInfo()->balance, std::to_string(*before - 2 * unit));

  auto detail = std::make_shared<OrderDetailNetApi>(orderId);
  ASSERT_TRUE(sendCorrect(detail));
  const Json order = dataOf(*detail);
  EXPECT_EQ(strForKey(order, "number"), "2");
  EXPECT_EQ(fen(strForKey(order, "totalPrices")), 2 * unit);
  EXPECT_EQ(strForKey(order, "promotionCode").size(), 12u);
  EXPECT_EQ(strForKey(order, "commodityId"), kVoucherOffer);
  EXPECT_NE(strForKey(order, "orderType"), "1") << "an offer is an activity order";

  // A total that is not the client's count × price is refused and charges nothing.
  auto wrongTotal = std::make_shared<PreparePayNetApi>(std::to_string(unit + 50), "3", voucher.storeId, true,
                                                       kVoucherOffer, "1", "0");
  ASSERT_EQ(send(wrongTotal), "success");
  EXPECT_FALSE(wrongTotal->isCorrectResult());
  // More than the balance covers is refused with the balance message.
  const long long count = (*before - 2 * unit) / unit + 1;
  auto tooMuch = std::make_shared<PreparePayNetApi>(std::to_string(count * unit), "3", voucher.storeId, true,
                                                    kVoucherOffer, std::to_string(count), "0");
  ASSERT_EQ(send(tooMuch), "success");
  EXPECT_FALSE(tooMuch->isCorrectResult());
  ASSERT_FALSE(shown().empty());
  EXPECT_EQ(shown().back(), "余额不足");
  EXPECT_EQ(balance(), *before - 2 * unit);

  ASSERT_EQ(tab(1).count(orderId), 1u);
  auto refund = std::make_shared<RefundNetApi>(orderId);
  ASSERT_TRUE(sendCorrect(refund));
  EXPECT_EQ(balance(), *before);
  EXPECT_EQ(tab(1).count(orderId), 0u);
  const auto done = tab(3);
  ASSERT_EQ(done.count(orderId), 1u);
  EXPECT_EQ(done.at(orderId), "3");
  auto again = std::make_shared<RefundNetApi>(orderId);
  ASSERT_EQ(send(again), "success");
  EXPECT_FALSE(again->isCorrectResult());
  EXPECT_EQ(balance(), *before) << "a second refund returns nothing";
}

TEST_F(OrdersContractTest, ChannelPaymentWaitsForTheVendorsCompletion) {
  const auto before = balance();
  ASSERT_TRUE(before.has_value());
  auto pay = std::make_shared<PreparePayNetApi>("1234", "0", "1", false);
  ASSERT_EQ(pay->requestUrl(), "postPayForStore");
  ASSERT_TRUE(sendCorrect(pay));
  const std::string prepayId = strForKey(dataOf(*pay), "prepay_id");
  const std::string orderId = strForKey(dataOf(*pay), "orderId");
  ASSERT_FALSE(prepayId.empty());
  EXPECT_EQ(tab(0).count(orderId), 0u) << "a waiting order is not listed";
  EXPECT_EQ(balance(), *before);

  const Json completed = vendor_->complete(server_->paymentKey(), prepayId, "success");
  EXPECT_EQ(completed.value("success", ""), "0") << completed.dump();
  const auto rated = tab(2);
  ASSERT_EQ(rated.count(orderId), 1u);
  EXPECT_EQ(rated.at(orderId), "2");
  EXPECT_EQ(balance(), *before) << "the channel paid it all";
  const Json replay = vendor_->complete(server_->paymentKey(), prepayId, "success");
  EXPECT_NE(replay.value("success", "0"), "0");

  // With the balance first, the balance part is taken when the channel completes.
  auto mixed = std::make_shared<PreparePayNetApi>(std::to_string(*before + 500), "1", "1", true);
  ASSERT_TRUE(sendCorrect(mixed));
  EXPECT_EQ(balance(), *before);
  const std::string mixedPrepay = strForKey(dataOf(*mixed), "prepay_id");
  ASSERT_EQ(
      vendor_->complete(server_->paymentKey(), mixedPrepay, "success").value("success", ""),
      "0");
  EXPECT_EQ(balance(), 0);

  // A cancelled payment closes the order: it is never listed and charges nothing.
  auto cancelled = std::make_shared<PreparePayNetApi>("800", "2", "1", false);
  ASSERT_TRUE(sendCorrect(cancelled));
  const std::string cancelledId = strForKey(dataOf(*cancelled), "orderId");
  vendor_->complete(server_->paymentKey(), strForKey(dataOf(*cancelled), "prepay_id"), "cancel");
  EXPECT_EQ(tab(0).count(cancelledId), 0u);
  EXPECT_EQ(balance(), 0);
}

TEST_F(OrdersContractTest, TabsListTheirStatusesAndTheAllTabHoldsThemAll) {
  const auto all = tab(0);
  ASSERT_FALSE(all.empty());
  for (long type = 1; type <= 3; ++type) {
    const auto orders = tab(type);
    EXPECT_FALSE(orders.empty()) << "the demo member has orders in tab " << type;
    for (const auto& [id, status] : orders) {
      if (type == 3) {
        EXPECT_TRUE(status != "1" && status != "2") << id << " " << status;
      } else {
        EXPECT_EQ(status, std::to_string(type)) << id;
      }
    }
  }
  for (const auto& [id, status] : all) EXPECT_NE(status, "0") << id;

  auto unknownTab = std::make_shared<MyOrderNetApi>("1", 7);
  ASSERT_EQ(send(unknownTab), "success");
  EXPECT_FALSE(unknownTab->isCorrectResult());
  auto foreign = std::make_shared<OrderDetailNetApi>("SB0000000000000000");
  ASSERT_EQ(send(foreign), "success");
  EXPECT_FALSE(foreign->isCorrectResult());
}

// The agent is process-wide, so several payments race through it at once: the transport
// runs them in parallel and the sandbox must let exactly as many through as the balance pays.
TEST_F(OrdersContractTest, ConcurrentBalancePaymentsNeverOverdrawTheBalance) {
  const auto before = balance();
  ASSERT_TRUE(before.has_value());
  const int payments = 8;
  const long long each = *before / (payments - 2) + 1;  // the balance pays for payments - 3
  std::vector<std::shared_ptr<PreparePayNetApi>> requests;
  int finished = 0;
  for (int i = 0; i < payments; ++i) {
    requests.push_back(std::make_shared<PreparePayNetApi>(std::to_string(each), "3", std::to_string(1 + i), true));
    requests.back()->startWithCompletionBlockWithSuccess([&](BaseRequest&) { ++finished; },
                                                         [&](BaseRequest&) { ++finished; });
  }
  ASSERT_TRUE(loop_->runUntil([&] { return finished == payments; }, std::chrono::seconds(30)));
  long long accepted = 0;
  for (const auto& request : requests) accepted += request->isCorrectResult() ? 1 : 0;
  EXPECT_EQ(accepted, *before / each);
  EXPECT_EQ(balance(), *before - accepted * each);

  // The fund records add up to the balance change.
  auto records = std::make_shared<TopUpRecordNetApi>("1", "2");
  ASSERT_TRUE(sendCorrect(records));
  long long spent = 0;
  const Json list = dataOf(*records).value("dataList", Json::array());
  for (std::size_t i = 0; i < list.size() && i < static_cast<std::size_t>(accepted); ++i) {
    spent += std::stoll(strForKey(list[i], "amount"));
  }
  EXPECT_EQ(spent, -accepted * each);
}

}  // namespace
}  // namespace qmv::contract
