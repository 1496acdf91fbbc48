// The member centre's commands as separate starts of the application against the embedded
// sandbox: the wallet overview with each kind of fund records page by page, the vouchers,
// the store comments split by stars and the member's own ratings.
#include <gtest/gtest.h>

#include "core/common/json.h"
#include "platform/testing/temp_home.h"
#include "tests/cli_runner.h"

namespace qmv {
namespace {

class MemberCentreCommandsTest : public testsupport::CliHomeTest {
 protected:
  void login() { ASSERT_EQ(run({"login", "13800000000", "qmv123"}).status, 0); }
};

TEST_F(MemberCentreCommandsTest, WalletShowsTheBalanceAndEveryKindOfRecordsPageByPage) {
  login();
  const auto wallet = run({"wallet"});
  ASSERT_EQ(wallet.status, 0) << wallet.out << wallet.err;
  EXPECT_TRUE(wallet.has("钱包\n账户余额(元) 500.00\n未绑定银行卡\n提现 | 我的银行卡 | 资金明细 | 我的代金券\n"))
      << wallet.out;
  EXPECT_TRUE(wallet.has("资金明细 - 全部 (")) << wallet.out;

  // The records of all pages add up to the balance; the kinds split them without overlap.
  long long sum = 0;
  std::size_t all = 0;
  for (int page = 1;; ++page) {
    const Json records = data({"wallet", "--page", std::to_string(page)})["records"];
    if (records.empty()) break;
    ASSERT_LT(page, 10);
    for (const Json& record : records) sum += std::stoll(record["amount"].get<std::string>());
    all += records.size();
  }
  EXPECT_EQ(sum, 50000);
  EXPECT_GT(all, 10u);
  std::size_t kinds = 0;
  for (const char* kind : {"topup", "pay", "withdraw", "refund", "prize"}) {
    const Json shown = data({"wallet", "--type", kind});
    EXPECT_EQ(shown["type"], kind);
    ASSERT_FALSE(shown["records"].empty()) << kind;
    for (const Json& record : shown["records"]) EXPECT_EQ(record["type"], kind);
    kinds += std::stoul(shown["count"].get<std::string>());
  }
  EXPECT_EQ(kinds, all);

  const auto refunds = run({"wallet", "--type", "refund"});
  EXPECT_TRUE(refunds.has("资金明细 - 退款 (1)\n")) << refunds.out;
  EXPECT_TRUE(refunds.has("  退款  订单退款:")) << refunds.out;
  const auto beyond = run({"wallet", "--type", "refund", "--page", "3"});
  EXPECT_EQ(beyond.status, 0);
  EXPECT_TRUE(beyond.said("the list ends before page 3")) << beyond.err;
  EXPECT_EQ(run({"wallet", "--type", "bonus"}).status, 2);
}

TEST_F(MemberCentreCommandsTest, VouchersShowEveryStateOverTwoPages) {
  login();
  const auto first = run({"vouchers"});
  ASSERT_EQ(first.status, 0) << first.out << first.err;
  EXPECT_TRUE(first.has("我的代金券\n  5.00元  新人5元券  全部门店通用  有效期至2027-12-31  未使用\n")) << first.out;
  for (const char* state : {"未使用", "已使用", "已过期"}) {
    EXPECT_TRUE(first.has(state) || run({"vouchers", "--page", "2"}).has(state)) << state;
  }
  const Json second = data({"vouchers", "--page", "2"});
  EXPECT_EQ(second["page"], 2);
  EXPECT_EQ(second["vouchers"].size(), 4u);
  EXPECT_EQ(run({"vouchers", "--page", "0"}).status, 2);
}

TEST_F(MemberCentreCommandsTest, CommentsOfEveryStarAddUpAndRatingsAreTheMembersOwn) {
  const auto all = run({"comments", "1"});
  ASSERT_EQ(all.status, 0) << all.out << all.err;
  EXPECT_TRUE(all.has("用户评论 - 全部 (")) << all.out;
  const Json first = data({"comments", "1"});
  const long total = std::stol(first["count"].get<std::string>());
  EXPECT_GT(total, 10) << "the store's comments fill more than one page";
  EXPECT_FALSE(data({"comments", "1", "--page", "2"})["comments"].empty());
  long ofEachStar = 0;
  for (int star = 1; star <= 5; ++star) {
    const Json some = data({"comments", "1", "--star", std::to_string(star), "--page", "1"});
    for (const Json& comment : some["comments"]) EXPECT_EQ(comment["star"], std::to_string(star));
    ofEachStar += std::stol(some["count"].get<std::string>());
  }
  EXPECT_EQ(ofEachStar, total);
  for (const char* store : {"2", "40"}) EXPECT_FALSE(data({"comments", store})["comments"].empty()) << store;
  EXPECT_EQ(run({"comments", "999"}).status, 1);
  EXPECT_EQ(run({"comments", "1", "--star", "6"}).status, 2);

  login();
  const auto ratings = run({"ratings"});
  ASSERT_EQ(ratings.status, 0) << ratings.out << ratings.err;
  EXPECT_TRUE(ratings.has("我的评价\n")) << ratings.out;
  EXPECT_TRUE(ratings.has("★★★★★")) << ratings.out;
  EXPECT_EQ(data({"ratings"})["ratings"].size(), 4u) << "one per rated order";
}

}  // namespace
}  // namespace qmv
