#include "platform/linux/nearest_city_geocoder.h"

#include <sqlite3.h>

#include <cmath>
#include <limits>

#include "core/common/great_circle.h"
#include "core/common/log.h"
#include "platform/file_locations.h"

namespace qmv {
namespace {

constexpr const char* kCentresWithProvince =
    "SELECT c.area_name, p.area_name, c.latitude, c.longitude FROM city_centres c "
    "LEFT JOIN areas a ON a.area_id = c.area_id LEFT JOIN areas p ON p.area_id = a.parent_id";
constexpr const char* kCentresOnly = "SELECT area_name, NULL, latitude, longitude FROM city_centres";

// Names the national area code list gives the city level of municipalities and of
// counties under a province. They name no city, so the placemark leaves its locality
// empty and readers take the province (for a municipality, the city itself).
bool isPlaceholderCityName(const std::string& name) {
  return name == "市辖区" || name == "县" || name == "省直辖县级行政单位" || name == "自治区直辖县级行政单位";
}

std::string columnText(sqlite3_stmt* statement, int column) {
  const unsigned char* text = sqlite3_column_text(statement, column);
  return text != nullptr ? reinterpret_cast<const char*>(text) : "";
}

bool isNumber(sqlite3_stmt* statement, int column) {
  const int type = sqlite3_column_type(statement, column);
  return type == SQLITE_FLOAT || type == SQLITE_INTEGER;
}

}  // namespace

NearestCityGeocoder::NearestCityGeocoder(std::filesystem::path areaDatabase) : database_(std::move(areaDatabase)) {}

std::shared_ptr<NearestCityGeocoder> NearestCityGeocoder::fromResources(const FileLocations& files) {
  return std::make_shared<NearestCityGeocoder>(files.resourceDirectory() / "area.db");
}

void NearestCityGeocoder::loadOnce() {
  if (loaded_) return;
  loaded_ = true;
  sqlite3* db = nullptr;
  if (sqlite3_open_v2(database_.c_str(), &db, SQLITE_OPEN_READONLY, nullptr) != SQLITE_OK) {
    logLine("geocoder: cannot open " + database_.string() + ": " + sqlite3_errmsg(db));
    sqlite3_close(db);
    return;
  }
  sqlite3_stmt* statement = nullptr;
  // Without the areas table the centres still name the city, only not its province.
  if (sqlite3_prepare_v2(db, kCentresWithProvince, -1, &statement, nullptr) != SQLITE_OK &&
      sqlite3_prepare_v2(db, kCentresOnly, -1, &statement, nullptr) != SQLITE_OK) {
    logLine("geocoder: no city_centres in " + database_.string() + ": " + sqlite3_errmsg(db));
    sqlite3_close(db);
    return;
  }
  while (sqlite3_step(statement) == SQLITE_ROW) {
    if (!isNumber(statement, 2) || !isNumber(statement, 3)) continue;
    Centre centre{{columnText(statement, 0), columnText(statement, 1)},
                  {sqlite3_column_double(statement, 2), sqlite3_column_double(statement, 3)}};
    if (centre.placemark.locality.empty()) continue;
    if (isPlaceholderCityName(centre.placemark.locality)) centre.placemark.locality.clear();
    centres_.push_back(std::move(centre));
  }
  sqlite3_finalize(statement);
  sqlite3_close(db);
}

std::optional<Placemark> NearestCityGeocoder::reverseGeocode(Coordinate wgs) {
  std::lock_guard lock(mutex_);
  loadOnce();
  const Centre* nearest = nullptr;
  double best = std::numeric_limits<double>::infinity();
  for (const Centre& centre : centres_) {
    const double d = greatCircleDistance(wgs, centre.position);
    if (d < best) {  // the first of equally near centres wins; NaN never does
      best = d;
      nearest = &centre;
    }
  }
  if (nearest == nullptr || best > kMaximumDistanceMeters) return std::nullopt;
  return nearest->placemark;
}

std::size_t NearestCityGeocoder::centreCount() {
  std::lock_guard lock(mutex_);
  loadOnce();
  return centres_.size();
}

}  // namespace qmv
