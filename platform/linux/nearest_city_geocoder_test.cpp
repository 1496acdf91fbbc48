#include "platform/linux/nearest_city_geocoder.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cmath>
#include <filesystem>
#include <initializer_list>
#include <string>

#include "core/sqlite/sqlite_database.h"
#include "platform/file_locations.h"

namespace qmv {
namespace {

namespace fs = std::filesystem;

class NearestCityGeocoderTest : public ::testing::Test {
 protected:
  void SetUp() override {
    dir_ = fs::temp_directory_path() / ("qmv_geocoder_" + std::to_string(::getpid()) + "_" +
                                        ::testing::UnitTest::GetInstance()->current_test_info()->name());
    fs::remove_all(dir_);
    fs::create_directories(dir_);
  }
  void TearDown() override { fs::remove_all(dir_); }

  fs::path makeDatabase(std::initializer_list<const char*> scripts) {
    const fs::path path = dir_ / "area.db";
    auto db = SQLiteDatabase::atPath(path);
    for (const char* sql : scripts) {
      const Status status = db.executeScript(sql);
      EXPECT_TRUE(status.ok()) << status.toString();
    }
    return path;
  }

  fs::path dir_;
};

constexpr const char* kAreas =
    "CREATE TABLE areas (area_id integer, parent_id integer, area_name VARCHAR, py_name VARCHAR, zipcode integer,"
    " area_type integer, special integer);"
    "INSERT INTO areas VALUES (370000, 0, '山东省', 'shandongsheng', 1, 1, 0),"
    " (371300, 370000, '临沂市', 'linyishi', 1, 2, 0), (370100, 370000, '济南市', 'jinanshi', 1, 2, 0),"
    " (110000, 0, '北京市', 'beijingshi', 1, 1, 0), (110100, 110000, '北京市', 'beijingshi', 1, 2, 0),"
    " (120000, 0, '天津市', 'tianjinshi', 1, 1, 0), (120100, 120000, '市辖区', 'shixiaqu', 1, 2, 0);";
constexpr const char* kCentres =
    "CREATE TABLE city_centres (area_id integer, area_name VARCHAR, latitude REAL, longitude REAL);"
    "INSERT INTO city_centres VALUES (371300, '临沂市', 35.104672, 118.356448),"
    " (370100, '济南市', 36.651216, 117.12), (110100, '北京市', 39.904211, 116.407395),"
    " (120100, '市辖区', 39.084158, 117.200983),"
    " (999, '无坐标市', NULL, 118.0), (998, '', 35.0, 118.0);";

TEST_F(NearestCityGeocoderTest, PicksTheNearestCentreWithItsProvince) {
  NearestCityGeocoder geocoder(makeDatabase({kAreas, kCentres}));
  EXPECT_EQ(geocoder.centreCount(), 4u);  // rows without a position or a name are skipped

  const auto linyi = geocoder.reverseGeocode({35.06, 118.34});
  ASSERT_TRUE(linyi);
  EXPECT_EQ(linyi->locality, "临沂市");
  EXPECT_EQ(linyi->administrativeArea, "山东省");
  // Nearer Jinan than Linyi, though north of both.
  const auto jinan = geocoder.reverseGeocode({37.2, 117.0});
  ASSERT_TRUE(jinan);
  EXPECT_EQ(jinan->locality, "济南市");
  const auto beijing = geocoder.reverseGeocode({40.1, 116.6});
  ASSERT_TRUE(beijing);
  EXPECT_EQ(beijing->locality, "北京市");
  EXPECT_EQ(beijing->administrativeArea, "北京市");

  // A municipality's placeholder city level names no city: the province is the city.
  const auto tianjin = geocoder.reverseGeocode({39.1, 117.3});
  ASSERT_TRUE(tianjin);
  EXPECT_EQ(tianjin->locality, "");
  EXPECT_EQ(tianjin->administrativeArea, "天津市");

  EXPECT_FALSE(geocoder.reverseGeocode({48.8566, 2.3522}));  // nowhere near a known city
  EXPECT_FALSE(geocoder.reverseGeocode({std::nan(""), 118.0}));
}

TEST_F(NearestCityGeocoderTest, MissingDataGivesNoPlacemark) {
  NearestCityGeocoder missingFile(dir_ / "absent.db");
  EXPECT_FALSE(missingFile.reverseGeocode({35.1, 118.3}));
  EXPECT_FALSE(fs::exists(dir_ / "absent.db"));  // opened read-only, never created

  NearestCityGeocoder noCentres(makeDatabase({kAreas}));
  EXPECT_FALSE(noCentres.reverseGeocode({35.1, 118.3}));
}

TEST_F(NearestCityGeocoderTest, WithoutAreasTableTheProvinceIsEmpty) {
  NearestCityGeocoder geocoder(makeDatabase({kCentres}));
  const auto place = geocoder.reverseGeocode({35.1, 118.3});
  ASSERT_TRUE(place);
  EXPECT_EQ(place->locality, "临沂市");
  EXPECT_EQ(place->administrativeArea, "");
}

TEST_F(NearestCityGeocoderTest, ReadsTheShippedDatabaseOfTheResourceDirectory) {
  makeDatabase({kAreas, kCentres});
  HomeFileLocations files(dir_ / "home", dir_);
  const auto place = NearestCityGeocoder::fromResources(files)->reverseGeocode({36.6, 117.1});
  ASSERT_TRUE(place);
  EXPECT_EQ(place->locality, "济南市");
}

}  // namespace
}  // namespace qmv
