#pragma once
// One store, as listed by search, home and map and shown on the store screen. A plain
// value holder: scalars are text as sent (see strForKey), never validated when built;
// the position arrives in BD-09 as "coordinate", longitude first.
#include <optional>
#include <string>
#include <vector>

#include "core/common/base_model.h"
#include "core/common/coordinate.h"
#include "core/common/json.h"
#include "features/discovery/activity_model.h"

namespace qmv {

class TextMeasurer;

class StoreInfoModel : public BaseModel {
 public:
  StoreInfoModel() = default;
  // Reads one JSON object; anything else gives a record of empty texts.
  explicit StoreInfoModel(const Json& dic);

  // One record per element of `array`, in order; a non-array gives none.
  static std::vector<StoreInfoModel> listWithArray(const Json& array);

  std::vector<ActivityModel> activityList;  // "commodityList", only when it is an array
  std::string storeId;
  std::vector<std::string> imgURLList;  // "imageURL" split at every "|"
  std::string storeName;
  std::string address;
  std::string content;
  std::string title;
  std::string time;
  std::string phone;
  std::string favorite;
  std::string price;
  std::string shopPrice;
  std::string mark;
  std::string star;
  std::string num;
  std::string starNum;
  std::string isFirst;
  // BD-09, from "coordinate" = "longitude,latitude"; both unset unless it has exactly
  // one comma.
  std::optional<std::string> longitude;
  std::optional<std::string> latitude;
  double addressHeight = 0;

  // Recomputes addressHeight: 0 for an empty address; else the address measured in
  // 14-point text wrapped to (screen width - 15 - 32.5 - 3), raised to 32.5 when lower,
  // otherwise padded by 10.
  void setAddressHeight(const TextMeasurer& measurer);

  // The one reading of the position for every screen (distance, map pins, the store's
  // map, the route): both texts set and each a finite number once surrounding blanks
  // are dropped ("118.35, 35.06" counts) and on the globe; BD-09. nullopt otherwise.
  std::optional<Coordinate> coordinate() const;

  // Distance from the member to the store for a row: "--km" without a member position;
  // else the store's position taken BD-09 -> GCJ-02 -> WGS-84 and the great-circle
  // distance d as "%.2fm" below 1000 m, "%.2fkm" of d/1000 from there. A store without
  // a coordinate() is measured from 0,0, as a numeric reading of no text gives; a
  // position off the globe gives "--km".
  std::string distanceText(std::optional<Coordinate> userLocationWgs) const;

  // "￥" + price.
  std::string priceText() const;
  // "门市价:￥" + shopPrice.
  std::string shopPriceText() const;
  // "已售" + num + "份".
  std::string soldText() const;
};

}  // namespace qmv
