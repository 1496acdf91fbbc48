#pragma once
// An offline ReverseGeocoder: the placemark of the nearest city centre of the shipped
// area database. Table `city_centres` (area_id, area_name, latitude, longitude in
// WGS-84) gives the centres; the city's province comes from table `areas` through the
// city's parent_id (left empty when that table or row is missing). A placeholder city
// name ("市辖区" of a municipality, "县", ...) gives an empty locality. The table is
// read once, on the first look-up.
#include <filesystem>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "platform/reverse_geocoder.h"

namespace qmv {

class FileLocations;

class NearestCityGeocoder : public ReverseGeocoder {
 public:
  // Positions further than this from every centre are not in any known city.
  static constexpr double kMaximumDistanceMeters = 500000.0;

  explicit NearestCityGeocoder(std::filesystem::path areaDatabase);

  // The geocoder over the shipped "area.db" of files.resourceDirectory().
  static std::shared_ptr<NearestCityGeocoder> fromResources(const FileLocations& files);

  // nullopt when the database cannot be read, holds no usable centre, or the nearest
  // centre is further than kMaximumDistanceMeters. Thread-safe.
  std::optional<Placemark> reverseGeocode(Coordinate wgs) override;

  // Number of usable centres read (loads the table when not loaded yet).
  std::size_t centreCount();

 private:
  struct Centre {
    Placemark placemark;
    Coordinate position;
  };

  // REQUIRES: mutex_ held.
  void loadOnce();

  std::filesystem::path database_;
  std::mutex mutex_;
  bool loaded_ = false;
  std::vector<Centre> centres_;
};

}  // namespace qmv
