// The contacts, wheel and page flows end to end against the sandbox: through the CLI as
// separate starts of the application, and the wheel screen's prizes against the money the
// sandbox records.
#include <gtest/gtest.h>

#include "apps/sandbox/sandbox_server.h"
#include "core/common/json.h"
#include "features/wallet/top_up_record_net_api.h"
#include "features/wheel/wheel_view_controller.h"
#include "platform/testing/temp_home.h"
#include "tests/cli_runner.h"
#include "tests/discovery_sandbox_fixture.h"

namespace qmv {
namespace {

using testsupport::runQmv;

using ReferralWheelPagesCommandsTest = testsupport::CliHomeTest;

TEST_F(ReferralWheelPagesCommandsTest, ContactsWheelAndPagesAsTheDemoMemberSeesThem) {
  ASSERT_EQ(run({"login", "13800000000", "qmv123"}).status, 0);

  const auto first = run({"contacts"});
  ASSERT_EQ(first.status, 0) << first.out;
  EXPECT_TRUE(first.has("我的人脉\n一级人脉: 3  二级人脉: 3\n")) << first.out;
  EXPECT_TRUE(first.has("  张三 | 手机号:138****0001 | 加入时间:")) << first.out;
  EXPECT_TRUE(first.has(" | 邀请2人\n")) << first.out;
  const auto second = run({"contacts", "138****0001"});  // as listed
  ASSERT_EQ(second.status, 0) << second.out;
  EXPECT_TRUE(second.has("张三的邀请\n  赵六 | 手机号:138****0004")) << second.out;
  EXPECT_TRUE(second.has("孙七")) << second.out;
  EXPECT_FALSE(second.has("邀请0人")) << "the second level shows no counts";
  EXPECT_EQ(run({"contacts", "13800000004"}).status, 1) << "a second-level contact has no row of its own";

  const auto wheel = run({"wheel", "spin"});
  ASSERT_EQ(wheel.status, 0) << wheel.out;
  EXPECT_TRUE(wheel.has(" of 6\nprize: ")) << wheel.out;
  EXPECT_TRUE(wheel.has("剩余抽奖次数: 2")) << wheel.out;

  // The page received the session: the sandbox names the member of its cookie. Its draw
  // link opens the pay-now screen, where the balance pays the five shares as the server
  // prices them (1.00 each).
  const long long before = balance();
  const auto coin = run({"page", "0", "--follow", "2"});
  ASSERT_EQ(coin.status, 0) << coin.out;
  EXPECT_TRUE(coin.has("title: 一元夺宝\n")) << coin.out;
  EXPECT_TRUE(coin.has("  会员: 演示会员 13800000000\n")) << coin.out;
  EXPECT_TRUE(coin.has("[2] 5元夺宝 -> qmv://pay?productId=1&series=12&acount=5\n")) << coin.out;
  EXPECT_TRUE(
      coin.has("opened QXPayNowViewController\n  productId: 1\n  series: 12\n  acount: 5\n"
               "  name: 一元夺宝-第12期\n支付订单\n一元夺宝-第12期\n"))
      << coin.out;
  EXPECT_TRUE(coin.has("支付成功\noutcome: paid\n")) << coin.out;
  EXPECT_EQ(balance(), before - 500);
  const auto community = run({"page", "1", "--follow", "1"});
  ASSERT_EQ(community.status, 0) << community.out;
  EXPECT_TRUE(community.has("title: 我的帖子\n")) << "a page link loads in place: " << community.out;
  EXPECT_EQ(run({"page", "0", "--follow", "99"}).status, 2);
  EXPECT_EQ(run({"page", "6"}).status, 2);
  // The plain screen does not intercept an application link: the load fails in the
  // client's words and offers the screen, which --open-in-app opens.
  const auto plain = run({"web", "qmv://login"});
  EXPECT_EQ(plain.status, 1);
  EXPECT_TRUE(plain.has("这是应用内的链接，网页无法打开\n[在应用中打开] -> qmv://login\n")) << plain.out;
  EXPECT_FALSE(plain.has("opened ")) << plain.out;
  {
    // A page's link, tapped: pages need a known web host, so the sandbox stands apart.
    sandbox::SandboxServer server(sandbox::SandboxOptions{home_.home() / "sandbox", 0});
    ASSERT_TRUE(server.start().ok());
    const auto pay = run({"--server", server.baseUrl(), "web", server.rootUrl() + "/static/dial/index.html", "--follow",
                          "1", "--open-in-app"});
    ASSERT_EQ(pay.status, 0) << pay.out << pay.err;
    EXPECT_TRUE(
        pay.has("follow [1] qmv://pay?productId=1&series=12&acount=1\n这是应用内的链接，网页无法打开\n"
                "[在应用中打开] -> qmv://pay?productId=1&series=12&acount=1\n"
                "opened QXPayNowViewController\n"))
        << pay.out;
    EXPECT_TRUE(pay.has("支付成功\noutcome: paid\n")) << pay.out;
  }
  EXPECT_EQ(balance(), before - 600) << "five shares, then one";

  // Nobody signed in: the page is anonymous and its pay link asks for a login first.
  TempHome fresh;
  const auto anonymous =
      runQmv(fresh.home(), {"page", "2", "--follow", "1", "--phone", "13800000000", "--password", "qmv123"});
  ASSERT_EQ(anonymous.status, 0) << anonymous.out;
  EXPECT_TRUE(anonymous.has("  未登录\n")) << anonymous.out;
  EXPECT_FALSE(anonymous.has("cookie: sessionId")) << anonymous.out;
  EXPECT_TRUE(anonymous.has("opened LoginViewController\n账号: 13800000000\n")) << anonymous.out;
}

class WheelPrizeTest : public testsupport::DiscoverySandboxTest {};

TEST_F(WheelPrizeTest, EverySpinsPrizeReachesTheBalanceAndTheLastSpinIsRefusedAtHome) {
  ASSERT_TRUE(login());
  const auto before = balance();
  ASSERT_TRUE(before);
  // Prizes as the sandbox books them: a cash prize is one more record of that kind.
  const auto moneyIn = [this] {
    auto records = std::make_shared<TopUpRecordNetApi>("1", "5");
    return sendCorrect(records) ? dataOf(*records) : Json();
  };
  long long records = std::stoll(strForKey(moneyIn(), "count"));
  long long prizes = 0;
  {
    WheelViewController screen;
    std::optional<bool> loaded;
    screen.onLoaded = [&loaded](bool ok) { loaded = ok; };
    screen.wheelNet();
    loop_->runUntil([&loaded] { return loaded.has_value(); }, std::chrono::seconds(20));
    ASSERT_EQ(loaded, true);
    for (int spins = 3; spins > 0; --spins) {
      std::optional<bool> spun;
      screen.onSpun = [&spun](bool ok) { spun = ok; };
      ASSERT_TRUE(screen.spinAction());
      loop_->runUntil([&spun] { return spun.has_value(); }, std::chrono::seconds(20));
      ASSERT_EQ(spun, true);
      ASSERT_TRUE(screen.stopSector());
      EXPECT_EQ(screen.wheel()->leftCount, std::to_string(spins - 1));
      const Json in = moneyIn();
      const long long now = std::stoll(strForKey(in, "count"));
      if (now == records) continue;  // a prize without cash
      ASSERT_EQ(now, records + 1);
      records = now;
      const Json& latest = in["dataList"][0];
      EXPECT_EQ(strForKey(latest, "type"), "prize");
      EXPECT_NE(strForKey(latest, "title").find(screen.prize()), std::string::npos) << strForKey(latest, "title");
      prizes += std::stoll(strForKey(latest, "amount"));
    }
    const std::size_t shownBefore = shown().size();
    EXPECT_FALSE(screen.spinAction());
    ASSERT_EQ(shown().size(), shownBefore + 1);
    EXPECT_EQ(shown().back(), "您的抽奖次数已用完");
  }
  EXPECT_EQ(balance(), *before + prizes);
}

}  // namespace
}  // namespace qmv
