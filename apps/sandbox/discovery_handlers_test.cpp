#include <map>
#include <set>

#include "apps/sandbox/sandbox_test_support.h"

namespace qmv::sandbox::testing {
namespace {

std::pair<double, double> lngLat(const Json& store) {
  const std::string text = store["coordinate"];
  const auto comma = text.find(',');
  return {std::stod(text.substr(0, comma)), std::stod(text.substr(comma + 1))};
}

TEST_F(SandboxTest, CatalogueAndTemplatesAgree) {
  const Json categories = api_->get("getCategoryList")["data"]["dataList"];
  ASSERT_EQ(categories.size(), 9u);
  EXPECT_EQ(categories[0]["name"], "全部分类");
  EXPECT_TRUE(categories[0]["list"].empty());
  EXPECT_EQ(categories[1]["list"][0]["id"], categories[1]["id"]) << "the 全部 entry carries the main id";
  const Json templates = api_->get("getCategorTemplates1")["data"]["dataList"];
  ASSERT_EQ(templates.size(), 5u);
  EXPECT_EQ(templates[4]["list"][1]["name"], "一元夺宝");
  // A home entry opens the catalogue's sub-category of its id: the names must agree
  // ("美体" is the home's short name of "美容美体"; a "全部" entry is its main category).
  std::map<std::string, std::string> catalogueNames;
  for (const Json& group : categories) {
    for (const Json& sub : group["list"])
      catalogueNames[sub["id"]] = sub["name"] == "全部" ? group["name"] : sub["name"];
  }
  int checked = 0;
  for (const Json& group : templates) {
    for (const Json& entry : group["list"]) {
      const auto found = catalogueNames.find(entry["id"]);
      if (found == catalogueNames.end()) continue;  // special entries (旅游, 幸运抽奖, ...)
      const std::string name = entry["name"];
      EXPECT_NE(found->second.find(name), std::string::npos) << name << " opens " << found->second;
      ++checked;
    }
  }
  EXPECT_EQ(checked, 21);
}

TEST_F(SandboxTest, AreaListIsTheShippedTableAndThenOnlyItsChanges) {
  const auto areas = [this](const std::string& ver) { return api_->get("getAreaList", {{"ver", ver}})["data"]; };
  // The answer is written straight from the rows: it must be the very text that the tree of
  // the rows changed after `held` dumps to.
  const auto expectTreeText = [this](const std::string& ver, long long held) {
    auto opened = SandboxStore::open(home_ / "sandbox.db");
    ASSERT_TRUE(opened.ok()) << opened.status().toString();
    Json list = Json::array();
    std::string current;
    ASSERT_TRUE((*opened)->transact(false, [&] {
      current = (*opened)->queryOne("SELECT value FROM meta WHERE key = 'area_ver'")["value"];
      for (Json& row : (*opened)->query("SELECT * FROM areas WHERE ver > ? ORDER BY seq", {held})) {
        list.push_back({{"id", row["id"]}, {"parentId", row["parent_id"]}, {"name", row["name"]},
                        {"pyName", row["py_name"]}, {"type", row["type"]}, {"special", row["special"]}});
      }
      return true;
    }).ok());
    auto& items = list.get_ref<Json::array_t&>();
    const auto highest = std::max_element(items.begin(), items.end(), [](const Json& a, const Json& b) { return a["id"] < b["id"]; });
    if (highest != items.end()) std::rotate(highest, highest + 1, items.end());
    const Json tree = {{"success", "0"}, {"message", ""}, {"data", {{"dataList", list}, {"ver", current}}}};
    const auto res = api_->raw().Get("/qmv/app/v3/getAreaList?ver=" + ver);
    ASSERT_TRUE(res);
    EXPECT_EQ(res->body, dumpJson(tree)) << "ver " << ver;
  };
  expectTreeText("0", 0);
  const Json full = areas("0");
  const std::string ver = full["ver"];
  ASSERT_EQ(full["dataList"].size(), 3346u);
  std::map<std::string, Json> firstByName;
  long long highest = 0;
  for (const Json& area : full["dataList"]) {
    for (const char* key : {"id", "parentId", "name", "pyName", "type", "special"}) ASSERT_TRUE(area.contains(key));
    firstByName.emplace(area["name"], area);
    highest = std::max(highest, area["id"].get<long long>());
  }
  EXPECT_EQ(full["dataList"].back()["id"], highest) << "the client's cache is valid only with the highest id last";
  // A municipality's city row comes before its province: the client's look-up by name
  // takes the first.
  for (const auto& [name, city] : {std::pair{"北京市", 110100}, {"上海市", 310100}, {"天津市", 120100}, {"重庆市", 500100}}) {
    EXPECT_EQ(firstByName[name]["id"], city) << name;
    EXPECT_EQ(firstByName[name]["type"], 2) << name;
  }
  EXPECT_EQ(firstByName["兰山区"]["parentId"], 371300);
  EXPECT_EQ(firstByName["历下区"]["parentId"], firstByName["济南市"]["id"]);
  EXPECT_TRUE(areas(ver)["dataList"].empty());
  EXPECT_EQ(areas(ver)["ver"], ver);
  EXPECT_EQ(areas("not-a-version")["dataList"].size(), 3346u);

  // A later version: a client holding the earlier one is sent just the changed rows.
  {
    auto opened = SandboxStore::open(home_ / "sandbox.db");
    ASSERT_TRUE(opened.ok()) << opened.status().toString();
    auto& db = *opened;
    ASSERT_TRUE(db->transact(true, [&] {
      db->execute("UPDATE areas SET ver = ver + 1, name = name || '新' WHERE id IN (110100, 110000)");
      db->execute("UPDATE meta SET value = value + 1 WHERE key = 'area_ver'");
      return true;
    }).ok());
  }
  const Json changes = areas(ver);
  expectTreeText(ver, std::stoll(ver));
  EXPECT_NE(changes["ver"], ver);
  ASSERT_EQ(changes["dataList"].size(), 2u);
  EXPECT_EQ(changes["dataList"][0]["name"], "北京市新");
  EXPECT_EQ(changes["dataList"][1]["id"], 110100) << "the highest id last, whatever its place";
  EXPECT_TRUE(areas(changes["ver"])["dataList"].empty());
}

TEST_F(SandboxTest, TypeSearchFiltersByCategoryAndAreaSortsAndPages) {
  // A main category covers its sub-categories; a city covers its districts (one district,
  // a category within it and the lowest spend first are nearby_search_test's, against
  // this server).
  const Json food = api_->get("getTypeSearchList", {{"type", "10"}, {"area", "371300"}, {"page", "1"}})["data"];
  const int foodCount = food["count"];
  EXPECT_GT(foodCount, 10);
  EXPECT_EQ(food["dataList"].size(), 10u);
  const Json foodPage2 = api_->get("getTypeSearchList", {{"type", "10"}, {"area", "371300"}, {"page", "2"}})["data"];
  EXPECT_EQ(foodPage2["dataList"].size(), static_cast<size_t>(foodCount - 10));
  std::set<std::string> seen;
  for (const Json* page : {&food, &foodPage2}) {
    for (const Json& store : (*page)["dataList"]) {
      const int type = std::stoi(store["type"].get<std::string>());
      EXPECT_TRUE(type >= 10 && type <= 19) << type;
      EXPECT_TRUE(seen.insert(store["storeId"]).second) << "a store appears on two pages";
    }
  }
  const Json hotpot = api_->get("getTypeSearchList", {{"type", "11"}, {"area", "371300"}})["data"];
  EXPECT_LT(hotpot["count"].get<int>(), foodCount);
  for (const Json& store : hotpot["dataList"]) EXPECT_EQ(store["type"], "11");
  const Json jinan = api_->get("getTypeSearchList", {{"area", "370100"}})["data"];
  EXPECT_GT(jinan["count"].get<int>(), 3);
  EXPECT_EQ(api_->get("getTypeSearchList", {{"area", "999999"}})["data"]["count"], 0);

  // Nearest first from a BD-09 position sent latitude first (泉城广场 in 济南).
  const Json near = api_->get(
      "getTypeSearchList", {{"area", "370100"}, {"sort", "1"}, {"coordinate", "36.667,117.031"}})["data"]["dataList"];
  double previous = 0;
  for (const Json& store : near) {
    const auto [lng, lat] = lngLat(store);
    EXPECT_TRUE(lng > 116 && lng < 118 && lat > 36 && lat < 37) << store["coordinate"];
    const double d = distanceMetres(36.667, 117.031, lat, lng);
    EXPECT_GE(d, previous);
    previous = d;
  }
}

TEST_F(SandboxTest, KeywordSearchMapAndHomeLists) {
  // Hits in the demo city, each naming the word, are nearby_search_test's through the
  // nearby view; the home lists of the demo city are discovery_screens_test's.
  const Json jinanHits = api_->get("getSearchList", {{"keyword", "火锅"}, {"area", "370100"}})["data"];
  EXPECT_EQ(jinanHits["count"], 1);
  EXPECT_EQ(api_->get("getSearchList", {{"keyword", "不存在的店"}, {"area", "371300"}})["data"]["count"], 0);

  const Json map = api_->get("getMapList", {{"type", "0"}, {"area", "371300"}, {"coordinate", "35.07,118.35"}})["data"];
  ASSERT_GT(map["dataList"].size(), 10u);
  for (const Json& store : map["dataList"]) EXPECT_FALSE(store["coordinate"].get<std::string>().empty());

  const Json banners = api_->get("getCarouselList")["data"]["dataList"];
  ASSERT_FALSE(banners.empty());
  EXPECT_EQ(banners[0]["url"].get<std::string>().rfind(server_->rootUrl(), 0), 0u);
  const Json popular = api_->get("getPopularList", {{"area", "371300"}, {"page", "1"}})["data"];
  EXPECT_GT(popular["count"].get<int>(), 0);
  for (size_t i = 1; i < popular["dataList"].size(); ++i) {
    EXPECT_GE(std::stoi(popular["dataList"][i - 1]["num"].get<std::string>()),
              std::stoi(popular["dataList"][i]["num"].get<std::string>()));
  }
  const Json otherCity = api_->get("getRecommendStore", {{"area", "370100"}})["data"]["dataList"];
  for (const Json& store : otherCity) EXPECT_NE(store["area"].get<std::string>().substr(0, 4), "3713");
}

TEST_F(SandboxTest, StoreAndOfferDetailsFollowTheMember) {
  const Json store = api_->get("getStoreDetailInfo", {{"storeId", "1"}})["data"];
  EXPECT_EQ(store["storeId"], "1");
  EXPECT_EQ(store["favorite"], "0");
  ASSERT_EQ(store["commodityList"].size(), 2u);
  EXPECT_NE(store["imageURL"].get<std::string>().find('|'), std::string::npos);
  EXPECT_FALSE(store["dataList"].empty()) << "the detail carries its latest ratings";
  EXPECT_EQ(api_->get("getStoreDetailInfo", {{"storeId", "4242"}})["message"], "商家不存在");

  const std::string session = api_->login();
  EXPECT_EQ(api_->get("getStoreDetailInfo", {{"storeId", "1"}, {"sessionId", session}})["data"]["favorite"], "1");
  const std::string fresh =
      api_->get("getStoreDetailInfo", {{"storeId", "20"}})["data"]["commodityList"][0]["commodityId"];
  const Json offer = api_->get("getCommodityDetailInfo", {{"commodityId", fresh}, {"sessionId", session}})["data"];
  for (const char* key : {"ruleList", "taocanList", "remarkList"}) EXPECT_TRUE(offer[key].is_array()) << key;
  EXPECT_EQ(offer["isFirst"], "1");
  EXPECT_LT(std::stod(offer["firstPrice"].get<std::string>()), std::stod(offer["nowPrice"].get<std::string>()));
  // Offer 1, which the demo member bought before, following his session is
  // discovery_screens_test's (OpenStoreAndOfferLoadAgain...), against this server.
  EXPECT_EQ(code(api_->get("getCommodityDetailInfo", {{"commodityId", "0"}})), "1");
}

TEST_F(SandboxTest, EveryStoreHasCommentsThatItsRecordCountsAndTheStarFilterSplits) {
  for (int id = 1; id <= 40; ++id) {
    const Json store = api_->get("getStoreDetailInfo", {{"storeId", std::to_string(id)}})["data"];
    const Json all = api_->get("getRemarkMeByUser", {{"storeId", std::to_string(id)}, {"page", "1"}})["data"];
    ASSERT_TRUE(all["count"].is_number()) << id;
    EXPECT_GE(all["count"].get<int>(), 3) << id;
    EXPECT_EQ(store["starNum"], std::to_string(all["count"].get<int>())) << id;
    int split = 0;
    for (int star = 1; star <= 5; ++star) {
      split += api_->get("getRemarkMeByUser", {{"storeId", std::to_string(id)}, {"star", std::to_string(star)}})["data"]
                   ["count"]
                       .get<int>();
    }
    EXPECT_EQ(split, all["count"].get<int>()) << id;
  }
  const std::string session = api_->login();
  const Json mine = api_->get("getMyRemark", {{"sessionId", session}, {"page", "1"}})["data"];
  EXPECT_EQ(mine["count"], mine["dataList"].size()) << "the demo member rated fewer than a page";
}

TEST_F(SandboxTest, BookmarksToggleAndAreListed) {
  const std::string session = api_->login();
  // The demo member keeps five stores and four offers, the newest bookmark first.
  const Json stores = api_->get("getMyFavorite", {{"sessionId", session}, {"page", "1"}})["data"];
  EXPECT_EQ(stores["count"], 5);
  ASSERT_EQ(stores["dataList"].size(), 5u);
  EXPECT_EQ(stores["dataList"][0]["storeId"], "14");
  for (const Json& store : stores["dataList"]) EXPECT_EQ(store["favorite"], "1");
  const Json kept = api_->get("getMyCommodityFavorite", {{"sessionId", session}, {"page", "1"}})["data"]["dataList"];
  ASSERT_EQ(kept.size(), 4u);
  EXPECT_EQ(kept[0]["commodityId"], "3");

  EXPECT_EQ(api_->post("postBookmark", {{"sessionId", session}, {"storeId", "6"}})["data"]["favorite"], "1");
  EXPECT_EQ(api_->get("getMyFavorite", {{"sessionId", session}})["data"]["dataList"].size(), 6u);
  EXPECT_EQ(api_->post("postBookmark", {{"sessionId", session}, {"storeId", "6"}})["data"]["favorite"], "0");
  EXPECT_EQ(api_->get("getMyFavorite", {{"sessionId", session}})["data"]["dataList"].size(), 5u);
  EXPECT_EQ(code(api_->post("postBookmark", {{"sessionId", session}, {"storeId", "777"}})), "1");
  EXPECT_EQ(api_->post("postCollectCommodity", {{"sessionId", session}, {"commodityId", "5"}})["data"]["favorite"],
            "1");
  const Json offers = api_->get("getMyCommodityFavorite", {{"sessionId", session}})["data"]["dataList"];
  ASSERT_EQ(offers.size(), 5u);
  EXPECT_EQ(offers[0]["commodityId"], "5");
  EXPECT_EQ(offers[0]["favorite"], "1");
}

}  // namespace
}  // namespace qmv::sandbox::testing
