#include "core/session/global_data.h"

#include <gtest/gtest.h>

#include "core/storage/db_util.h"
#include "platform/clock.h"
#include "platform/env.h"
#include "platform/settings_store.h"
#include "platform/testing/temp_home.h"
#include "platform/testing/test_env.h"

namespace qmv {
namespace {

constexpr std::int64_t kSept3_2016Noon = 1472904000;  // 2016-09-03T12:00:00Z
constexpr std::int64_t kSept5_2016Noon = 1473076800;  // 2016-09-05T12:00:00Z

struct SessionEnv {
  std::shared_ptr<MemorySettingsStore> settings = std::make_shared<MemorySettingsStore>();
  std::shared_ptr<FixedClock> clock;
  std::unique_ptr<ScopedEnv> scope;

  explicit SessionEnv(std::int64_t now) : clock(std::make_shared<FixedClock>(now)) {
    Env env;
    env.settings = settings;
    env.clock = clock;
    scope = std::make_unique<ScopedEnv>(completedForTesting(env));
    GlobalData::resetSharedInstance();
  }
  ~SessionEnv() { GlobalData::resetSharedInstance(); }
};

std::vector<std::string> subNames(const SearchTypeModel& model) {
  std::vector<std::string> names;
  for (const auto& sub : model.list) names.push_back(sub.name);
  return names;
}

TEST(GlobalDataTest, BuiltInTemplateChosenByDate) {
  {
    SessionEnv env(kSept3_2016Noon);
    const auto& list = GlobalData::sharedInstance().defaultTypeList();
    ASSERT_EQ(list.size(), 5u);
    EXPECT_EQ(list[4].typeId, "5");
    EXPECT_EQ(subNames(list[4]), (std::vector<std::string>{"幸运抽奖", "代理商加盟", "", ""}));
    EXPECT_EQ(list[4].list[3].typeId, "1004");
  }
  {
    SessionEnv env(kSept5_2016Noon);
    const auto& list = GlobalData::sharedInstance().defaultTypeList();
    EXPECT_EQ(subNames(list[4]), (std::vector<std::string>{"幸运抽奖", "一元夺宝", "网上商城", "沙龙活动"}));
    // The shared groups, in their listed order.
    EXPECT_EQ(list[0].typeId, "1");
    EXPECT_EQ(subNames(list[2]), (std::vector<std::string>{"美发", "美甲", "美体", "舞蹈"}));
    EXPECT_EQ(list[3].list[0].typeId, "1000");
  }
}

TEST(GlobalDataTest, StoredTemplatesMergeByNameAndKeepTheHomeLook) {
  SessionEnv env(kSept5_2016Noon);
  env.settings->setString(
      R"({"success":"0","message":"","data":{"dataList":[
          {"id":"77","name":"丽人美妆","list":[{"id":"771","name":"美睫"}]},
          {"id":"99","name":"不存在的分类","list":[{"id":"991","name":"x"}]}]}})",
      "templates");
  GlobalData& data = GlobalData::sharedInstance();
  const auto& list = data.defaultTypeList();
  ASSERT_EQ(list.size(), 5u);
  EXPECT_EQ(list[2].name, "丽人美妆");
  EXPECT_EQ(list[2].typeId, "77");
  EXPECT_EQ(subNames(list[2]), std::vector<std::string>{"美睫"});
  EXPECT_EQ(list[2].nameColor, (Color{112, 176, 78, 1.0}));
  EXPECT_EQ(list[2].bigImageName, "liren");
  EXPECT_EQ(list[2].pageCtrlUnselectImageName, "liren_tab1");
  // Without a stored namesake, a default keeps an empty id and list (the built-in text
  // is not used once templates are stored).
  EXPECT_EQ(list[0].typeId, "");
  EXPECT_TRUE(list[0].list.empty());
  EXPECT_EQ(GlobalData::getInfoWithName("不存在的分类", data.defaultTypeList()), nullptr);

  data.defaultTypeList()[4].scrollIndex = 3;
  SearchTypeModel update;
  update.name = "专属活动";
  update.typeId = "5";
  data.mergeTemplates({update});
  EXPECT_EQ(list[4].scrollIndex, 0);
  EXPECT_EQ(list[4].typeId, "5");
  EXPECT_EQ(list[4].pageCtrlSelectedImageName, "huodong_tab0");
}

TEST(GlobalDataTest, DamagedStoredTemplatesLeaveBareDefaults) {
  SessionEnv env(kSept5_2016Noon);
  env.settings->setString(R"({"success":"0","data":"not an object"})", "templates");
  const auto& list = GlobalData::sharedInstance().defaultTypeList();
  ASSERT_EQ(list.size(), 5u);
  for (const auto& model : list) {
    EXPECT_TRUE(model.typeId.empty());
    EXPECT_FALSE(model.bigImageName.empty());
  }
  EXPECT_EQ(list[1].nameColor, (Color{239, 49, 57, 1.0}));
}

TEST(GlobalDataTest, CurrentCityNameFallsBackToTheDefaultCity) {
  SessionEnv env(kSept5_2016Noon);
  EXPECT_EQ(GlobalData::sharedInstance().getCurrentCityName(), "临沂市");
  env.settings->setString("", "select_city");
  EXPECT_EQ(GlobalData::sharedInstance().getCurrentCityName(), "临沂市");
  env.settings->setString("济南市", "select_city");
  EXPECT_EQ(GlobalData::sharedInstance().getCurrentCityName(), "济南市");
}

}  // namespace
}  // namespace qmv

namespace qmv {
namespace {

TEST(GlobalDataCityTest, CurrentCityIdFallsBackToLinyiThenToNothing) {
  {
    TempHome home(QMV_RESOURCE_DIR);
    DBUtil::resetManagersForTesting();
    GlobalData::resetSharedInstance();
    GlobalData& data = GlobalData::sharedInstance();
    const auto linyi = DBUtil::getCityWithName("临沂市");
    const auto jinan = DBUtil::getCityWithName("济南市");
    ASSERT_TRUE(linyi && jinan);
    EXPECT_EQ(data.getCurrentCityId(), linyi->areaID);
    home.settings().setString("济南市", "select_city");
    EXPECT_EQ(data.getCurrentCityId(), jinan->areaID);
    home.settings().setString("火星市", "select_city");
    EXPECT_EQ(data.getCurrentCityId(), linyi->areaID);
    EXPECT_TRUE(data.cityExist("济南市"));
    EXPECT_FALSE(data.cityExist("火星市"));
    EXPECT_FALSE(data.cityExist(""));
  }
  {
    // No area database at all: neither the city nor the fallback is found.
    TempHome home("/nonexistent-qmv-resources");
    DBUtil::resetManagersForTesting();
    GlobalData::resetSharedInstance();
    EXPECT_EQ(GlobalData::sharedInstance().getCurrentCityId(), std::nullopt);
    EXPECT_FALSE(GlobalData::sharedInstance().cityExist("临沂市"));
  }
  DBUtil::resetManagersForTesting();
  GlobalData::resetSharedInstance();
}

}  // namespace
}  // namespace qmv
