#include "core/storage/db_util.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <fstream>
#include <optional>
#include <set>
#include <thread>

#include "core/storage/area_rows.h"
#include "platform/manual_main_loop.h"
#include "platform/testing/temp_home.h"

namespace qmv {
namespace {

// A home with the built shipped databases and managers created afresh for it.
class DBUtilTest : public ::testing::Test {
 protected:
  explicit DBUtilTest(std::filesystem::path resources = QMV_RESOURCE_DIR) : home_(std::move(resources)) {
    DBUtil::resetManagersForTesting();
  }
  ~DBUtilTest() override { DBUtil::resetManagersForTesting(); }

  // A server area object.
  static Json area(int id, int parentId, const std::string& name, const std::string& pyName, int type) {
    return Json{{"id", id},          {"parentId", parentId}, {"name", name}, {"pyName", pyName},
                {"zipcode", 276000}, {"type", type},         {"special", 0}};
  }

  static Status refresh(const Json& list, const std::string& ver) {
    auto done = DBUtil::applyAreaList(list, ver);
    EXPECT_EQ(done.wait_for(std::chrono::seconds(30)), std::future_status::ready);
    return done.get();
  }

  TempHome home_;
};

TEST_F(DBUtilTest, FreshInstallUsesTheShippedDatabase) {
  EXPECT_FALSE(DBUtil::cacheDBValid());
  EXPECT_EQ(DBUtil::sharedManager(), DBUtil::sharedBundleManager());

  const auto linyi = DBUtil::getCityWithName("临沂市");
  ASSERT_TRUE(linyi);
  EXPECT_EQ(linyi->areaType, "2");
  EXPECT_EQ(linyi->areaPY, "linyishi");
  const auto byId = DBUtil::getCityWithId(linyi->areaID);
  ASSERT_TRUE(byId);
  EXPECT_EQ(byId->areaName, "临沂市");
  EXPECT_EQ(DBUtil::getCityWithName("不存在市"), std::nullopt);
  EXPECT_EQ(DBUtil::getCityWithId("999999"), std::nullopt);

  const auto districts = DBUtil::getAllDistrictWithCityId(linyi->areaID);
  EXPECT_GE(districts.size(), 12u);
  EXPECT_NE(std::find(districts.begin(), districts.end(), "兰山区"), districts.end());
  std::vector<std::string> pinyins;
  for (const auto& name : districts) {
    const auto id = DBUtil::getDistrictIdWithName(name, linyi->areaID);  // names repeat across cities
    ASSERT_TRUE(id) << name;
    const auto district = DBUtil::getCityWithId(*id);
    ASSERT_TRUE(district) << name;
    EXPECT_EQ(district->parentID, linyi->areaID);
    pinyins.push_back(district->areaPY);
  }
  EXPECT_TRUE(std::is_sorted(pinyins.begin(), pinyins.end()));

  const auto lanshan = DBUtil::getDistrictIdWithName("兰山区", linyi->areaID);
  ASSERT_TRUE(lanshan);
  EXPECT_EQ(DBUtil::getCityWithId(*lanshan)->areaName, "兰山区");
  EXPECT_EQ(DBUtil::getDistrictIdWithName("兰山区", "110100"), std::nullopt);

  // Reading never creates the cache file.
  EXPECT_FALSE(std::filesystem::exists(home_.caches() / "area.db"));
}

TEST_F(DBUtilTest, QuotesApostrophesAndColumnNamesFindNothing) {
  // Each of these, substituted, would match rows (every city, or every row of the table).
  for (const char* name :
       {"临沂市\" or \"1\"=\"1", "x\" or area_type = \"2", "临沂市' --", "area_name", "AREA_NAME", "\"", "'"}) {
    EXPECT_EQ(DBUtil::getCityWithName(name), std::nullopt) << name;
    EXPECT_EQ(DBUtil::getCityWithId(name), std::nullopt) << name;
    EXPECT_TRUE(DBUtil::getCitiesWithKey(name).empty()) << name;
    EXPECT_TRUE(DBUtil::getAllDistrictWithCityId(name).empty()) << name;
    EXPECT_EQ(DBUtil::getDistrictIdWithName(name, "371300"), std::nullopt) << name;
    EXPECT_EQ(DBUtil::getDistrictIdWithName("兰山区", name), std::nullopt) << name;
  }
  EXPECT_EQ(DBUtil::getCityWithName(std::string("临沂市\0x", 11)), std::nullopt);
  EXPECT_TRUE(DBUtil::getCityWithName("临沂市"));  // the guard leaves ordinary names alone
}

TEST_F(DBUtilTest, CitiesGroupByInitialAndSkipTheDirectlyGovernedGroup) {
  const auto shipped = DBUtil::sharedBundleManager()->getRowsForQuery(
      "select count(*) as n from areas where area_name = '省直辖县级行政单位' and area_type = 2");
  ASSERT_GT(shipped.value()[0]["n"].get<int>(), 0);  // the shipped data does hold such rows

  const auto all = DBUtil::getAllCity();
  ASSERT_FALSE(all.empty());
  std::size_t total = 0;
  for (const auto& [letter, cities] : all) {
    ASSERT_EQ(letter.size(), 1u);
    EXPECT_TRUE(letter[0] >= 'A' && letter[0] <= 'Z') << letter;
    ASSERT_FALSE(cities.empty()) << letter;
    std::vector<std::string> pinyins;
    for (const auto& city : cities) {
      EXPECT_EQ(city.areaType, "2");
      EXPECT_NE(city.areaName, "省直辖县级行政单位");
      EXPECT_EQ(city.areaPY.front(), letter[0] - 'A' + 'a') << city.areaName;
      pinyins.push_back(city.areaPY);
    }
    EXPECT_TRUE(std::is_sorted(pinyins.begin(), pinyins.end())) << letter;
    total += cities.size();
  }
  const auto cityCount = DBUtil::sharedBundleManager()->getRowsForQuery(
      "select count(*) as n from areas where area_type = 2 and area_name != '省直辖县级行政单位'");
  EXPECT_EQ(total, cityCount.value()[0]["n"].get<std::size_t>());
  ASSERT_TRUE(all.count("L"));
  EXPECT_TRUE(
      std::any_of(all.at("L").begin(), all.at("L").end(), [](const AreaModel& c) { return c.areaName == "临沂市"; }));

  for (const char* key : {"linyi", "临沂"}) {
    const auto found = DBUtil::getCitiesWithKey(key);
    EXPECT_TRUE(std::any_of(found.begin(), found.end(), [](const AreaModel& c) { return c.areaName == "临沂市"; }))
        << key;
    for (const auto& city : found) EXPECT_EQ(city.areaType, "2");
  }
  EXPECT_TRUE(DBUtil::getCitiesWithKey("shengzhixia").empty());
  // "%" and "_" in a key are characters to find, not wildcards.
  for (const char* key : {"%", "_", "lin_i", "li%yi"}) EXPECT_TRUE(DBUtil::getCitiesWithKey(key).empty()) << key;
}

TEST_F(DBUtilTest, PlaceNamesKeepTheirOwnReadings) {
  // Characters that place names read otherwise than everyday words do.
  const auto kashi = DBUtil::getCitiesWithKey("kashi");
  EXPECT_TRUE(std::any_of(kashi.begin(), kashi.end(), [](const AreaModel& c) { return c.areaName == "喀什地区"; }));
  for (const auto& [name, pinyin] : {std::pair{"单县", "shanxian"},
                                     {"黄陂区", "huangpiqu"},
                                     {"宁都县", "ningduxian"},
                                     {"闵行区", "minhangqu"},
                                     {"乐亭县", "laotingxian"},
                                     {"成都市", "chengdushi"}}) {
    const auto area = DBUtil::getCityWithName(name);
    ASSERT_TRUE(area) << name;
    EXPECT_EQ(area->areaPY, pinyin) << name;
  }
}

TEST_F(DBUtilTest, RefreshWritesTheCacheAndSwitchesOnlyWhenComplete) {
  // A first refresh, then a large one whose rebuild takes a while.
  ASSERT_TRUE(
      refresh(Json::array({area(900000, 0, "测试省", "ceshisheng", 1), area(900100, 900000, "测试市", "ceshishi", 2)}),
              "1")
          .ok());
  EXPECT_TRUE(DBUtil::cacheDBValid());
  EXPECT_TRUE(DBUtil::getCityWithName("测试市"));
  EXPECT_FALSE(DBUtil::getCityWithName("临沂市"));  // the cache, not the shipped data, answers

  Json big = Json::array();
  constexpr int kCount = 20000;
  for (int i = 1; i <= kCount; ++i) big.push_back(area(1000000 + i, 900100, "区" + std::to_string(i), "qu", 3));
  big.push_back(area(900200, 900000, "新市", "xinshi", 2));
  big.push_back(area(2000000, 900000, "末区", "moqu", 3));  // last element, highest id

  auto done = DBUtil::applyAreaList(big, "2");
  EXPECT_EQ(home_.settings().stringForKey("area_version"), "2");
  EXPECT_EQ(home_.settings().stringForKey("last_area_id"), "2000000");
  EXPECT_GE(home_.settings().synchronizeCount(), 1);
  int sawShipped = 0;
  while (done.wait_for(std::chrono::milliseconds(0)) != std::future_status::ready) {
    const auto manager = DBUtil::sharedManager();
    if (manager == DBUtil::sharedBundleManager()) {
      ++sawShipped;
    } else {
      // Whenever the cache answers, it is the complete new one.
      EXPECT_EQ(manager->getRowsForQuery("select count(*) as n from areas").value()[0]["n"], kCount + 2);
    }
  }
  EXPECT_TRUE(done.get().ok());
  EXPECT_GT(sawShipped, 0);
  EXPECT_EQ(DBUtil::sharedCacheManager()->getRowsForQuery("select count(*) as n from areas").value()[0]["n"],
            kCount + 2);
  EXPECT_TRUE(DBUtil::cacheDBValid());
  EXPECT_TRUE(DBUtil::getCityWithName("新市"));
  EXPECT_FALSE(DBUtil::getCityWithName("测试市"));  // the old cache is gone

  const auto zipcodes = DBUtil::sharedCacheManager()->getRowsForQuery("select distinct zipcode from areas").value();
  ASSERT_EQ(zipcodes.size(), 1u);
  EXPECT_EQ(zipcodes[0]["zipcode"], 1);
  EXPECT_FALSE(std::filesystem::exists(home_.caches() / "area.db.rebuild"));

  // Bad lists change nothing.
  EXPECT_FALSE(DBUtil::applyAreaList(Json::array(), "3").get().ok());
  EXPECT_FALSE(DBUtil::applyAreaList(Json::object(), "3").get().ok());
  EXPECT_EQ(home_.settings().stringForKey("area_version"), "2");
  EXPECT_TRUE(DBUtil::cacheDBValid());
}

TEST_F(DBUtilTest, AListReadInTheBackgroundIsMarkedOnTheInterfaceThreadBeforeItsRebuild) {
  ASSERT_TRUE(refresh(Json::array({area(900000, 0, "旧省", "jiusheng", 1)}), "1").ok());
  auto& loop = static_cast<ManualMainLoop&>(*Env::current().mainLoop);
  const Json list = Json::array({area(900000, 0, "测试省", "ceshisheng", 1), area(900100, 900000, "测试市", "ceshishi", 2)});

  std::promise<void> release;
  std::optional<bool> started;
  std::string versionWhenStarted;
  auto done = DBUtil::applyAreaList(
      [list, gate = release.get_future().share()] {
        gate.wait();
        return AreaList{areaRowsOf(list), "2"};
      },
      [&](bool rebuilding) {
        started = rebuilding;
        versionWhenStarted = home_.settings().stringForKey("area_version").value_or("");
      });
  // While the answer is read the old cache stays in force, marks and all.
  EXPECT_EQ(home_.settings().stringForKey("area_version"), "1");
  EXPECT_TRUE(DBUtil::getCityWithName("旧省"));
  release.set_value();
  // The marks wait for the interface thread, whose store is not written from elsewhere.
  std::this_thread::sleep_for(std::chrono::milliseconds(50));
  EXPECT_EQ(home_.settings().stringForKey("area_version"), "1");
  ASSERT_TRUE(loop.runUntil([&] { return started.has_value(); }, std::chrono::seconds(10)));
  EXPECT_TRUE(*started);
  EXPECT_EQ(versionWhenStarted, "2") << "stored before the rebuild is told of";
  EXPECT_EQ(home_.settings().stringForKey("last_area_id"), "900100");
  ASSERT_EQ(done.wait_for(std::chrono::seconds(30)), std::future_status::ready);
  EXPECT_TRUE(done.get().ok());
  EXPECT_TRUE(DBUtil::cacheDBValid());
  EXPECT_TRUE(DBUtil::getCityWithName("测试市"));

  // An answer without areas stores nothing and starts nothing.
  started.reset();
  auto empty = DBUtil::applyAreaList([] { return AreaList{{}, "3"}; }, [&](bool rebuilding) { started = rebuilding; });
  ASSERT_TRUE(loop.runUntil([&] { return started.has_value(); }, std::chrono::seconds(10)));
  EXPECT_FALSE(*started);
  EXPECT_FALSE(empty.get().ok());
  EXPECT_EQ(home_.settings().stringForKey("area_version"), "2");

  // A main loop gone before the marks were stored: the outcome still arrives, as an error.
  std::shared_future<Status> orphan;
  {
    Env env = Env::current();
    env.mainLoop = std::make_shared<ManualMainLoop>();
    ScopedEnv scoped(std::move(env));
    orphan = DBUtil::applyAreaList([list] { return AreaList{areaRowsOf(list), "4"}; }, [](bool) { ADD_FAILURE(); });
  }
  ASSERT_EQ(orphan.wait_for(std::chrono::seconds(10)), std::future_status::ready);
  EXPECT_FALSE(orphan.get().ok());
  EXPECT_EQ(home_.settings().stringForKey("area_version"), "2");
}

TEST_F(DBUtilTest, MismatchedLastAreaIdKeepsTheCacheUnused) {
  // The server's last element is not its highest id.
  ASSERT_TRUE(
      refresh(Json::array({area(900100, 900000, "测试市", "ceshishi", 2), area(900000, 0, "测试省", "ceshisheng", 1)}),
              "")
          .ok());
  EXPECT_EQ(home_.settings().stringForKey("area_version"), std::nullopt);  // empty ver is not stored
  EXPECT_EQ(home_.settings().stringForKey("last_area_id"), "900000");
  EXPECT_TRUE(std::filesystem::exists(home_.caches() / "area.db"));
  EXPECT_FALSE(DBUtil::cacheDBValid());
  EXPECT_TRUE(DBUtil::getCityWithName("临沂市"));
  EXPECT_FALSE(DBUtil::getCityWithName("测试市"));

  home_.settings().setString("900100", "last_area_id");
  EXPECT_TRUE(DBUtil::cacheDBValid());
  EXPECT_TRUE(DBUtil::getCityWithName("测试市"));

  // A lost cache file falls back to the shipped data.
  DBUtil::sharedCacheManager()->closeDatabase();
  std::filesystem::remove(home_.caches() / "area.db");
  EXPECT_FALSE(DBUtil::cacheDBValid());
  EXPECT_TRUE(DBUtil::getCityWithName("临沂市"));
}

TEST_F(DBUtilTest, ServerAreasWithApostrophesOrOddFieldsAreHandled) {
  Json list = Json::array({area(900100, 900000, "测试市", "ceshishi", 2),
                           area(900101, 900100, "x'); drop table areas; --", "x", 3),
                           Json{{"id", "900102"}, {"parentId", 900100.7}, {"name", nullptr}, {"type", "3"}},
                           area(900103, 900100, "末区", "moqu", 3), area(900104, 900000, "O'Hare市", "o'hareshi", 2)});
  ASSERT_TRUE(refresh(list, "9").ok());
  ASSERT_TRUE(DBUtil::cacheDBValid());
  const auto rows = DBUtil::sharedCacheManager()->getRowsForQuery("select * from areas order by area_id").value();
  ASSERT_EQ(rows.size(), 5u);  // every area is kept and the table survives
  EXPECT_EQ(rows[1]["area_name"], "x'); drop table areas; --");
  EXPECT_EQ(rows[2]["area_id"], 900102);
  EXPECT_EQ(rows[2]["parent_id"], 900100);
  EXPECT_EQ(rows[2]["area_name"], "");
  EXPECT_EQ(rows[2]["area_type"], 3);

  const auto ohare = DBUtil::getCityWithName("O'Hare市");
  ASSERT_TRUE(ohare);
  EXPECT_EQ(ohare->areaPY, "o'hareshi");
  EXPECT_EQ(DBUtil::getCityWithId(ohare->areaID)->areaName, "O'Hare市");
  EXPECT_EQ(DBUtil::getCitiesWithKey("'hare").size(), 1u);
  EXPECT_EQ(DBUtil::getDistrictIdWithName("x'); drop table areas; --", "900100"), "900101");
}

// Every card of the bank package's own table (16 or 19 digits; other lengths are never
// looked up) is named after the bank of the longest prefix of its length it starts with,
// the first row on a tie.
TEST_F(DBUtilTest, EveryCardOfTheBankSourceFindsItsBank) {
  struct SourceBin {
    std::string bin;
    std::string bank;
    std::size_t length;
  };
  std::vector<SourceBin> source;
  std::ifstream csv(std::filesystem::path(QMV_DATA_SOURCE_DIR) / "bank_card_bin_source.csv");
  std::string line;
  ASSERT_TRUE(std::getline(csv, line));  // header
  while (std::getline(csv, line)) {
    const auto first = line.find(',');
    const auto last = line.rfind(',');
    ASSERT_TRUE(first != std::string::npos && first < last && line.find('"') == std::string::npos) << line;
    source.push_back(
        {line.substr(0, first), line.substr(first + 1, last - first - 1), std::stoul(line.substr(last + 1))});
  }
  ASSERT_GT(source.size(), 1000u);
  const auto bankOf = [&source](const std::string& card) {
    const SourceBin* found = nullptr;
    for (const SourceBin& row : source) {
      if (row.length == card.size() && card.starts_with(row.bin) && (!found || row.bin.size() > found->bin.size())) {
        found = &row;
      }
    }
    return found ? found->bank : std::string();
  };

  std::size_t checked = 0;
  std::vector<std::string> wrong;
  for (const SourceBin& row : source) {
    if (row.length != 16 && row.length != 19) continue;
    // Both ends of the prefix's range.
    for (const char fill : {'0', '9'}) {
      const std::string card = row.bin + std::string(row.length - row.bin.size(), fill);
      ++checked;
      const std::string expected = bankOf(card);
      const std::string found = DBUtil::getBankNameWithBankNum(card);
      if (found != expected) wrong.push_back(card + ": " + found + " instead of " + expected);
    }
  }
  EXPECT_GT(checked, 2000u);
  EXPECT_TRUE(wrong.empty()) << wrong.size() << " of " << checked << " cards, e.g. " << wrong.front();

  EXPECT_EQ(DBUtil::getBankNameWithBankNum("0000000000000000"), "");
  EXPECT_EQ(DBUtil::getBankNameWithBankNum("62220202001122334"), "");  // 17 digits
  EXPECT_EQ(DBUtil::getBankNameWithBankNum("622202\"or\"1\"=\"1"), "");
}

// A resource directory holding a bank database made for the test.
class DBUtilBankTest : public DBUtilTest {
 protected:
  DBUtilBankTest() : DBUtilTest(makeResources()) {}
  ~DBUtilBankTest() override { std::filesystem::remove_all(resources_); }

  static std::filesystem::path makeResources() {
    std::string pattern = (std::filesystem::temp_directory_path() / "qmv-res-XXXXXX").string();
    if (mkdtemp(pattern.data()) == nullptr) std::abort();
    resources_ = pattern;
    auto db = SQLiteDatabase::atPath(resources_ / "bank_card_bin.db");
    db.runInTransaction({"create table bank_card_bin (card_bin VARCHAR, bank_name VARCHAR)",
                         "insert into bank_card_bin values ('4000', '短前缀行')",
                         "insert into bank_card_bin values ('40001234', '长前缀行')",
                         "insert into bank_card_bin values ('62', '二位行')",
                         "insert into bank_card_bin values ('955', '三位行')",
                         "insert into bank_card_bin values ('5123456', '七位行')",
                         "insert into bank_card_bin values ('51234567', '八位行')",
                         "insert into bank_card_bin values ('712345678', '九位行')"});
    return resources_;
  }

  static inline std::filesystem::path resources_;
};

TEST_F(DBUtilBankTest, ShortestMatchingPrefixWins) {
  EXPECT_EQ(DBUtil::getBankNameWithBankNum("4000123412341234"), "短前缀行");
  EXPECT_EQ(DBUtil::getBankNameWithBankNum("6200000000000000"), "二位行");
  EXPECT_EQ(DBUtil::getBankNameWithBankNum("9550000000000000000"), "三位行");
  EXPECT_EQ(DBUtil::getBankNameWithBankNum("5123456700000000"), "七位行");
  EXPECT_EQ(DBUtil::getBankNameWithBankNum("5123457000000000"), "");
  EXPECT_EQ(DBUtil::getBankNameWithBankNum("7123456780000000"), "");  // 9 digits are never tried
  EXPECT_EQ(DBUtil::getBankNameWithBankNum("400012341234123"), "");   // 15 digits
  EXPECT_EQ(DBUtil::getBankNameWithBankNum("4000 1234 1234 1234"), "");
  EXPECT_FALSE(DBUtil::getCityWithName("临沂市"));  // no area.db here: nothing found, no crash
}

TEST(AreaModelTest, ReadsColumnsAsText) {
  const AreaModel city(Json{
      {"area_id", 371300}, {"parent_id", 370000}, {"area_name", "临沂市"}, {"py_name", "linyishi"}, {"area_type", 2}});
  EXPECT_EQ(city.areaID, "371300");
  EXPECT_EQ(city.parentID, "370000");
  EXPECT_EQ(city.areaName, "临沂市");
  EXPECT_EQ(city.areaPY, "linyishi");
  EXPECT_EQ(city.areaType, "2");
  const AreaModel empty(Json{{"area_id", nullptr}});
  EXPECT_EQ(empty.areaID, "");
  EXPECT_EQ(empty.areaName, "");
}

}  // namespace
}  // namespace qmv
