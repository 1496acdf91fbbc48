#include "features/discovery/activity_model.h"

#include "core/common/dictionary.h"
#include "features/discovery/discovery_texts.h"
#include "platform/text_measurer.h"

namespace qmv {
namespace {

constexpr double kFontPointSize = 14.0;
constexpr double kSideMargins = 30.0;

std::optional<Json> rawValue(const Json& dic, const char* key) {
  if (!dic.is_object()) return std::nullopt;
  const auto it = dic.find(key);
  if (it == dic.end()) return std::nullopt;
  return *it;
}

}  // namespace

ActivityModel::ActivityModel(const Json& dic)
    : BaseModel(dic),
      commodityID(strForKey(dic, "commodityId")),
      content(strForKey(dic, "content")),
      name(strForKey(dic, "name")),
      storeId(strForKey(dic, "storeId")),
      storeName(strForKey(dic, "storeName")),
      favorite(strForKey(dic, "favorite")),
      storePhone(strForKey(dic, "storePhone")),
      storeAddress(strForKey(dic, "storeAddress")),
      imageURL(strForKey(dic, "imageURL")),
      nowPrice(strForKey(dic, "nowPrice")),
      price(strForKey(dic, "price")),
      num(strForKey(dic, "num")),
      firstPrice(strForKey(dic, "firstPrice")),
      isFirst(strForKey(dic, "isFirst")),
      hasImage(strForKey(dic, "hasImage")),
      descImage(strForKey(dic, "descImage")),
      date(strForKey(dic, "date")),
      time(strForKey(dic, "time")),
      ruleList(rawValue(dic, "ruleList")),
      taocanList(rawValue(dic, "taocanList")),
      remarkList(rawValue(dic, "remarkList")) {}

void ActivityModel::setContentHeight(const TextMeasurer& measurer) {
  contentHeight =
      content.empty() ? 0 : measurer.measure(content, kFontPointSize, measurer.screenWidth() - kSideMargins);
}

std::string ActivityModel::priceText() const {
  return discovery_texts::kOfferPricePrefix + (isFirst != "0" ? firstPrice : nowPrice);
}

std::string ActivityModel::originalPriceText() const { return discovery_texts::kOfferOriginalPricePrefix + price; }

std::string ActivityModel::soldText() const {
  return discovery_texts::kSoldPrefix + num + discovery_texts::kSoldSuffix;
}

}  // namespace qmv
