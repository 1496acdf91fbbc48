#include "platform/linux/nearest_city_geocoder.h"

#include <cmath>
#include <limits>

#include "core/common/area_texts.h"
#include "core/common/great_circle.h"
#include "core/common/log.h"
#include "core/sqlite/sqlite_database.h"
#include "platform/file_locations.h"

namespace qmv {
namespace {

constexpr const char* kCentresWithProvince =
    "SELECT c.area_name AS city, p.area_name AS province, c.latitude AS latitude, c.longitude AS longitude "
    "FROM city_centres c LEFT JOIN areas a ON a.area_id = c.area_id LEFT JOIN areas p ON p.area_id = a.parent_id";
constexpr const char* kCentresOnly =
    "SELECT area_name AS city, NULL AS province, latitude, longitude FROM city_centres";

// Names the national area code list gives the city level of municipalities and of
// counties under a province. They name no city, so the placemark leaves its locality
// empty and readers take the province (for a municipality, the city itself).
bool isPlaceholderCityName(const std::string& name) {
  return name == kCityDistricts || name == kCounties || name == kDirectlyGoverned || name == kRegionDirectlyGoverned;
}

// A column as text, as SQLite would convert it: numbers in their decimal form, NULL as "".
std::string columnText(const Json& row, const char* column) {
  const auto it = row.find(column);
  if (it == row.end()) return {};
  if (it->is_string()) return it->get<std::string>();
  if (it->is_number_integer()) return std::to_string(it->get<std::int64_t>());
  if (it->is_binary()) return std::string(it->get_binary().begin(), it->get_binary().end());
  return it->is_number() ? dumpJson(*it) : std::string();
}

std::optional<double> columnNumber(const Json& row, const char* column) {
  const auto it = row.find(column);
  if (it == row.end() || !it->is_number()) return std::nullopt;
  return it->get<double>();
}

}  // namespace

NearestCityGeocoder::NearestCityGeocoder(std::filesystem::path areaDatabase) : database_(std::move(areaDatabase)) {}

std::shared_ptr<NearestCityGeocoder> NearestCityGeocoder::fromResources(const FileLocations& files) {
  return std::make_shared<NearestCityGeocoder>(files.resourceDirectory() / "area.db");
}

void NearestCityGeocoder::loadOnce() {
  if (loaded_) return;
  loaded_ = true;
  auto db = SQLiteDatabase::atPath(database_, SQLiteDatabase::Mode::kReadOnly);
  if (const Status opened = db.openDatabase(); !opened.ok()) {
    logLine("geocoder: cannot open " + database_.string() + ": " + opened.message());
    return;
  }
  // Without the areas table the centres still name the city, only not its province.
  auto rows = db.getRowsForQuery(kCentresWithProvince);
  if (!rows.ok()) rows = db.getRowsForQuery(kCentresOnly);
  if (!rows.ok()) {
    logLine("geocoder: no city_centres in " + database_.string() + ": " + rows.status().message());
    return;
  }
  for (const Json& row : *rows) {
    const auto latitude = columnNumber(row, "latitude");
    const auto longitude = columnNumber(row, "longitude");
    if (!latitude || !longitude) continue;
    Centre centre{{columnText(row, "city"), columnText(row, "province")}, {*latitude, *longitude}};
    if (centre.placemark.locality.empty()) continue;
    if (isPlaceholderCityName(centre.placemark.locality)) centre.placemark.locality.clear();
    centres_.push_back(std::move(centre));
  }
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
