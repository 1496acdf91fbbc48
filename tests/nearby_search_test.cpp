// The nearby list against the sandbox: keyword and filter searches, paging, a failed
// page, the district filter, the history and the home-page hand-overs.
#include <algorithm>
#include <set>

#include "core/common/settings_keys.h"
#include "features/discovery/discovery_texts.h"
#include "features/discovery/nearby_view.h"
#include "features/discovery/nearby_view_controller.h"
#include "tests/discovery_sandbox_fixture.h"

namespace qmv {
namespace {

using testsupport::DiscoverySandboxTest;

class NearbySearchTest : public DiscoverySandboxTest {
 protected:
  static std::set<std::string> ids(const std::vector<StoreInfoModel>& stores) {
    std::set<std::string> out;
    for (const auto& s : stores) out.insert(s.storeId);
    return out;
  }
};

TEST_F(NearbySearchTest, FilterPathPagesAppendAndAFailedPageIsAskedForAgain) {
  NearbyView view;
  ASSERT_TRUE(load(view, [&] { view.startSearchNet(); }));
  ASSERT_EQ(view.storeList.size(), 10u);  // the sandbox pages by ten; the demo city has more
  EXPECT_FALSE(view.loadMoreFooterHidden);
  const auto firstPage = ids(view.storeList);

  ASSERT_TRUE(load(view, [&] {
    view.loadMore();
    view.loadMore();  // pulled up twice before page 2 arrived
  }));
  EXPECT_EQ(view.pageNum, 2);
  ASSERT_EQ(view.storeList.size(), 20u);
  EXPECT_EQ(ids(view.storeList).size(), 20u) << "page 2 appends new stores";
  EXPECT_TRUE(
      std::includes(ids(view.storeList).begin(), ids(view.storeList).end(), firstPage.begin(), firstPage.end()));

  // The server cannot be reached: page 3 fails and stays the page to ask for.
  NetworkConfig::sharedInstance().setBaseUrl("http://127.0.0.1:1/qmv/app/v3/");
  EXPECT_FALSE(load(view, [&] { view.loadMore(); }));
  EXPECT_EQ(view.pageNum, 2);
  EXPECT_EQ(view.storeList.size(), 20u) << "a failed page keeps what is shown";
  EXPECT_EQ(overlay_->statuses().back(), "连接服务器失败,请稍后再试");
  NetworkConfig::sharedInstance().setBaseUrl(server_->baseUrl());
  ASSERT_TRUE(load(view, [&] { view.loadMore(); }));
  EXPECT_EQ(view.pageNum, 3);
  EXPECT_GT(view.storeList.size(), 20u);

  // Up to and past the last page: the footer hides, and no page was appended twice.
  for (int i = 0; i < 10 && !view.loadMoreFooterHidden; ++i) ASSERT_TRUE(load(view, [&] { view.loadMore(); }));
  EXPECT_TRUE(view.loadMoreFooterHidden);
  EXPECT_EQ(ids(view.storeList).size(), view.storeList.size());

  // Pull-down: back to page 1, which replaces the list.
  ASSERT_TRUE(load(view, [&] { view.headerRefresh(); }));
  EXPECT_EQ(view.pageNum, 1);
  EXPECT_EQ(ids(view.storeList), firstPage);
}

TEST_F(NearbySearchTest, DistrictCategoryAndSortFiltersNarrowTheList) {
  NearbyView view;
  ASSERT_GE(view.areaList.size(), 2u);
  EXPECT_EQ(view.areaList.front(), "全部");
  const auto hedong = std::find(view.areaList.begin(), view.areaList.end(), "河东区");
  ASSERT_NE(hedong, view.areaList.end()) << "districts of the demo city come from the area database";

  view.pageNum = 3;
  view.isKeySearchModel = true;
  view.tapFilter(NearbyView::Filter::Area);
  EXPECT_TRUE(view.areaButton.arrowUp);
  ASSERT_TRUE(load(view, [&] { view.chooseArea(hedong - view.areaList.begin()); }));
  EXPECT_FALSE(view.areaButton.arrowUp);
  EXPECT_EQ(view.areaButton.title, "河东区");
  EXPECT_EQ(view.pageNum, 1);
  EXPECT_FALSE(view.isKeySearchModel);
  ASSERT_FALSE(view.storeList.empty());
  for (const auto& store : view.storeList) EXPECT_TRUE(store.address.starts_with("河东区")) << store.address;
  const std::size_t hedongCount = view.storeList.size();

  // Category 美食 (10) within 河东区: a subset.
  long food = -1;
  for (std::size_t i = 0; i < view.categoryScreen.categoryList.size(); ++i) {
    if (view.categoryScreen.categoryList[i].name == "美食") food = static_cast<long>(i);
  }
  ASSERT_GE(food, 0);
  ASSERT_TRUE(load(view, [&] { view.chooseCategory(food, 0); }));
  EXPECT_EQ(view.categoryButton.title, "美食");
  EXPECT_LT(view.storeList.size(), hedongCount);
  EXPECT_FALSE(view.storeList.empty());

  // Lowest spend first.
  ASSERT_TRUE(load(view, [&] { view.chooseSort(2); }));
  EXPECT_EQ(view.sortButton.title, "人均最低");
  EXPECT_EQ(view.sortCode(), "2");
  for (std::size_t i = 1; i < view.storeList.size(); ++i) {
    EXPECT_LE(std::stod(view.storeList[i - 1].price), std::stod(view.storeList[i].price));
  }

  // Cancelling changes nothing and sends nothing.
  view.tapFilter(NearbyView::Filter::Sort);
  view.cancelFilter();
  EXPECT_FALSE(view.sortButton.arrowUp);
  EXPECT_FALSE(view.isSearching());

  // Back to every district of the city: more stores than in one district.
  ASSERT_TRUE(load(view, [&] { view.chooseArea(0); }));
  EXPECT_EQ(view.areaButton.title, "全部");
}

TEST_F(NearbySearchTest, KeywordSearchSavesHistoryAndAStaleAnswerIsIgnored) {
  // A keyword from the home loads the tab that has not been shown yet.
  NearbyViewController controller;
  EXPECT_FALSE(controller.isViewLoaded());
  controller.selectedKeyFromMain("火锅");
  ASSERT_TRUE(controller.isViewLoaded());
  NearbyView& view = controller.nearbyView();
  ASSERT_TRUE(load(view, [] {}));
  EXPECT_TRUE(view.isKeySearchModel);
  EXPECT_EQ(view.searchFieldText, "火锅");
  ASSERT_FALSE(view.storeList.empty());
  for (const auto& store : view.storeList) {
    EXPECT_TRUE(store.storeName.find("火锅") != std::string::npos || store.title.find("火锅") != std::string::npos ||
                store.content.find("火锅") != std::string::npos);
  }
  EXPECT_EQ(home_.settings().stringArrayForKey(kSearchKeyWordsKey), std::vector<std::string>{"火锅"});
  EXPECT_EQ(controller.searchView().headerText(), "历史搜索");

  // Two searches in a row: only the second one's answer lands.
  std::vector<bool> answers;
  view.onLoaded = [&](bool correct) { answers.push_back(correct); };
  view.searchFieldText = "不存在的店名";
  view.startSearchNet();
  controller.searchView().chooseHistory(0);  // 火锅 again
  ASSERT_TRUE(runUntil([&] { return !answers.empty(); }));
  loop_->runUntil([] { return false; }, std::chrono::milliseconds(200));
  EXPECT_EQ(answers.size(), 1u);
  EXPECT_FALSE(view.storeList.empty()) << "the answer of the stopped search was dropped";
  view.onLoaded = nullptr;

  // A home-page category leaves the keyword path and searches the category.
  ASSERT_TRUE(load(view, [&] { controller.selectedCategoryFromMain("30"); }));
  EXPECT_FALSE(view.isKeySearchModel);
  EXPECT_EQ(view.categoryButton.title, "休闲娱乐");
  EXPECT_EQ(view.categoryScreen.getSelectedTypeId(), "30");
}

TEST_F(NearbySearchTest, CityChangeRebuildsDistrictsAndRowsOpenTheirScreens) {
  NearbyView view;
  ASSERT_TRUE(load(view, [&] { view.startSearchNet(); }));
  const auto lanshan = std::find(view.areaList.begin(), view.areaList.end(), "兰山区");
  ASSERT_NE(lanshan, view.areaList.end());
  ASSERT_TRUE(load(view, [&] { view.chooseArea(lanshan - view.areaList.begin()); }));
  EXPECT_EQ(view.areaButton.title, "兰山区");

  home_.settings().setString("济南市", kSelectCityKey);
  Env::current().notifications->post("city_changed_noti");
  EXPECT_EQ(view.areaButton.title, "全部");
  EXPECT_EQ(view.areaSelectedIndex, 0);
  EXPECT_NE(std::find(view.areaList.begin(), view.areaList.end(), "历下区"), view.areaList.end());
  EXPECT_EQ(std::find(view.areaList.begin(), view.areaList.end(), "河东区"), view.areaList.end());

  ASSERT_FALSE(view.storeList.empty());
  view.selectStoreRow(0);
  ASSERT_TRUE(navigator_->topScreen());
  EXPECT_EQ(navigator_->topScreen()->name, "QXRStoreDetailViewController");
  EXPECT_EQ(navigator_->topScreen()->payload["storeId"], view.storeList[0].storeId);
  view.locateStoreRow(0);
  EXPECT_EQ(navigator_->topScreen()->name, "MapViewController");

  view.storeList[0].longitude.reset();
  view.locateStoreRow(0);
  EXPECT_EQ(overlay_->statuses().back(), "位置信息错误");
  EXPECT_EQ(navigator_->topScreen()->name, "MapViewController") << "nothing more was opened";
}

}  // namespace
}  // namespace qmv
