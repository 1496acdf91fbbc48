// The order commands of the CLI, each run as one start of the application against its
// embedded sandbox, in a fresh home signed in as the demo member.
#include <gtest/gtest.h>

#include "apps/sandbox/demo_data.h"
#include "platform/linux/qr_png.h"
#include "tests/cli_runner.h"

namespace qmv {
namespace {

using OrderCommandsTest = testsupport::CliHomeTest;

TEST_F(OrderCommandsTest, ListDetailAndRefundAsTheMemberSeesThem) {
  EXPECT_EQ(run({"orders"}).status, 1) << "not logged in";
  ASSERT_EQ(run({"login", sandbox::kDemoPhone, sandbox::kDemoPassword}).status, 0);

  const auto all = run({"--json", "orders", "--page", "5"});
  ASSERT_EQ(all.status, 0) << all.out;
  const Json doc = parseJson(all.out)["data"];
  ASSERT_EQ(doc["orders"].size(), 15u) << all.out;
  EXPECT_EQ(doc["page"], 3) << "pull-up stops once a page comes back empty";
  EXPECT_TRUE(doc["footerHidden"].get<bool>());
  EXPECT_EQ(run({"orders", "--tab", "4"}).status, 2);

  const auto toUse = run({"orders", "--tab", "1"});
  EXPECT_TRUE(toUse.has("订单号:SB20161000014 | 90分钟足疗 | 总价:¥128.00 | 数量:1 | 待使用 | [退款]")) << toUse.out;

  const auto png = home_.home() / "code.png";
  const auto offer = run({"order", "SB20161000002", "--qr", png.string()});
  ASSERT_EQ(offer.status, 0) << offer.out;
  EXPECT_TRUE(offer.has("单价 ￥118.00 x 2件\n")) << offer.out;
  EXPECT_TRUE(offer.has("验证码:5271 \n"));
  EXPECT_EQ(decodeQrFromPng(png), "5271");
  EXPECT_TRUE(run({"order", "SB20161000003"}).has("▀")) << "the code drawn in half blocks";
  const auto store = run({"order", "SB20161000012"});
  EXPECT_TRUE(store.has("订单详情\n河东铜锅涮肉买单\n实付 ￥78.00\n状态:待评价\n订单号:SB20161000012\n")) << store.out;
  EXPECT_TRUE(store.has("comment button: shown"));
  EXPECT_EQ(run({"order", "SB404"}).status, 1);

  // Unanswered or cancelled, the question is printed, nothing is sent and the run says
  // so; confirmed, the row moves.
  const auto asked = run({"refund", "SB20161000014"});
  EXPECT_EQ(asked.status, 1);
  EXPECT_TRUE(asked.has("提示\n请确定是否退款，退款后优惠码失效！\n")) << asked.out;
  EXPECT_TRUE(asked.said("--answer 确定")) << asked.err;
  const auto cancelled = run({"refund", "SB20161000014", "--answer", "取消"});
  EXPECT_EQ(cancelled.status, 1);
  EXPECT_TRUE(cancelled.said("was not refunded")) << cancelled.err;
  const auto refunded = run({"refund", "SB20161000014", "--answer", "确定"});
  ASSERT_EQ(refunded.status, 0) << refunded.out;
  EXPECT_TRUE(refunded.has("订单号:SB20161000014 | 90分钟足疗 | 总价:¥128.00 | 数量:1 | 已退款 | [已退款] disabled"))
      << refunded.out;
  EXPECT_EQ(run({"refund", "SB20161000014", "--answer", "确定"}).status, 1) << "refunded already";
  // The shell takes the answer from its next line, while the list that asked still lives,
  // though an older alert (home's failed location) waits too.
  const auto shell = testsupport::runQmv(home_.home(), {"shell"}, "home\nrefund SB20161000010\nanswer 2\nexit\n");
  EXPECT_TRUE(shell.has("订单号:SB20161000010 | 杂粮煎饼 | 总价:¥8.00 | 数量:1 | 已退款 | [已退款] disabled"))
      << shell.out << shell.err;

  // Rating: out-of-range stars are a usage error, a refused form fails the run (which
  // order leaves which tab is OrderScreensTest's).
  EXPECT_EQ(run({"rate", "SB20161000012", "--star", "6"}).status, 2);
  const auto starless = run({"rate", "SB20161000012", "--text", "锅底很香"});
  EXPECT_EQ(starless.status, 1);
  EXPECT_TRUE(starless.has("请选择评分")) << starless.out;
  const auto rated = run({"rate", "SB20161000012", "--star", "4", "--text", "锅底很香"});
  ASSERT_EQ(rated.status, 0) << rated.out;
  EXPECT_TRUE(rated.has("评价: 河东铜锅涮肉")) << rated.out;
  EXPECT_TRUE(rated.has("评价成功")) << rated.out;
  EXPECT_EQ(run({"rate", "SB20161000012", "--star", "3"}).status, 1) << "rated already";
}

}  // namespace
}  // namespace qmv
