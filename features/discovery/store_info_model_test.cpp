#include "features/discovery/store_info_model.h"

#include <gtest/gtest.h>

#include <cmath>

#include "features/discovery/location_converter.h"
#include "platform/fixed_metrics_text_measurer.h"
#include "platform/linux/pango_text_measurer.h"

namespace qmv {
namespace {

StoreInfoModel storeWith(const char* json) { return StoreInfoModel(parseJson(json)); }

TEST(StoreInfoModelTest, ReadsTextFieldsTolerantly) {
  const StoreInfoModel store = storeWith(R"({"storeId":1024,"storeName":"沂蒙小馆","address":null,
    "price":12.5,"shopPrice":"20","mark":4.5,"num":"88","starNum":3,"isFirst":"0","favorite":"1",
    "phone":"0539-1234567","time":"9:00-21:00","title":"招牌","content":"好吃","star":"5"})");
  EXPECT_EQ(store.storeId, "1024");
  EXPECT_EQ(store.storeName, "沂蒙小馆");
  EXPECT_EQ(store.address, "");
  EXPECT_EQ(store.price, "12.5");
  EXPECT_EQ(store.mark, "4.5");
  EXPECT_EQ(store.starNum, "3");
  EXPECT_EQ(store.phone, "0539-1234567");
  EXPECT_TRUE(store.activityList.empty());
  EXPECT_EQ(store.addressHeight, 0.0);
  EXPECT_EQ(store.priceText(), "￥12.5");
  EXPECT_EQ(store.shopPriceText(), "门市价:￥20");
  EXPECT_EQ(store.soldText(), "已售88份");

  // Anything but an object reads as a store of empty texts.
  const StoreInfoModel empty(Json::array({1, 2}));
  EXPECT_EQ(empty.storeId, "");
  EXPECT_EQ(empty.imgURLList, std::vector<std::string>{""});
  EXPECT_FALSE(empty.longitude);
}

TEST(StoreInfoModelTest, CoordinateIsLongitudeFirstOnlyWithExactlyTwoParts) {
  const StoreInfoModel store = storeWith(R"({"coordinate":"117.1,35.0"})");
  EXPECT_EQ(store.longitude, "117.1");
  EXPECT_EQ(store.latitude, "35.0");
  for (const char* json : {R"({"coordinate":"117.1"})", R"({"coordinate":"117.1,35.0,1"})", R"({"coordinate":null})",
                           R"({"coordinate":117.1})", R"({})"}) {
    const StoreInfoModel unset = storeWith(json);
    EXPECT_FALSE(unset.longitude) << json;
    EXPECT_FALSE(unset.latitude) << json;
  }
  const StoreInfoModel blank = storeWith(R"({"coordinate":","})");
  EXPECT_EQ(blank.longitude, "");
  EXPECT_EQ(blank.latitude, "");
  EXPECT_FALSE(blank.coordinate());

  // One reading for every screen: blanks around a number are fine, anything else is not
  // a position. The distance reads unreadable text as 0, and has none for a number off
  // the globe.
  const StoreInfoModel spaced = storeWith(R"({"coordinate":" 118.35 , 35.06\n"})");
  ASSERT_TRUE(spaced.coordinate());
  EXPECT_DOUBLE_EQ(spaced.coordinate()->latitude, 35.06);
  EXPECT_DOUBLE_EQ(spaced.coordinate()->longitude, 118.35);
  EXPECT_NE(spaced.distanceText(Coordinate{35.1, 118.3}), "12546.25km");
  for (const char* json : {R"({"coordinate":"118.35x,35.06"})", R"({"coordinate":"118.35,nan"})",
                           R"({"coordinate":"118.35,1e999"})", R"({"coordinate":"118.35, "})"}) {
    const StoreInfoModel bad = storeWith(json);
    EXPECT_FALSE(bad.coordinate()) << json;
    const bool offGlobe = std::string(json).find("nan") != std::string::npos || std::string(json).find("e999") != std::string::npos;
    EXPECT_EQ(bad.distanceText(Coordinate{35.1, 118.3}), offGlobe ? "--km" : "12546.25km") << json;
  }
}

TEST(StoreInfoModelTest, ImageUrlsSplitAtEveryBar) {
  EXPECT_EQ(storeWith(R"({"imageURL":"a.jpg|b.jpg|"})").imgURLList, (std::vector<std::string>{"a.jpg", "b.jpg", ""}));
  EXPECT_EQ(storeWith(R"({"imageURL":"a.jpg"})").imgURLList, std::vector<std::string>{"a.jpg"});
  EXPECT_EQ(storeWith(R"({"imageURL":""})").imgURLList, std::vector<std::string>{""});
  EXPECT_EQ(storeWith(R"({"imageURL":"|"})").imgURLList, (std::vector<std::string>{"", ""}));
}

TEST(StoreInfoModelTest, OffersOnlyFromAnArray) {
  const StoreInfoModel store =
      storeWith(R"({"commodityList":[{"commodityId":"7","name":"双人餐"},{"commodityId":8},"odd"]})");
  ASSERT_EQ(store.activityList.size(), 3u);
  EXPECT_EQ(store.activityList[0].commodityID, "7");
  EXPECT_EQ(store.activityList[0].name, "双人餐");
  EXPECT_EQ(store.activityList[1].commodityID, "8");
  EXPECT_EQ(store.activityList[2].commodityID, "");
  EXPECT_TRUE(storeWith(R"({"commodityList":{"commodityId":"7"}})").activityList.empty());
  EXPECT_TRUE(storeWith(R"({"commodityList":"7"})").activityList.empty());

  EXPECT_EQ(StoreInfoModel::listWithArray(parseJson(R"([{"storeId":"1"},{"storeId":"2"}])")).size(), 2u);
  EXPECT_TRUE(StoreInfoModel::listWithArray(parseJson(R"({"storeId":"1"})")).empty());
  EXPECT_TRUE(StoreInfoModel::listWithArray(Json()).empty());
}

TEST(StoreInfoModelTest, AddressHeightHasAMinimumAndPadding) {
  // Fixed metrics: a CJK character is 14 points wide at 14 points, a line 16.8 tall.
  // At the default screen width the address wraps to 375 - 50.5 = 324.5: 23 characters.
  FixedMetricsTextMeasurer measurer(1.2);
  StoreInfoModel store;
  store.setAddressHeight(measurer);
  EXPECT_EQ(store.addressHeight, 0.0);
  EXPECT_EQ(measurer.measureCount(), 0);

  const std::string line23 = "一二三四五六七八九十一二三四五六七八九十一二三";
  store.address = line23;
  store.setAddressHeight(measurer);
  EXPECT_EQ(store.addressHeight, 32.5);
  store.address = line23 + "四";
  store.setAddressHeight(measurer);
  EXPECT_DOUBLE_EQ(store.addressHeight, 2 * 16.8 + 10);
  store.address = line23 + line23 + "四";
  store.setAddressHeight(measurer);
  EXPECT_DOUBLE_EQ(store.addressHeight, 3 * 16.8 + 10);

  // A narrower screen: 360 - 50.5 = 309.5 holds 22 characters.
  measurer.setScreenWidth(360);
  store.address = line23;
  store.setAddressHeight(measurer);
  EXPECT_DOUBLE_EQ(store.addressHeight, 2 * 16.8 + 10);
}

TEST(StoreInfoModelTest, AddressHeightWithPango) {
  PangoTextMeasurer measurer;
  StoreInfoModel store;
  store.address = "兰山区沂蒙路88号";
  store.setAddressHeight(measurer);
  EXPECT_EQ(store.addressHeight, 32.5);

  store.address = "山东省临沂市兰山区金雀山街道沂蒙路与金雀山路交汇处东北角银座商城一楼东门往北五十米路西";
  store.setAddressHeight(measurer);
  const double measured = measurer.measure(store.address, 14, 375 - 15 - 32.5 - 3);
  EXPECT_GE(measured, 32.5);
  EXPECT_EQ(store.addressHeight, measured + 10);
}

// A member position `metres` due north of the store's position as the row computes it
// (along a meridian the haversine distance is exactly R times the latitude difference).
Coordinate northOf(const StoreInfoModel& store, double metres) {
  const Coordinate storeWgs = LocationConverter::transformFromGCJToWGS(
      LocationConverter::transformFromBaiduToGCJ({std::stod(*store.latitude), std::stod(*store.longitude)}));
  return {storeWgs.latitude + metres / 6371000.0 * 180.0 / 3.14159265358979323846, storeWgs.longitude};
}

TEST(StoreInfoModelTest, DistanceTextInMetresThenKilometres) {
  const StoreInfoModel store = storeWith(R"({"coordinate":"118.36885948897596,35.110488340143743"})");
  EXPECT_EQ(store.distanceText(std::nullopt), "--km");
  EXPECT_EQ(store.distanceText(northOf(store, 999.5)), "999.50m");
  EXPECT_EQ(store.distanceText(northOf(store, 0.004)), "0.00m");
  EXPECT_EQ(store.distanceText(northOf(store, 1000.2)), "1.00km");
  EXPECT_EQ(store.distanceText(northOf(store, 12346.0)), "12.35km");

  // Against the 50-digit reference: the store's BD-09 position was made from this
  // member position by the forward path, and the two ways between GCJ-02 and BD-09 do
  // not cancel, which leaves 47.54 m.
  EXPECT_EQ(store.distanceText(Coordinate{35.104672, 118.356448}), "47.54m");

  // Unset or unreadable positions read as 0,0 and still give a text (12546.25 km).
  EXPECT_EQ(storeWith(R"({})").distanceText(Coordinate{35.1, 118.3}), "12546.25km");
  EXPECT_EQ(storeWith(R"({"coordinate":"x,y"})").distanceText(Coordinate{35.1, 118.3}), "12546.25km");
}

}  // namespace
}  // namespace qmv
