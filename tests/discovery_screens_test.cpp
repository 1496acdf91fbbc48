// The map, store, offer and home screens against the sandbox.
#include <algorithm>

#include "apps/sandbox/demo_data.h"
#include "core/common/dictionary.h"
#include "core/common/settings_keys.h"
#include "core/session/auto_login.h"
#include "core/session/self_info_change.h"
#include "core/storage/db_util.h"
#include "features/discovery/location_converter.h"
#include "features/discovery/main_view_controller.h"
#include "features/discovery/near_by_map_view.h"
#include "features/discovery/nearby_view_controller.h"
#include "features/discovery/qx_activities_view_controller.h"
#include "features/discovery/qxr_store_detail_view_controller.h"
#include "platform/reverse_geocoder.h"
#include "tests/discovery_sandbox_fixture.h"

namespace qmv {
namespace {

using testsupport::DiscoverySandboxTest;
using LocateOutcome = MainViewController::LocateOutcome;

class DiscoveryScreensTest : public DiscoverySandboxTest {};

// A home screen that has started locating, and how the locating ended.
struct Locating {
  MainViewController home;
  std::optional<LocateOutcome> outcome;
  Locating() {
    home.onLocated = [this](LocateOutcome o) { outcome = o; };
    home.startLocate();
  }
};

TEST_F(DiscoveryScreensTest, MapNeedsAPositionAndPinsStoresInTheMapDatum) {
  NearByMapView map;
  EXPECT_FALSE(load(map, [&] { map.getMapListNet(); }));
  EXPECT_EQ(overlay_->statuses(), std::vector<std::string>{"请开启定位功能"});
  EXPECT_TRUE(map.pins.empty());

  GlobalData::sharedInstance().setUserLocation(kLinyi);
  ASSERT_TRUE(load(map, [&] { map.getMapListNet(); }));
  ASSERT_FALSE(map.pins.empty());
  ASSERT_EQ(map.pins.size(), map.storeList.size());
  for (std::size_t i = 0; i < map.pins.size(); ++i) {
    const StoreInfoModel& store = map.storeList[i];
    const Coordinate bd{std::stod(*store.latitude), std::stod(*store.longitude)};
    const Coordinate gcj = LocationConverter::transformFromBaiduToGCJ(bd);
    EXPECT_DOUBLE_EQ(map.pins[i].gcj.latitude, gcj.latitude);
    EXPECT_DOUBLE_EQ(map.pins[i].gcj.longitude, gcj.longitude);
    EXPECT_EQ(map.pins[i].subtitle, store.mark + "分 已售" + store.num + " 人均:￥" + store.price);
  }
  // Nearest first: the first pin is closer to the member than the last.
  const auto wgsOf = [](const NearByMapView::Pin& pin) { return LocationConverter::transformFromGCJToWGS(pin.gcj); };
  EXPECT_LT(LocationConverter::distanceInMeters(kLinyi, wgsOf(map.pins.front())),
            LocationConverter::distanceInMeters(kLinyi, wgsOf(map.pins.back())));

  // A category of its own: 休闲娱乐 (30) gives fewer stores.
  const std::size_t all = map.pins.size();
  ASSERT_TRUE(load(map, [&] { map.mapViewChangedTypeID("30"); }));
  EXPECT_EQ(map.typeID, "30");
  EXPECT_EQ(map.categoryTitle, "休闲娱乐");
  EXPECT_LT(map.pins.size(), all);
  EXPECT_FALSE(map.pins.empty());

  map.selectPin(0);
  ASSERT_TRUE(navigator_->topScreen());
  EXPECT_EQ(navigator_->topScreen()->name, "QXRStoreDetailViewController");
  EXPECT_EQ(navigator_->topScreen()->payload["storeId"], map.pins[0].storeId);
}

TEST_F(DiscoveryScreensTest, WithTheMapShowingAHomeCategoryReloadsTheMapNotTheList) {
  GlobalData::sharedInstance().setUserLocation(kLinyi);
  NearbyViewController controller;
  controller.viewDidLoad();
  int mapLoads = 0;
  int listLoads = 0;
  controller.mapView().onLoaded = [&](bool) { ++mapLoads; };
  controller.nearbyView().onLoaded = [&](bool) { ++listLoads; };
  controller.switchRightWithAnimation();
  EXPECT_FALSE(controller.isLeft());
  ASSERT_TRUE(runUntil([&] { return mapLoads == 1; }));
  controller.selectedCategoryFromMain("40");
  ASSERT_TRUE(runUntil([&] { return mapLoads == 2; }));
  EXPECT_EQ(listLoads, 0);
  EXPECT_FALSE(controller.isLeft());
  EXPECT_EQ(controller.mapView().typeID, "40");
  EXPECT_EQ(controller.nearbyView().categoryScreen.getSelectedTypeId(), "40");
  controller.switchLeftWithAnimation();
  controller.selectedCategoryFromMain("50");
  ASSERT_TRUE(runUntil([&] { return listLoads == 1; }));
  EXPECT_EQ(mapLoads, 2);
}

TEST_F(DiscoveryScreensTest, StoreScreenShowsItsTextsAndActions) {
  QXRStoreDetailViewController screen("1", "列表里的名字");
  EXPECT_EQ(screen.storeName(), "列表里的名字");
  ASSERT_TRUE(load(screen, [&] { screen.loadDetail(); }));
  const StoreInfoModel& store = *screen.store();
  EXPECT_EQ(store.storeId, "1");
  EXPECT_EQ(screen.storeName(), "沂蒙小调火锅(人民广场店)");
  EXPECT_EQ(screen.pictureCountText(), std::to_string(store.imgURLList.size()) + "张");
  EXPECT_EQ(screen.openingHoursText(), "营业时间: 09:00-22:00");
  EXPECT_EQ(screen.perPersonText(), "人均¥" + store.price);
  EXPECT_EQ(screen.commentCountText(), store.starNum + "条评论");
  EXPECT_EQ(store.activityList.size(), 2u);

  screen.callStore();
  ASSERT_EQ(urls_->opened().size(), 1u);
  EXPECT_EQ(urls_->opened()[0], "tel:" + store.phone);
  screen.showAddress();
  EXPECT_EQ(navigator_->topScreen()->name, "MapViewController");
  screen.selectActivity(0);
  EXPECT_EQ(navigator_->topScreen()->name, "QXActivitiesViewController");
  EXPECT_EQ(navigator_->topScreen()->payload["commodityId"], store.activityList[0].commodityID);
  screen.showMoreComments();
  EXPECT_EQ(navigator_->topScreen()->name, "UserCommitViewController");

  // Store 7 has no phone: nothing is dialled.
  QXRStoreDetailViewController silent("7", "");
  ASSERT_TRUE(load(silent, [&] { silent.loadDetail(); }));
  silent.callStore();
  EXPECT_EQ(overlay_->statuses().back(), "该商家暂未提供电话");
  EXPECT_EQ(urls_->opened().size(), 1u);

  // An unknown store: the server's message, no record.
  QXRStoreDetailViewController missing("999999", "");
  EXPECT_FALSE(load(missing, [&] { missing.loadDetail(); }));
  EXPECT_FALSE(missing.store().has_value());
  EXPECT_EQ(overlay_->statuses().back(), "商家不存在");
  missing.showAddress();
  EXPECT_EQ(overlay_->statuses().back(), "位置信息错误");
}

TEST_F(DiscoveryScreensTest, OfferScreenShowsPricesPackagesAndNotice) {
  QXActivitiesViewController screen("1");
  ASSERT_TRUE(load(screen, [&] { screen.loadDetail(); }));
  const ActivityModel& offer = *screen.activity();
  ASSERT_NE(offer.isFirst, "0") << "a signed-out member buys for the first time";
  EXPECT_EQ(screen.priceText(), "¥" + offer.firstPrice);
  EXPECT_EQ(screen.originalPriceText(), "原价:¥" + offer.price);
  EXPECT_EQ(screen.soldText(), "已售" + offer.num + "份");
  EXPECT_TRUE(screen.showsDescImage());
  const auto packages = screen.packages();
  ASSERT_EQ(packages.size(), 1u);
  EXPECT_EQ(packages[0].title, "套餐内容");
  ASSERT_EQ(packages[0].items.size(), 2u);
  EXPECT_EQ(packages[0].items[1].commodity, "饮品");
  EXPECT_EQ(packages[0].items[1].amount, "2杯");
  const std::vector<std::string> expected = {
      "有效期:" + offer.date,  "使用时间:" + offer.time, "使用规则:",  "●每人每次限用一张",
      "●不与店内其他优惠同享", "●请提前一天预约",        "●节假日通用"};
  EXPECT_EQ(screen.noticeLines(), expected);
  screen.callStore();
  ASSERT_EQ(urls_->opened().size(), 1u);
  EXPECT_EQ(urls_->opened()[0], "tel:" + offer.storePhone);
}

TEST_F(DiscoveryScreensTest, OpenStoreAndOfferLoadAgainWhenTheMemberSignsInOrOut) {
  // Opened before the automatic sign-in has ended: the first-purchase price of offer 1,
  // which the demo member has bought before.
  QXRStoreDetailViewController store("1", "");
  QXActivitiesViewController offer("1");
  ASSERT_TRUE(load(store, [&] { store.loadDetail(); }));
  ASSERT_TRUE(load(offer, [&] { offer.loadDetail(); }));
  const auto firstOfStore = [&store] {
    const auto& list = store.store()->activityList;
    const auto it = std::find_if(list.begin(), list.end(), [](const ActivityModel& a) { return a.commodityID == "1"; });
    return it != list.end() && it->showsFirstPrice();
  };
  ASSERT_TRUE(firstOfStore());
  EXPECT_EQ(offer.priceText(), "¥" + offer.activity()->firstPrice);

  int storeLoads = 0;
  int offerLoads = 0;
  store.onLoaded = [&storeLoads](bool loaded) { storeLoads += loaded; };
  offer.onLoaded = [&offerLoads](bool loaded) { offerLoads += loaded; };
  ASSERT_TRUE(home_.settings().setObjects(Json{{kUserPhoneKey, "13800000000"}, {kPasswordKey, "qmv123"}}).ok());
  AutoLogin autoLogin;
  ASSERT_TRUE(autoLogin.autoLoginNet());
  ASSERT_TRUE(runUntil([&] { return storeLoads == 1 && offerLoads == 1; }));
  EXPECT_FALSE(firstOfStore());
  EXPECT_EQ(offer.priceText(), "¥" + offer.activity()->nowPrice);

  // The same session again is no change; signed out, first purchases again.
  changeSelfInfo(GlobalData::sharedInstance().selfInfo());
  EXPECT_FALSE(loop_->runUntil([&] { return storeLoads + offerLoads > 2; }, std::chrono::milliseconds(500)));
  changeSelfInfo(nullptr);
  ASSERT_TRUE(runUntil([&] { return storeLoads == 2 && offerLoads == 2; }));
  EXPECT_TRUE(firstOfStore());
  EXPECT_EQ(offer.priceText(), "¥" + offer.activity()->firstPrice);
}

TEST_F(DiscoveryScreensTest, HomeRefreshLoadsTheCurrentCityAndPagesPopularStores) {
  MainViewController home;
  bool loaded = false;
  home.onLoaded = [&] { loaded = true; };
  home.refreshNet();
  ASSERT_TRUE(runUntil([&] { return loaded; }));
  ASSERT_FALSE(home.resources().empty());
  // A banner opens its page on the plain page screen, under its own title.
  ASSERT_TRUE(home.didSelectBanner(0));
  EXPECT_EQ(navigator_->topScreen()->name, "WebViewController");
  EXPECT_EQ(navigator_->topScreen()->payload,
            (Json{{"title", home.resources()[0].title}, {"url", home.resources()[0].URL}}));
  EXPECT_FALSE(home.didSelectBanner(home.resources().size()));
  ASSERT_FALSE(home.recommendStores().empty());
  ASSERT_EQ(home.popularStores().size(), 10u);
  EXPECT_FALSE(home.templates().empty());
  EXPECT_GT(home.popularTotal(), 10);
  for (const auto& store : home.popularStores()) {
    EXPECT_EQ(store.distanceText(GlobalData::sharedInstance().userLocation()), "--km");
  }
  // Every recommended store is in the demo city (临沂市, id 371300).
  for (const auto& store : home.recommendStores()) {
    EXPECT_TRUE(store.address.starts_with("兰山区") || store.address.starts_with("河东区") ||
                store.address.starts_with("罗庄区"))
        << store.address;
  }

  std::optional<bool> page;
  home.onPopularLoaded = [&](bool ok) { page = ok; };
  home.loadMorePopular();
  ASSERT_TRUE(runUntil([&] { return page.has_value(); }));
  EXPECT_EQ(home.popularPage(), 2);
  EXPECT_GT(home.popularStores().size(), 10u);

  // A city change restarts at page 1 with the other city's stores. A load-more while
  // that refresh runs is refused: no later page of the new city lands on the old list.
  home_.settings().setString("济南市", kSelectCityKey);
  loaded = false;
  home.refreshNet();
  home.loadMorePopular();
  ASSERT_TRUE(runUntil([&] { return loaded; }));
  EXPECT_EQ(home.popularPage(), 1);
  EXPECT_LE(home.popularStores().size(), 10u);
  ASSERT_FALSE(home.popularStores().empty());
  for (const auto& store : home.popularStores()) {
    EXPECT_FALSE(store.address.starts_with("兰山区")) << store.address;
  }

  // A city without stores shows the placeholder row.
  home_.settings().setString("青岛市", kSelectCityKey);
  loaded = false;
  home.refreshNet();
  ASSERT_TRUE(runUntil([&] { return loaded; }));
  ASSERT_EQ(home.popularStores().size(), 1u);
  EXPECT_TRUE(MainViewController::isPlaceholderRow(home.popularStores()[0]));
}

TEST_F(DiscoveryScreensTest, LocatingOffersToSwitchToTheLocatedCity) {
  // Nothing selected yet: the located city is taken at once.
  {
    Locating first;
    location_->deliver(kJinan);
    EXPECT_EQ(first.outcome, LocateOutcome::Selected);
    EXPECT_EQ(home_.settings().stringForKey(kSelectCityKey), "济南市");
    EXPECT_EQ(home_.settings().stringForKey(kSelectCityDisKey), "济南市");
    EXPECT_EQ(first.home.addressButtonTitle(), "济南市");
    ASSERT_TRUE(GlobalData::sharedInstance().userLocation());
    bool loaded = false;
    first.home.onLoaded = [&] { loaded = true; };
    ASSERT_TRUE(runUntil([&] { return loaded; })) << "the home content is reloaded";
  }
  // Selected 济南市, located in 临沂市: the switch alert; "取消" keeps the selection.
  {
    Locating declined;
    location_->deliver(kLinyi);
    location_->deliver(kJinan);  // later updates only move the stored position
    ASSERT_EQ(alerts_->shown().size(), 1u);
    EXPECT_EQ(alerts_->shown()[0].title, "切换城市提示");
    EXPECT_EQ(alerts_->shown()[0].message, "检测到您所在的城市发生变化,当前城市为临沂市,是否切换到当前城市?");
    EXPECT_EQ(alerts_->shown()[0].buttons, (std::vector<std::string>{"取消", "切换"}));
    alerts_->script({0, {}});
    alerts_->flush();
    EXPECT_EQ(declined.outcome, LocateOutcome::Declined);
    EXPECT_EQ(home_.settings().stringForKey(kSelectCityKey), "济南市");
    EXPECT_DOUBLE_EQ(GlobalData::sharedInstance().userLocation()->latitude, kJinan.latitude);
  }
  // "切换": saved, posted, reloaded.
  {
    int posted = 0;
    const auto token = Env::current().notifications->addObserver("city_changed_noti",
                                                                 [&](const std::string&, const Json&) { ++posted; });
    Locating switched;
    bool loaded = false;
    switched.home.onLoaded = [&] { loaded = true; };
    location_->deliver(kLinyi);
    alerts_->script({1, {}});
    alerts_->flush();
    EXPECT_EQ(switched.outcome, LocateOutcome::Switched);
    EXPECT_EQ(home_.settings().stringForKey(kSelectCityKey), "临沂市");
    EXPECT_EQ(home_.settings().stringForKey(kSelectCityDisKey), "临沂市");
    EXPECT_EQ(switched.home.lastSelectCity(), "临沂市");
    ASSERT_TRUE(runUntil([&] { return loaded && posted == 1; }));
    Env::current().notifications->removeObserver(token);
  }
  // Off the map of known cities: the position is kept, the city stays.
  {
    Locating away;
    location_->deliver({-33.86, 151.21});
    EXPECT_EQ(away.outcome, LocateOutcome::NoCity);
  }
  // Failures: updating fails before a fix, or location services are off.
  const std::size_t before = alerts_->shown().size();
  {
    Locating failing;
    location_->fail();
    EXPECT_EQ(failing.outcome, LocateOutcome::Failed);
    location_->setEnabled(false);
    failing.home.startLocate();
    EXPECT_EQ(failing.outcome, LocateOutcome::ServicesDisabled);
  }
  ASSERT_EQ(alerts_->shown().size(), before + 2);
  for (std::size_t i = before; i < alerts_->shown().size(); ++i) {
    EXPECT_EQ(alerts_->shown()[i].title, "提示");
    EXPECT_EQ(alerts_->shown()[i].message, "定位失败,请手动选择当前城市");
    EXPECT_EQ(alerts_->shown()[i].buttons, std::vector<std::string>{"确认"});
  }
}

// A geocoder that answers what the test says.
struct ScriptedGeocoder : ReverseGeocoder {
  std::optional<Placemark> next;
  std::optional<Placemark> reverseGeocode(Coordinate) override { return next; }
};

TEST_F(DiscoveryScreensTest, TheLocatedCityIsTheLocalityElseTheAreaElseTheFallbackCity) {
  auto geocoder = std::make_shared<ScriptedGeocoder>();
  Env::current().geocoder = geocoder;
  const auto locate = [&](std::optional<Placemark> placemark) {
    geocoder->next = std::move(placemark);
    home_.settings().removeObjectForKey(kSelectCityKey);
    Locating located;
    location_->deliver(kJinan);
    EXPECT_TRUE(located.outcome);
    return located.outcome == LocateOutcome::Selected ? home_.settings().stringForKey(kSelectCityKey).value_or("?")
                                                      : "none";
  };
  EXPECT_EQ(locate(Placemark{"济南市", "山东省"}), "济南市");
  EXPECT_EQ(locate(Placemark{"", "北京市"}), "北京市") << "a municipality has no locality";
  EXPECT_EQ(locate(Placemark{"亚特兰蒂斯市", "海底省"}), "临沂市") << "a city the area list does not know";
  EXPECT_EQ(locate(Placemark{"", ""}), "临沂市");
  EXPECT_EQ(GlobalData::sharedInstance().locationCity(), "临沂市");
  EXPECT_EQ(locate(std::nullopt), "none") << "no placemark, no city change";
  EXPECT_FALSE(home_.settings().stringForKey(kSelectCityKey));
}

TEST_F(DiscoveryScreensTest, AreaRefreshFillsTheCacheWhichIsUsedOnlyOnceComplete) {
  // The cache is told from the shipped database by its zipcodes, which it always stores as 1.
  const auto cacheInUse = [] {
    return strForKey(DBUtil::sharedManager()->getRowsForQuery("SELECT zipcode FROM areas LIMIT 1").value()[0], "zipcode") == "1";
  };
  EXPECT_FALSE(DBUtil::cacheDBValid());
  EXPECT_FALSE(cacheInUse());
  MainViewController home;
  std::optional<bool> started;
  bool loaded = false;
  home.onAreaRefreshed = [&](bool s) { started = s; };
  home.onLoaded = [&] { loaded = true; };
  // The table waits for the home's own load, then for the delay its front end asked for.
  home.areaRefreshDelay = std::chrono::milliseconds(300);
  home.viewDidLoad();
  ASSERT_TRUE(runUntil([&] { return loaded; }));
  loop_->advance(std::chrono::milliseconds(299));
  EXPECT_FALSE(loop_->runUntil([&] { return started.has_value(); }, std::chrono::milliseconds(300)));
  loop_->advance(std::chrono::milliseconds(1));
  ASSERT_TRUE(runUntil([&] { return started.has_value(); }));
  ASSERT_TRUE(*started) << "a fresh client asks with version 0 and gets every area";
  EXPECT_EQ(home_.settings().stringForKey(kAreaVersionKey), std::to_string(sandbox::kAreaVersion));
  ASSERT_TRUE(home_.settings().stringForKey(kLastAreaIdKey));
  ASSERT_EQ(home.areaRebuild().wait_for(std::chrono::seconds(10)), std::future_status::ready);
  EXPECT_TRUE(home.areaRebuild().get().ok());
  EXPECT_TRUE(home.areaRefreshed());
  EXPECT_TRUE(DBUtil::cacheDBValid());
  EXPECT_TRUE(cacheInUse());
  EXPECT_EQ(DBUtil::getDistrictIdWithName("河东区", "371300"), "371312");

  // Up to date: the server sends nothing, nothing is rebuilt.
  started.reset();
  home.getAreaListNet();
  ASSERT_TRUE(runUntil([&] { return started.has_value(); }));
  EXPECT_FALSE(*started);
  EXPECT_TRUE(DBUtil::cacheDBValid());
  // A cache that does not match "last_area_id" is unused (the area store's test) and then
  // asks with version 0 (the endpoint's test).
}

}  // namespace
}  // namespace qmv
