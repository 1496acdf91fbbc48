// Argument sets and readers of the search, map, detail, home and area endpoints.
#include <gtest/gtest.h>

#include "core/common/settings_keys.h"
#include "core/session/global_data.h"
#include "features/discovery/activity_detail_net_api.h"
#include "features/discovery/area_net_api.h"
#include "features/discovery/location_converter.h"
#include "features/discovery/map_list_net_api.h"
#include "features/discovery/popular_store_net_api.h"
#include "features/discovery/recommend_store_net_api.h"
#include "features/discovery/search_store_net_api.h"
#include "features/discovery/store_detail_net_api.h"
#include "platform/testing/temp_home.h"

namespace qmv {
namespace {

class SearchEndpointsTest : public ::testing::Test {
 protected:
  void SetUp() override { GlobalData::resetSharedInstance(); }
  void TearDown() override { GlobalData::resetSharedInstance(); }
  TempHome home_;
};

TEST_F(SearchEndpointsTest, SearchPathFollowsTheKeywordAndPositionIsSentOnlyWhenKnown) {
  SearchConditionModel keyword;
  keyword.keyword = "火锅";
  keyword.page = "2";
  keyword.area = "371300";
  keyword.type = "10";  // not part of the keyword path
  keyword.sort = "1";
  GlobalData::sharedInstance().setUserLocation(Coordinate{35.06, 118.34});
  SearchStoreNetApi byKeyword(keyword);
  EXPECT_EQ(byKeyword.requestUrl(), "getSearchList");
  EXPECT_EQ(byKeyword.requestArgument(), (Json{{"keyword", "火锅"}, {"page", "2"}, {"area", "371300"}}));

  SearchConditionModel filter = keyword;
  filter.keyword = "";
  filter.block = "371312";
  SearchStoreNetApi byFilter(filter);
  EXPECT_EQ(byFilter.requestUrl(), "getTypeSearchList");
  const Json args = byFilter.requestArgument();
  EXPECT_EQ(args["area"], "371312") << "the district replaces the city";
  EXPECT_EQ(args["type"], "10");
  EXPECT_EQ(args["sort"], "1");
  EXPECT_EQ(args["page"], "2");
  EXPECT_EQ(args["coordinate"], LocationConverter::coordinateArgument({35.06, 118.34}));
  EXPECT_FALSE(args.contains("keyword"));

  filter.keyword.reset();
  filter.block = "";
  GlobalData::sharedInstance().setUserLocation(std::nullopt);
  const Json plain = SearchStoreNetApi(filter).requestArgument();
  EXPECT_EQ(plain["area"], "371300");
  EXPECT_FALSE(plain.contains("coordinate"));
  EXPECT_EQ(SearchStoreNetApi(filter).requestUrl(), "getTypeSearchList");
}

TEST_F(SearchEndpointsTest, MapListKeepsOnlyPlaceableStores) {
  GlobalData::sharedInstance().setUserLocation(Coordinate{35.06, 118.34});
  MapListNetApi api("11");
  const Json args = api.requestArgument();
  EXPECT_EQ(args["type"], "11");
  EXPECT_EQ(args["coordinate"], LocationConverter::coordinateArgument({35.06, 118.34}));
  EXPECT_EQ(args["area"], GlobalData::sharedInstance().getCurrentCityId().value_or("?"));

  EXPECT_TRUE(MapListNetApi::isValidInfo(StoreInfoModel(Json{{"coordinate", "118.3,35.0"}})));
  EXPECT_FALSE(MapListNetApi::isValidInfo(StoreInfoModel(Json{{"coordinate", ""}})));
  EXPECT_FALSE(MapListNetApi::isValidInfo(StoreInfoModel(Json{{"coordinate", ",35.0"}})));
  EXPECT_FALSE(MapListNetApi::isValidInfo(StoreInfoModel(Json{{"coordinate", nullptr}})));
  EXPECT_FALSE(MapListNetApi::isValidInfo(StoreInfoModel(Json::object())));
}

TEST_F(SearchEndpointsTest, DetailAndHomeRequestsCarryTheirKeys) {
  EXPECT_EQ(StoreDetailNetApi("8").requestArgument(), (Json{{"storeId", "8"}}));
  EXPECT_EQ(ActivityDetailNetApi("9").requestArgument(), (Json{{"commodityId", "9"}}));
  auto member = std::make_shared<UserInfoModel>(Json{{"sessionId", "S1"}});
  GlobalData::sharedInstance().setSelfInfo(member);
  EXPECT_EQ(StoreDetailNetApi("8").requestArgument(), (Json{{"sessionId", "S1"}, {"storeId", "8"}}));
  EXPECT_EQ(RecommendStoreNetApi("371300").requestArgument(), (Json{{"area", "371300"}}));
  EXPECT_EQ(PopularStoreNetApi("371300", "3").requestArgument(), (Json{{"area", "371300"}, {"page", "3"}}));
  EXPECT_EQ(StoreDetailNetApi("8").requestUrl(), "getStoreDetailInfo");
  EXPECT_EQ(ActivityDetailNetApi("9").requestUrl(), "getCommodityDetailInfo");
  EXPECT_EQ(PopularStoreNetApi("1", "1").requestUrl(), "getPopularList");
}

TEST_F(SearchEndpointsTest, AreaVersionIsSentOnlyWithAValidCache) {
  EXPECT_EQ(AreaNetApi().requestArgument(), (Json{{"ver", "0"}}));
  home_.settings().setString("20161001", kAreaVersionKey);
  EXPECT_EQ(AreaNetApi().requestArgument(), (Json{{"ver", "0"}})) << "no cache database yet";
  EXPECT_EQ(AreaNetApi().requestUrl(), "getAreaList");
}

}  // namespace
}  // namespace qmv
