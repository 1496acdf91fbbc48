#pragma once
// One offer sold by a store ("commodity" on the wire), as listed under a store and
// shown on the offer screen. A plain value holder: every scalar is text as sent (see
// strForKey), nothing is validated when the record is built.
#include <optional>
#include <string>

#include "core/common/base_model.h"
#include "core/common/json.h"

namespace qmv {

class TextMeasurer;

class ActivityModel : public BaseModel {
 public:
  ActivityModel() = default;
  // Reads one JSON object; anything else gives a record of empty texts.
  explicit ActivityModel(const Json& dic);

  std::string commodityID;  // from "commodityId"
  std::string content;
  std::string name;
  std::string storeId;
  std::string storeName;
  std::string favorite;
  std::string storePhone;
  std::string storeAddress;
  std::string imageURL;  // one address, not split
  std::string nowPrice;
  std::string price;
  std::string num;
  std::string firstPrice;
  std::string isFirst;  // "0" means the member has bought before
  std::string hasImage;
  std::string descImage;
  std::string date;
  std::string time;
  // The raw values under "ruleList", "taocanList" and "remarkList", unchecked: absent
  // when the key is absent (readers treat that, and any non-array, as no entries).
  std::optional<Json> ruleList;
  std::optional<Json> packageList;  // the system's taocanList
  std::optional<Json> remarkList;
  double contentHeight = 0;

  // Recomputes contentHeight: 0 for an empty description, else the description's
  // height in 14-point text wrapped to (screen width - 30), with no minimum or padding.
  void setContentHeight(const TextMeasurer& measurer);

  // "¥" + firstPrice when the member buys for the first time (isFirst is not "0"),
  // else "¥" + nowPrice.
  std::string priceText() const;
  // Whether priceText is the first-purchase price.
  bool showsFirstPrice() const { return isFirst != "0"; }
  // "首单价" or "现价", after showsFirstPrice.
  const char* priceLabel() const;
  // priceLabel, a blank, priceText: the form every list and screen shows the price in.
  std::string labelledPriceText() const;
  // "原价:¥" + price.
  std::string originalPriceText() const;
  // "已售" + num + "份".
  std::string soldText() const;
};

}  // namespace qmv
