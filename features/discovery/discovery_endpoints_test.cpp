#include <gtest/gtest.h>

#include "core/request/net_api_test_support.h"
#include "core/storage/area_rows.h"
#include "core/storage/db_util.h"
#include "features/discovery/area_net_api.h"
#include "features/discovery/category_catalogue.h"
#include "features/discovery/grade_store_net_api.h"
#include "features/discovery/nearby_view_controller.h"
#include "features/discovery/search_type_net_api.h"
#include "features/discovery/templates_net_api.h"
#include "features/wheel/wheel_result_net_api.h"

namespace qmv {
namespace {

using testsupport::Arguments;

class DiscoveryEndpointsTest : public testsupport::ApiServerTest {};

// What no screen test sends itself: the rating's spelling of its endpoint and a wheel
// result without an id (feedback, comments, bookmarks and a wheel's id are sent by
// MemberPagesTest, ReviewScreensTest and WheelScreenTest).
TEST_F(DiscoveryEndpointsTest, ServerSpellingsAndFixedValues) {
  logIn("S1");
  ASSERT_EQ(run(std::make_shared<GradeStoreNetApi>("o1", "5", "好吃")), "success");
  EXPECT_EQ(last().endpoint, "PostGrade");
  EXPECT_EQ(last().arguments, (Arguments{{"sessionId", "S1"}, {"orderId", "o1"}, {"star", "5"}, {"content", "好吃"}}));

  ASSERT_EQ(run(std::make_shared<WheelResultNetApi>("")), "success");
  EXPECT_EQ(last().endpoint, "getWheelResult");
  EXPECT_EQ(last().arguments, (Arguments{{"sessionId", "S1"}}));
}

TEST_F(DiscoveryEndpointsTest, TemplatesAreSavedWholeAndMergedIntoTheHomeCategories) {
  const std::string body =
      R"({"success":"0","message":"","data":{"dataList":[{"id":"8","name":"休闲娱乐","list":[{"id":"81","name":"密室"}]},{"id":"9","name":"无名","list":[]}]}})";
  answer("getCategorTemplates1", body);
  auto api = std::make_shared<TemplatesNetApi>();
  ASSERT_EQ(run(api), "success");
  EXPECT_EQ(last().arguments, Arguments{});  // logged out and no own arguments
  const auto templates = api->templatesFromResponse();
  ASSERT_EQ(templates.size(), 2u);
  EXPECT_EQ(settings_->stringForKey("templates"), body);
  EXPECT_GE(settings_->synchronizeCount(), 1);
  TemplatesNetApi::resetTemplates(templates);
  const auto& home = GlobalData::sharedInstance().defaultTypeList();
  const auto* leisure = TemplatesNetApi::getInfoWithName("休闲娱乐", home);
  ASSERT_TRUE(leisure);
  EXPECT_EQ(leisure->typeId, "8");
  EXPECT_EQ(leisure->list.at(0).name, "密室");
  EXPECT_EQ(TemplatesNetApi::getInfoWithName("无名", home), nullptr);
  EXPECT_EQ(home.size(), 5u);

  // An answer whose "data" is not an object is neither saved nor read.
  answer("getCategorTemplates1", R"({"success":"0","data":[]})");
  ASSERT_EQ(run(api), "success");
  EXPECT_TRUE(api->templatesFromResponse().empty());
  EXPECT_EQ(settings_->stringForKey("templates"), body);
}

TEST_F(DiscoveryEndpointsTest, SavedCatalogueWinsOverTheBuiltInOne) {
  // The built-in catalogue, whole: ids, names and the order of every sub-category list.
  std::vector<std::string> rows;
  for (const SearchTypeModel& type : SearchTypeNetApi::getSearchTypes()) {
    std::string row = type.typeId + " " + type.name + ":";
    for (const SearchSubTypeModel& sub : type.list) row += " " + sub.typeId + " " + sub.name;
    rows.push_back(row);
  }
  EXPECT_EQ(
      rows,
      (std::vector<std::string>{
          "0 全部分类:",
          "10 美食: 10 全部 11 火锅 12 自助餐 13 小吃快餐 14 甜品饮品 15 生日蛋糕 16 聚餐宴请 18 烧烤烤肉 17 其他",
          "20 健康: 20 全部 21 足疗按摩 22 运动健身 24 洗浴汗蒸 23 其他",
          "30 休闲娱乐: 30 全部 31 电影 32 KTV 33 酒吧咖啡 35 桌游电玩 34 其他",
          "40 丽人: 40 全部 41 舞蹈 42 美发 43 美甲 44 美容美体 45 其他",
          "50 生活服务: 50 全部 51 鲜花 52 汽车服务 53 培训课程 54 母婴亲子 55 摄影写真 56 其他",
          "60 酒店: 60 全部 61 其他",
          "70 特产: 70 全部 71 其他",
          "80 其他: 80 全部 81 其他",
      }));
  settings_->setString(R"({"success":"0","data":{"dataList":[{"id":"7","name":"新分类","list":[]}]}})", "SearchTypes");
  const auto saved = SearchTypeNetApi::getSearchTypes();
  ASSERT_EQ(saved.size(), 1u);
  EXPECT_EQ(saved[0].name, "新分类");
  settings_->setString("not json", "SearchTypes");
  EXPECT_EQ(SearchTypeNetApi::getSearchTypes().size(), 9u);
  EXPECT_TRUE(SearchTypeNetApi::getSearchTypeWithJsonStr(R"({"data":"x"})").empty());

  auto api = std::make_shared<SearchTypeNetApi>();
  ASSERT_EQ(run(api), "success");
  EXPECT_EQ(last().endpoint, "getCategoryList");
}

TEST_F(DiscoveryEndpointsTest, AreaAnswersAreReadInPlaceAsTheirTreeReadsAndBrokenOnesGiveNoAreas) {
  // The reader of a refresh reads the text as a stream, off the interface thread; it must
  // read every answer as the tree does.
  const auto expectStreamedAlike = [](const AreaNetApi& api, const std::string& what) {
    const AreaNetApi::Areas tree = api.readAreas();
    const AreaNetApi::Areas streamed = AreaNetApi::readAreas(api.responseString());
    EXPECT_EQ(streamed.rows.areas, tree.rows.areas) << what;
    EXPECT_EQ(streamed.rows.lastId, tree.rows.lastId) << what;
    EXPECT_EQ(streamed.ver, tree.ver) << what;
  };
  // Numeric texts, a fraction, a text that is no number, a missing field, an element that is
  // no object. With "-0" in it the answer is one only the full reader decides on.
  const std::string list =
      R"([{"id":"12","parentId":3,"name":"甲市","pyName":"jiashi","type":2,"special":"1"},)"
      R"({"id":15.9,"parentId":"x3","name":"乙","type":true},"no area",{"id":"20"}])";
  for (const std::string extra : {"0", "-0"}) {
    answer("getAreaList", R"({"success":"0","data":{"ver":"7","extra":)" + extra + R"(,"dataList":)" + list + "}}");
    auto api = std::make_shared<AreaNetApi>();
    ASSERT_EQ(run(api), "success");
    const AreaNetApi::Areas areas = api->readAreas();
    EXPECT_EQ(areas.ver, "7") << extra;
    EXPECT_EQ(areas.rows.lastId, "20") << extra;
    EXPECT_EQ(areas.rows.areas, (std::vector<AreaRecord>{{12, 3, "甲市", "jiashi", 2, 1},
                                                          {15, 0, "乙", "", 1, 0},
                                                          {0, 0, "", "", 0, 0},
                                                          {20, 0, "", "", 0, 0}}))
        << extra;
    EXPECT_EQ(areaRowsOf(api->getAreaList()).areas, areas.rows.areas) << extra;
    expectStreamedAlike(*api, extra);
  }
  // Keys that repeat count with their last value, wherever they are; an area nested in
  // another's field is no area of the list; a byte that is not UTF-8 reads as U+FFFD.
  for (const std::string body :
       {R"({"success":"0","data":{"ver":"1","dataList":[{"id":1}]},"data":{"dataList":[{"id":2}],"ver":"9",)"
        R"("dataList":[{"id":4,"name":"丙","name":"丁","pyName":{"dataList":[{"id":8}]}},[5],{"id":6,"id":7}]}})",
        R"({"success":"0","data":{"ver":"1","dataList":[{"id":1}]},"data":{"ver":"2"}})",
        "{\"success\":\"0\",\"data\":{\"dataList\":[{\"id\":3,\"name\":\"\xff\"}]}}"}) {
    answer("getAreaList", body);
    auto api = std::make_shared<AreaNetApi>();
    ASSERT_EQ(run(api), "success");
    expectStreamedAlike(*api, body);
  }
  EXPECT_EQ(AreaNetApi::readAreas(R"({"data":{"dataList":[{"id":4,"name":"丙","name":"丁"},[5],{"id":6,"id":7}]}})")
                .rows.areas,
            (std::vector<AreaRecord>{{4, 0, "丁", "", 0, 0}, {0, 0, "", "", 0, 0}, {7, 0, "", "", 0, 0}}));

  // Nothing to rebuild from: the stored table stays as it is.
  for (const std::string body : {R"({"success":"0","data":{"ver":"8","dataList":[{"id":1},)",
                                 R"({"success":"0","data":{"ver":"8","dataList":{"id":1}}})",
                                 R"({"success":"0","data":[{"id":1}]})", R"({"success":"1","message":"忙"})"}) {
    answer("getAreaList", body);
    auto api = std::make_shared<AreaNetApi>();
    ASSERT_EQ(run(api), "success");
    EXPECT_TRUE(api->readAreas().rows.areas.empty()) << body;
    EXPECT_TRUE(AreaNetApi::readAreas(body).rows.areas.empty()) << body;
  }
}

TEST_F(DiscoveryEndpointsTest, TheNearbyTabSavesTheCatalogueAndOnlyAReadableOne) {
  // The tab reads this home's area database; later tests open their own.
  struct AreaDatabases {
    AreaDatabases() { DBUtil::resetManagersForTesting(); }
    ~AreaDatabases() { DBUtil::resetManagersForTesting(); }
  } areaDatabases;
  answer("getCategoryList", R"({"success":"0","data":{"dataList":[{"id":"7","name":"新分类","list":[]}]}})");
  NearbyViewController controller;
  controller.viewDidLoad();
  loop_->runUntil([&] { return settings_->stringForKey("SearchTypes").has_value(); }, std::chrono::seconds(15));
  EXPECT_EQ(last().endpoint, "getCategoryList");
  auto saved = SearchTypeNetApi::getSearchTypes();
  ASSERT_EQ(saved.size(), 1u);
  EXPECT_EQ(saved[0].name, "新分类");

  // An empty catalogue, a refusal and a failed transfer all keep the saved one.
  for (const auto& [body, status] : std::vector<std::pair<std::string, int>>{
           {R"({"success":"0","data":{"dataList":[]}})", 200}, {R"({"success":"1"})", 200}, {"{}", 500}}) {
    answer("getCategoryList", body, status);
    CategoryCatalogue catalogue;
    std::optional<bool> kept;
    catalogue.refresh([&kept](bool ok) { kept = ok; });
    ASSERT_TRUE(loop_->runUntil([&] { return kept.has_value(); }, std::chrono::seconds(15))) << body;
    EXPECT_FALSE(*kept) << body;
  }
  saved = SearchTypeNetApi::getSearchTypes();
  ASSERT_EQ(saved.size(), 1u);
  EXPECT_EQ(saved[0].name, "新分类");
}

}  // namespace
}  // namespace qmv
