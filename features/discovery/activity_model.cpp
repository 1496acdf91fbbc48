#include "features/discovery/activity_model.h"

#include "core/common/fast_json.h"
#include "features/discovery/detail/records_in_place.h"
#include "features/discovery/discovery_texts.h"
#include "platform/text_measurer.h"

namespace qmv {
namespace {

constexpr double kFontPointSize = 14.0;
constexpr double kSideMargins = 30.0;

// The keys read as text, with the member each fills.
struct TextKey {
  std::string_view key;
  std::string ActivityModel::*field;
};
constexpr TextKey kTextKeys[] = {
    {"commodityId", &ActivityModel::commodityID}, {"content", &ActivityModel::content},
    {"name", &ActivityModel::name},               {"storeId", &ActivityModel::storeId},
    {"storeName", &ActivityModel::storeName},     {"favorite", &ActivityModel::favorite},
    {"storePhone", &ActivityModel::storePhone},   {"storeAddress", &ActivityModel::storeAddress},
    {"imageURL", &ActivityModel::imageURL},       {"nowPrice", &ActivityModel::nowPrice},
    {"price", &ActivityModel::price},             {"num", &ActivityModel::num},
    {"firstPrice", &ActivityModel::firstPrice},   {"isFirst", &ActivityModel::isFirst},
    {"hasImage", &ActivityModel::hasImage},       {"descImage", &ActivityModel::descImage},
    {"date", &ActivityModel::date},               {"time", &ActivityModel::time},
};

// One pass over the members, a later one overwriting an earlier one under the same key.
template <typename Dict>
void read(ActivityModel& model, const Dict& dic) {
  if (!fastjson::isObject(dic)) return;
  fastjson::forEachMember(dic, [&model](std::string_view key, const auto& value) {
    for (const TextKey& text : kTextKeys) {
      if (text.key == key) {
        model.*text.field = fastjson::textOf(value);
        return;
      }
    }
    if (key == "ruleList") {
      model.ruleList = fastjson::toJson(value);
    } else if (key == "taocanList") {
      model.packageList = fastjson::toJson(value);
    } else if (key == "remarkList") {
      model.remarkList = fastjson::toJson(value);
    }
  });
}

}  // namespace

ActivityModel::ActivityModel(const Json& dic) : BaseModel(dic) { read(*this, dic); }

ActivityModel detail::activityIn(fastjson::Element dic) {
  ActivityModel model;
  read(model, dic);
  return model;
}

void ActivityModel::setContentHeight(const TextMeasurer& measurer) {
  contentHeight =
      content.empty() ? 0 : measurer.measure(content, kFontPointSize, measurer.screenWidth() - kSideMargins);
}

std::string ActivityModel::priceText() const {
  return discovery_texts::kOfferPricePrefix + (showsFirstPrice() ? firstPrice : nowPrice);
}

const char* ActivityModel::priceLabel() const {
  return showsFirstPrice() ? discovery_texts::kFirstPriceLabel : discovery_texts::kNowPriceLabel;
}

std::string ActivityModel::labelledPriceText() const { return std::string(priceLabel()) + " " + priceText(); }

std::string ActivityModel::originalPriceText() const { return discovery_texts::kOfferOriginalPricePrefix + price; }

std::string ActivityModel::soldText() const {
  return discovery_texts::kSoldPrefix + num + discovery_texts::kSoldSuffix;
}

}  // namespace qmv
