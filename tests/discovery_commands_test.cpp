// The discovery commands of the CLI, each run as one start of the application against
// its embedded sandbox, in a fresh home.
#include <gtest/gtest.h>

#include <utility>

#include "platform/env.h"
#include "tests/cli_runner.h"

namespace qmv {
namespace {

class DiscoveryCommandsTest : public testsupport::CliHomeTest {
 protected:
  static bool has(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }
};

TEST_F(DiscoveryCommandsTest, SearchHistoryAndCitySurviveBetweenRuns) {
  auto searched = run({"--at", "35.061,118.343", "search", "--district", "河东区", "--sort", "2"});
  ASSERT_EQ(searched.status, 0) << searched.out;
  EXPECT_TRUE(has(searched.out, "河东区 | 全部分类 | 人均最低")) << searched.out;
  EXPECT_TRUE(has(searched.out, "门市价:￥")) << searched.out;
  EXPECT_TRUE(has(searched.out, "km |")) << "rows show the distance with a position";

  EXPECT_EQ(run({"search", "--district", "不存在区"}).status, 2);
  EXPECT_EQ(run({"search", "--sort", "9"}).status, 2);

  ASSERT_EQ(run({"search", "火锅"}).status, 0);
  const auto history = run({"history"});
  EXPECT_TRUE(has(history.out, "历史搜索\n  火锅\n")) << history.out;
  EXPECT_TRUE(has(run({"history", "--clear"}).out, "暂无历史记录"));

  const auto chosen = run({"city", "济南市"});
  EXPECT_TRUE(has(chosen.out, "济南市 370100")) << chosen.out;
  EXPECT_TRUE(has(run({"city"}).out, "济南市 370100"));
  EXPECT_EQ(run({"city", "没有这个市"}).status, 1);
  // The guide's picker chooses the same way, and its position request needs a position.
  const auto guided = run({"--at", "35.061,118.343", "guide", "--locate", "--city", "临沂市"});
  ASSERT_EQ(guided.status, 0) << guided.out;
  EXPECT_TRUE(has(guided.out, "已获取位置") && has(guided.out, "当前城市：临沂市")) << guided.out;
  EXPECT_EQ(run({"guide", "--locate"}).status, 1);

  // In one shell the home screen exists from the start; it names the city it shows.
  const auto shell = testsupport::runQmv(home_.home(), {"shell"}, "city 临沂市\nhome\nexit\n");
  EXPECT_TRUE(has(shell.out, "city: 临沂市\n")) << shell.out;
  EXPECT_TRUE(has(shell.out, "沂蒙小调火锅")) << "a store of 临沂市: " << shell.out;
}

TEST_F(DiscoveryCommandsTest, RouteNeedsAPositionAndConvertNeedsNoStart) {
  const auto routed = run({"--at", "35.061,118.343", "route", "1"});
  ASSERT_EQ(routed.status, 0) << routed.out;
  EXPECT_TRUE(has(routed.out, "baidumap://map/direction?origin=")) << routed.out;
  EXPECT_TRUE(has(routed.out, "&&mode=driving"));
  const auto blind = run({"route", "1"});
  EXPECT_EQ(blind.status, 1);
  EXPECT_TRUE(has(blind.out, "未获取到用户当前位置")) << blind.out;

  const auto converted = run({"--json", "convert", "bd-gcj", "35.0", "118.0"});
  ASSERT_EQ(converted.status, 0);
  const Json doc = parseJson(converted.out);
  ASSERT_TRUE(doc.is_object()) << converted.out;
  EXPECT_NEAR(doc["data"]["latitude"].get<double>(), 35.0 - 0.006, 0.001);
  EXPECT_EQ(run({"convert", "wgs-bd", "1", "2"}).status, 2);

  // As in a new process: nothing installed yet, because the command needs no start.
  Env installed = std::exchange(Env::current(), Env{});
  const auto bare = run({"convert", "bd-gcj", "35.0", "118.0"});
  Env::current() = std::move(installed);
  EXPECT_EQ(bare.status, 0) << bare.err;
}

TEST_F(DiscoveryCommandsTest, HomePagingEndsAtTheFirstEmptyPage) {
  const auto home = run({"--json", "home", "--page", "50"});
  ASSERT_EQ(home.status, 0) << home.out;
  const Json doc = parseJson(home.out);
  ASSERT_TRUE(doc.is_object()) << home.out;
  const long total = doc["data"]["total"];
  ASSERT_GT(total, 10);
  EXPECT_EQ(doc["data"]["page"], (total + 9) / 10 + 1) << "asking stops at the page that came back empty";
  EXPECT_EQ(doc["data"]["popular"].size(), static_cast<std::size_t>(total));
}

}  // namespace
}  // namespace qmv
