// The wheel record's reading rules and the wheel screen against scripted answers.
#include <gtest/gtest.h>

#include "core/request/net_api_test_support.h"
#include "features/wheel/wheel_model.h"
#include "features/wheel/wheel_view_controller.h"

namespace qmv {
namespace {

TEST(WheelModelTest, ThePeriodNeedsExactlyOneBarAndDataMustBeAnObject) {
  const WheelModel both(Json{{"time", "2017-01-01 00:00:00|2017-12-31 23:59:59"}, {"leftCount", 3}});
  EXPECT_EQ(both.timeStart, "2017-01-01 00:00:00");
  EXPECT_EQ(both.timeEnd, "2017-12-31 23:59:59");
  EXPECT_EQ(both.leftCount, "3");
  EXPECT_EQ(both.lastIndex, "0");
  EXPECT_EQ(both.result, "");
  const WheelModel emptyEnds(Json{{"time", "|"}});
  EXPECT_EQ(emptyEnds.timeStart, "") << "two empty parts are still two parts";
  for (const char* time : {"2017-01-01", "a|b|c", ""}) {
    const WheelModel unset(Json{{"time", time}});
    EXPECT_FALSE(unset.timeStart.has_value()) << time;
    EXPECT_FALSE(unset.timeEnd.has_value()) << time;
  }
  EXPECT_TRUE(WheelModel::fromData(Json::object()).has_value());
  EXPECT_FALSE(WheelModel::fromData(Json::array({Json::object()})).has_value());
  EXPECT_FALSE(WheelModel::fromData("wheel").has_value());
  EXPECT_FALSE(WheelModel::fromData(nullptr).has_value());
}

class WheelScreenTest : public testsupport::ApiServerTest {
 protected:
  // The screen's requests go before the transport they were sent through.
  void TearDown() override {
    screen_.reset();
    ApiServerTest::TearDown();
  }

  // The loop's clock is 2017-07-14; the wheel runs all year unless a test says otherwise.
  void serveWheel(const std::string& left, const std::string& time = "2017-01-01 00:00:00|2017-12-31 23:59:59") {
    answer("getWheels", R"({"success":"0","data":{"id":"7","leftCount":")" + left + R"(","time":")" + time +
                            R"(","itemCount":"6","rule":"每人3次"}})");
    std::optional<bool> loaded;
    screen_->onLoaded = [&loaded](bool ok) { loaded = ok; };
    screen_->wheelNet();
    loop_->runUntil([&loaded] { return loaded.has_value(); }, std::chrono::milliseconds(15000));
    ASSERT_EQ(loaded, true);
  }
  std::optional<bool> spin() {
    std::optional<bool> spun;
    screen_->onSpun = [&spun](bool ok) { spun = ok; };
    if (!screen_->spinAction()) return std::nullopt;
    loop_->runUntil([&spun] { return spun.has_value(); }, std::chrono::milliseconds(15000));
    return spun;
  }
  std::optional<WheelViewController> screen_{std::in_place};
};

TEST_F(WheelScreenTest, SpinsMoveThePointerAndRefusalsSendNothing) {
  logIn("S1");
  EXPECT_EQ(spin(), std::nullopt);
  EXPECT_EQ(overlay_->statuses().back(), "暂无转盘活动");

  serveWheel("2");
  EXPECT_EQ(screen_->periodText(), "活动时间: 2017-01-01 00:00:00 至 2017-12-31 23:59:59");
  EXPECT_EQ(screen_->sectorCount(), 6);
  EXPECT_EQ(screen_->stopSector(), std::nullopt);
  answer("getWheelResult", R"({"success":"0","data":{"index":"4","result":"谢谢参与"}})");
  ASSERT_EQ(spin(), true);
  EXPECT_EQ(last().arguments, (testsupport::Arguments{{"sessionId", "S1"}, {"id", "7"}}));
  EXPECT_EQ(screen_->stopSector(), 4);
  EXPECT_EQ(screen_->restSector(), 0);
  EXPECT_EQ(screen_->prize(), "谢谢参与");
  EXPECT_EQ(screen_->leftCountText(), "剩余抽奖次数: ") << "an answer without a count leaves none, not the old 2";
  answer("getWheelResult", R"({"success":"0","data":{"index":"9","result":"5元红包","leftCount":"0"}})");
  ASSERT_EQ(spin(), true);
  EXPECT_EQ(screen_->restSector(), 4) << "the next spin starts where the last stopped";
  EXPECT_EQ(screen_->stopSector(), std::nullopt) << "sector 9 is not on a face of 6";
  EXPECT_EQ(screen_->prize(), "5元红包");
  const std::size_t sent = received().size();
  EXPECT_EQ(spin(), std::nullopt);
  EXPECT_EQ(overlay_->statuses().back(), "您的抽奖次数已用完");

  serveWheel("3", "2017-01-01 00:00:00|2017-07-01 00:00:00");
  EXPECT_EQ(spin(), std::nullopt);
  EXPECT_EQ(overlay_->statuses().back(), "活动已结束");
  serveWheel("3", "2017-08-01|2017-09-01");
  EXPECT_EQ(spin(), std::nullopt);
  EXPECT_EQ(overlay_->statuses().back(), "活动尚未开始");
  EXPECT_EQ(received().size(), sent + 2) << "only the two wheel reads went out";

  // A period the screen cannot read is the server's to judge; a record-less answer is no spin.
  serveWheel("3", "soon|later");
  answer("getWheelResult", R"({"success":"0","data":[]})");
  EXPECT_EQ(spin(), false);
  EXPECT_EQ(overlay_->statuses().back(), "抽奖失败,请稍后再试");
}

}  // namespace
}  // namespace qmv
