#include "features/discovery/category_screen_view.h"

#include <gtest/gtest.h>

#include "core/session/search_types_reader.h"
#include "features/discovery/built_in_search_types.h"
#include "features/discovery/main_view_controller.h"

namespace qmv {
namespace {

struct CountingDelegate : CategoryScreenViewDelegate {
  int calls = 0;
  void screenViewDidSelected(CategoryScreenView&) override { ++calls; }
};

long indexOf(const std::vector<SearchTypeModel>& list, const std::string& name) {
  for (std::size_t i = 0; i < list.size(); ++i) {
    if (list[i].name == name) return static_cast<long>(i);
  }
  return -1;
}

TEST(BuiltInSearchTypesTest, NineMainCategoriesEachAllEntryCarriesItsMainId) {
  const auto list = searchTypesFromEnvelope(builtInSearchTypesText());
  ASSERT_EQ(list.size(), 9u);
  EXPECT_EQ(list[0].name, "全部分类");
  EXPECT_EQ(list[0].typeId, "0");
  EXPECT_TRUE(list[0].list.empty());
  for (std::size_t i = 1; i < list.size(); ++i) {
    ASSERT_FALSE(list[i].list.empty()) << list[i].name;
    EXPECT_EQ(list[i].list.front().name, "全部");
    EXPECT_EQ(list[i].list.front().typeId, list[i].typeId);
    EXPECT_EQ(list[i].list.back().name, "其他");
  }
  // The listed order is data: 18 precedes 17 in 美食, 24 precedes 23 in 健康.
  EXPECT_EQ(list[1].list[7].typeId, "18");
  EXPECT_EQ(list[1].list[8].typeId, "17");
  EXPECT_EQ(list[2].list[3].typeId, "24");
  EXPECT_EQ(list[3].list[4].name, "桌游电玩");
}

TEST(CategoryScreenViewTest, SelectionNamesAndIds) {
  CategoryScreenView view;
  CountingDelegate delegate;
  view.delegate = &delegate;
  view.categoryList = searchTypesFromEnvelope(builtInSearchTypesText());
  const long liren = indexOf(view.categoryList, "丽人");
  ASSERT_GE(liren, 0);

  view.selectLeftRow(liren);
  EXPECT_EQ(delegate.calls, 0);  // not complete until a sub-category is chosen
  EXPECT_EQ(view.getSelectedItem(), "丽人");
  view.selectRightRow(5);  // 其他
  EXPECT_EQ(delegate.calls, 1);
  EXPECT_EQ(view.getSelectedItem(), "丽人-其他");
  EXPECT_EQ(view.getSelectedTypeId(), "45");
  view.selectRightRow(0);  // 全部
  EXPECT_EQ(view.getSelectedItem(), "丽人");
  EXPECT_EQ(view.getSelectedTypeId(), "40");
  view.selectRightRow(2);
  EXPECT_EQ(view.getSelectedItem(), "美发");

  view.selectLeftRow(0);  // 全部分类 has no sub-categories: complete at once
  EXPECT_EQ(delegate.calls, 4);
  EXPECT_EQ(view.selectedRightIndex, -1);
  EXPECT_EQ(view.getSelectedTypeId(), "0");
  view.selectRightRow(0);  // nothing to choose there
  EXPECT_EQ(delegate.calls, 4);
  view.selectLeftRow(42);
  EXPECT_EQ(view.selectedLeftIndex, 0);
}

TEST(CategoryScreenViewTest, ResetCategoryByTypeId) {
  CategoryScreenView view;
  view.categoryList = searchTypesFromEnvelope(builtInSearchTypesText());
  ASSERT_TRUE(view.resetCategory("30"));
  EXPECT_EQ(view.getSelectedItem(), "休闲娱乐");
  EXPECT_EQ(view.getSelectedTypeId(), "30");
  ASSERT_TRUE(view.resetCategory("17"));
  EXPECT_EQ(view.getSelectedItem(), "美食-其他");
  EXPECT_FALSE(view.resetCategory("9999"));
  EXPECT_EQ(view.getSelectedTypeId(), "17");
}

// The home's template groups carry ids of their own: each hands over the catalogue's
// category that holds most of its sub-categories, or all categories when none stands out.
TEST(HomeCategoryHandover, TemplateGroupsMapOntoTheCatalogue) {
  const auto catalogue = searchTypesFromEnvelope(builtInSearchTypesText());
  const auto group = [](const char* id, std::vector<const char*> subs) {
    Json list = Json::array();
    for (const char* sub : subs) list.push_back({{"id", sub}, {"name", sub}});
    return SearchTypeModel(Json{{"id", id}, {"name", id}, {"list", list}});
  };
  EXPECT_EQ(MainViewController::handoverTypeId(group("1", {"11", "12", "13", "18"}), catalogue), "10");
  // Leisure: four of the leisure entries outweigh three of health's.
  EXPECT_EQ(MainViewController::handoverTypeId(group("2", {"31", "32", "21", "24", "22", "35", "33"}), catalogue), "30");
  EXPECT_EQ(MainViewController::handoverTypeId(group("4", {"1000", "60", "50", "70"}), catalogue), "0") << "a tie";
  EXPECT_EQ(MainViewController::handoverTypeId(group("5", {"1001", "1002"}), catalogue), "0") << "none known";
  EXPECT_EQ(MainViewController::handoverTypeId(group("40", {}), catalogue), "40") << "a catalogue id stays";

  // The home's entries: the home list's picture names and the server's sub-category
  // pictures; a sub-category the catalogue lacks hands over its group's id; nameless
  // entries are not shown.
  SearchTypeModel food = group("1", {"11", "1001", ""});
  food.name = "餐饮美食";
  food.bigImageName = "meishi";
  food.list[0].imgURL = "http://h/oss/art/category_11.png";
  SearchTypeModel nameless = group("5", {"12"});
  nameless.name.clear();
  const auto groups = MainViewController::categoryGroups({food, nameless}, catalogue);
  ASSERT_EQ(groups.size(), 1u);
  EXPECT_EQ(groups[0].main, (MainViewController::CategoryEntry{"餐饮美食", "10", "meishi", ""}));
  ASSERT_EQ(groups[0].subs.size(), 2u);
  EXPECT_EQ(groups[0].subs[0], (MainViewController::CategoryEntry{"11", "11", "", "http://h/oss/art/category_11.png"}));
  EXPECT_EQ(groups[0].subs[1].typeId, "10") << "unknown to the catalogue";
}

}  // namespace
}  // namespace qmv
