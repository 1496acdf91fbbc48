#pragma once
// Names of places that the client itself writes, rather than reads from the area data.
namespace qmv {

// The city used when none was chosen or the chosen one is unknown.
inline constexpr const char* kDefaultCity = "临沂市";

// Names the area data gives to groups of counties rather than to a city.
inline constexpr const char* kDirectlyGoverned = "省直辖县级行政单位";
inline constexpr const char* kRegionDirectlyGoverned = "自治区直辖县级行政单位";
inline constexpr const char* kCityDistricts = "市辖区";
inline constexpr const char* kCounties = "县";

}  // namespace qmv
