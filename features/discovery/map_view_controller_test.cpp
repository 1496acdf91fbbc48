#include "features/discovery/map_view_controller.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>

#include "core/session/global_data.h"
#include "features/discovery/location_converter.h"
#include "features/discovery/map_label_layout.h"
#include "platform/env.h"
#include "platform/testing/recording_status_overlay.h"
#include "platform/testing/recording_url_opener.h"
#include "platform/testing/scripted_alerts.h"
#include "platform/testing/test_env.h"

namespace qmv {
namespace {

class MapViewControllerTest : public ::testing::Test {
 protected:
  void SetUp() override {
    Env env;
    env.overlay = overlay_;
    env.alerts = alerts_;
    env.urlOpener = urls_;
    scoped_.emplace(completedForTesting(std::move(env)));
    GlobalData::resetSharedInstance();
  }
  void TearDown() override { GlobalData::resetSharedInstance(); }

  static StoreInfoModel store(const char* coordinate) {
    return StoreInfoModel(Json{{"storeId", "3"}, {"storeName", "临沂糁馆"}, {"coordinate", coordinate}});
  }

  std::shared_ptr<RecordingStatusOverlay> overlay_ = std::make_shared<RecordingStatusOverlay>();
  std::shared_ptr<ScriptedAlerts> alerts_ = std::make_shared<ScriptedAlerts>();
  std::shared_ptr<RecordingUrlOpener> urls_ = std::make_shared<RecordingUrlOpener>();
  std::optional<ScopedEnv> scoped_;
};

TEST_F(MapViewControllerTest, SheetOffersBaiduOnlyWhenInstalledAndRoutesFromTheMember) {
  MapViewController screen(store("118.345,35.067"));
  screen.viewDidLoad();
  EXPECT_TRUE(overlay_->statuses().empty());
  const auto gcj = screen.storeCoordinateGcj();
  ASSERT_TRUE(gcj);
  EXPECT_DOUBLE_EQ(gcj->latitude, LocationConverter::transformFromBaiduToGCJ({35.067, 118.345}).latitude);

  std::vector<MapViewController::RouteOutcome> outcomes;
  screen.onRoute = [&](MapViewController::RouteOutcome o) { outcomes.push_back(o); };
  // Nothing opens a map here: no choice that would do nothing.
  screen.navigate();
  ASSERT_EQ(alerts_->shown().size(), 1u);
  EXPECT_EQ(alerts_->shown()[0].title, "导航到 临沂糁馆");
  EXPECT_EQ(alerts_->shown()[0].buttons, (std::vector<std::string>{"取消"}));
  alerts_->script({0, {}});
  alerts_->flush();
  EXPECT_EQ(outcomes.back(), MapViewController::RouteOutcome::Cancelled);

  // The desktop's map application takes the store's WGS-84 position as a geo URI.
  urls_->allow("geo:");
  urls_->allow("http://maps.apple.com/");
  screen.navigate();
  EXPECT_EQ(alerts_->shown()[1].buttons, (std::vector<std::string>{"地图", "苹果地图", "取消"}));
  alerts_->script({0, {}});
  alerts_->flush();
  EXPECT_EQ(outcomes.back(), MapViewController::RouteOutcome::Opened);
  ASSERT_EQ(urls_->opened().size(), 1u);
  const Coordinate wgs = LocationConverter::transformFromGCJToWGS(*gcj);
  char geo[96];
  std::snprintf(geo, sizeof geo, "geo:%.8f,%.8f", wgs.latitude, wgs.longitude);
  EXPECT_EQ(urls_->opened()[0], geo);
  EXPECT_NEAR(wgs.latitude, 35.067, 0.02) << "the BD-09 and GCJ-02 offsets are taken off";

  urls_->allow("baidumap://");
  screen.navigate();
  EXPECT_EQ(alerts_->shown()[2].buttons, (std::vector<std::string>{"地图", "苹果地图", "百度地图", "取消"}));
  alerts_->script({2, {}});
  alerts_->flush();
  EXPECT_EQ(outcomes.back(), MapViewController::RouteOutcome::NoUserLocation);
  EXPECT_EQ(overlay_->statuses().back(), "未获取到用户当前位置");
  EXPECT_EQ(urls_->opened().size(), 1u) << "nothing more opened";

  const Coordinate member{35.05, 118.33};
  GlobalData::sharedInstance().setUserLocation(member);
  screen.navigate();
  alerts_->script({2, {}});
  alerts_->flush();
  EXPECT_EQ(outcomes.back(), MapViewController::RouteOutcome::Opened);
  const Coordinate origin =
      LocationConverter::transformFromGCJToBaidu(LocationConverter::transformFromWGSToGCJ(member));
  char expected[256];
  std::snprintf(expected, sizeof expected,
                "baidumap://map/direction?origin=%.8f,%.8f&destination=35.06700000,118.34500000&&mode=driving",
                origin.latitude, origin.longitude);
  ASSERT_EQ(urls_->opened().size(), 2u);
  EXPECT_EQ(urls_->opened()[1], expected);
  EXPECT_NE(origin.latitude, member.latitude) << "the origin is converted, not sent raw";
}

TEST_F(MapViewControllerTest, StoreWithoutUsableCoordinateShowsLocationError) {
  for (const char* bad : {"", "118.3", "abc,35.0", "118.3,"}) {
    MapViewController screen(store(bad));
    screen.viewDidLoad();
    EXPECT_FALSE(screen.storeCoordinateGcj()) << bad;
  }
  EXPECT_EQ(overlay_->statuses(), std::vector<std::string>(4, "位置信息错误"));
}

TEST(MapLabelLayout, EarlierTitlesWinOverlapsAndUnusableBoxesAreLeftOff) {
  const double nan = std::nan("");
  const std::vector<LabelBox> boxes = {
      {0, 0, 100, 20},    // first: always shown
      {50, 10, 100, 20},  // covers the first
      {102, 0, 50, 20},   // 2 px from the first: touching counts
      {110, 0, 50, 20},   // clear of the first; the left-off second does not block it
      {0, 30, 100, 20},   // below the first, 10 px apart
      {nan, 0, 10, 10},   // a pin the viewport could not place
      {200, 0, 0, 20},    // an empty title
  };
  EXPECT_EQ(shownLabels(boxes), (std::vector<bool>{true, false, false, true, true, false, false}));
  EXPECT_EQ(shownLabels(boxes, 12)[4], false) << "a wider gap parts the first two rows";
  EXPECT_TRUE(shownLabels({}).empty());
}

}  // namespace
}  // namespace qmv
