// Orders contract: prepare-pay from the balance and through a channel, the order list's tabs
// and refunds, through the client's request classes. The sandbox's own refusals (totals,
// balance, replays, concurrent payments) are its handler tests' subject.
#include <cmath>
#include <map>

#include "features/discovery/activity_model.h"
#include "features/orders/my_order_net_api.h"
#include "features/orders/order_detail_net_api.h"
#include "features/orders/prepare_pay_net_api.h"
#include "features/orders/refund_net_api.h"
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

  ASSERT_EQ(tab(1).count(orderId), 1u);
  auto refund = std::make_shared<RefundNetApi>(orderId);
  ASSERT_TRUE(sendCorrect(refund));
  EXPECT_EQ(balance(), *before);
  EXPECT_EQ(tab(1).count(orderId), 0u);
  const auto done = tab(3);
  ASSERT_EQ(done.count(orderId), 1u);
  EXPECT_EQ(done.at(orderId), "3");
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
}

}  // namespace
}  // namespace qmv::contract
