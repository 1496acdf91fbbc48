#include "features/discovery/store_info_model.h"

#include <charconv>
#include <cmath>
#include <cstdlib>
#include <cstdio>

#include "core/common/fast_json.h"
#include "features/discovery/detail/records_in_place.h"
#include "features/discovery/discovery_texts.h"
#include "features/discovery/location_converter.h"
#include "platform/text_measurer.h"

namespace qmv {
namespace {

constexpr double kFontPointSize = 14.0;
constexpr double kLeftMargin = 15.0;
constexpr double kIconWidth = 32.5;
constexpr double kRightMargin = 3.0;
constexpr double kMinimumAddressHeight = 32.5;
constexpr double kAddressPadding = 10.0;

std::vector<std::string> split(const std::string& text, char separator) {
  std::vector<std::string> parts;
  std::size_t start = 0;
  for (;;) {
    const std::size_t at = text.find(separator, start);
    parts.push_back(text.substr(start, at - start));
    if (at == std::string::npos) return parts;
    start = at + 1;
  }
}

// `text` as a finite number, blanks around it allowed; nullopt for anything else.
std::optional<double> numberIn(const std::optional<std::string>& text) {
  if (!text) return std::nullopt;
  constexpr const char* kBlanks = " \t\r\n";
  const auto first = text->find_first_not_of(kBlanks);
  if (first == std::string::npos) return std::nullopt;
  const auto last = text->find_last_not_of(kBlanks);
  const char* begin = text->data() + first;
  const char* end = text->data() + last + 1;
  if (*begin == '+') ++begin;
  double value = 0;
  const auto result = std::from_chars(begin, end, value);
  if (result.ec != std::errc() || result.ptr != end || !std::isfinite(value)) return std::nullopt;
  return value;
}

// The keys read as text, with the member each fills.
struct TextKey {
  std::string_view key;
  std::string StoreInfoModel::*field;
};
constexpr TextKey kTextKeys[] = {
    {"storeId", &StoreInfoModel::storeId},     {"storeName", &StoreInfoModel::storeName},
    {"address", &StoreInfoModel::address},     {"content", &StoreInfoModel::content},
    {"title", &StoreInfoModel::title},         {"time", &StoreInfoModel::time},
    {"phone", &StoreInfoModel::phone},         {"favorite", &StoreInfoModel::favorite},
    {"price", &StoreInfoModel::price},         {"shopPrice", &StoreInfoModel::shopPrice},
    {"mark", &StoreInfoModel::mark},           {"star", &StoreInfoModel::star},
    {"num", &StoreInfoModel::num},             {"starNum", &StoreInfoModel::starNum},
    {"isFirst", &StoreInfoModel::isFirst},
};

ActivityModel activityOf(const Json& dic) { return ActivityModel(dic); }
ActivityModel activityOf(fastjson::Element dic) { return detail::activityIn(dic); }

// One pass over the members, a later one overwriting an earlier one under the same key.
template <typename Dict>
void read(StoreInfoModel& model, const Dict& dic) {
  std::string imageURL;
  std::string coordinate;
  if (fastjson::isObject(dic)) {
    fastjson::forEachMember(dic, [&](std::string_view key, const auto& value) {
      for (const TextKey& text : kTextKeys) {
        if (text.key == key) {
          model.*text.field = fastjson::textOf(value);
          return;
        }
      }
      if (key == "imageURL") {
        imageURL = fastjson::textOf(value);
      } else if (key == "coordinate") {
        coordinate = fastjson::textOf(value);
      } else if (key == "commodityList") {
        model.activityList.clear();
        if (!fastjson::isArray(value)) return;
        model.activityList.reserve(fastjson::sizeOf(value));
        fastjson::forEachElement(value, [&model](const auto& element) { model.activityList.push_back(activityOf(element)); });
      }
    });
  }
  model.imgURLList = split(imageURL, '|');
  std::vector<std::string> parts = split(coordinate, ',');
  if (parts.size() == 2) {
    model.longitude = std::move(parts[0]);
    model.latitude = std::move(parts[1]);
  }
}

}  // namespace

StoreInfoModel::StoreInfoModel(const Json& dic) : BaseModel(dic) { read(*this, dic); }

StoreInfoModel detail::storeIn(fastjson::Element dic) {
  StoreInfoModel model;
  read(model, dic);
  return model;
}

std::vector<StoreInfoModel> StoreInfoModel::listWithArray(const Json& array) {
  return modelsWithArray<StoreInfoModel>(array);
}

void StoreInfoModel::setAddressHeight(const TextMeasurer& measurer) {
  if (address.empty()) {
    addressHeight = 0;
    return;
  }
  const double width = measurer.screenWidth() - kLeftMargin - kIconWidth - kRightMargin;
  const double measured = measurer.measure(address, kFontPointSize, width);
  addressHeight = measured < kMinimumAddressHeight ? kMinimumAddressHeight : measured + kAddressPadding;
}

std::optional<Coordinate> StoreInfoModel::coordinate() const {
  const auto lat = numberIn(latitude);
  const auto lon = numberIn(longitude);
  // A position off the globe is as unplaceable as none.
  if (!lat || !lon || std::fabs(*lat) > 90 || std::fabs(*lon) > 180) return std::nullopt;
  return Coordinate{*lat, *lon};
}

std::string StoreInfoModel::distanceText(std::optional<Coordinate> userLocationWgs) const {
  if (!userLocationWgs) return discovery_texts::kNoDistance;
  // A position off the globe (or not a number) from the server has no distance to print;
  // unreadable text reads as 0, as a numeric reading of text gives.
  const auto offGlobe = [](const std::optional<std::string>& text, double limit) {
    return text && !(std::fabs(std::strtod(text->c_str(), nullptr)) <= limit);
  };
  if (offGlobe(latitude, 90) || offGlobe(longitude, 180)) return discovery_texts::kNoDistance;
  const Coordinate storeBd = coordinate().value_or(Coordinate{0, 0});
  const Coordinate storeWgs =
      LocationConverter::transformFromGCJToWGS(LocationConverter::transformFromBaiduToGCJ(storeBd));
  const double d = LocationConverter::distanceInMeters(*userLocationWgs, storeWgs);
  char text[64];  // a great-circle distance is at most about 20015 km
  if (d < 1000) {
    std::snprintf(text, sizeof text, discovery_texts::kMetresFormat, d);
  } else {
    std::snprintf(text, sizeof text, discovery_texts::kKilometresFormat, d / 1000);
  }
  return text;
}

std::string StoreInfoModel::priceText() const { return discovery_texts::kStorePricePrefix + price; }

std::string StoreInfoModel::shopPriceText() const { return discovery_texts::kStoreShopPricePrefix + shopPrice; }

std::string StoreInfoModel::soldText() const {
  return discovery_texts::kSoldPrefix + num + discovery_texts::kSoldSuffix;
}

}  // namespace qmv
