#include "features/discovery/activity_model.h"

#include <gtest/gtest.h>

#include "platform/fixed_metrics_text_measurer.h"

namespace qmv {
namespace {

TEST(ActivityModelTest, ReadsFieldsAndKeepsRawOfferLists) {
  const ActivityModel offer(parseJson(R"({"commodityId":55,"commodityID":"wrong","name":"双人餐","nowPrice":"39.9",
    "price":"88","num":120,"firstPrice":"19.9","isFirst":"1","hasImage":"0","storeId":"9","date":"2026-12-31",
    "ruleList":[{"rule":"周末通用"}],"taocanList":{"title":"not a list"},"remarkList":null})"));
  EXPECT_EQ(offer.commodityID, "55");
  EXPECT_EQ(offer.name, "双人餐");
  EXPECT_EQ(offer.num, "120");
  EXPECT_EQ(offer.hasImage, "0");
  EXPECT_EQ(offer.date, "2026-12-31");
  EXPECT_EQ(offer.content, "");
  ASSERT_TRUE(offer.ruleList);
  EXPECT_EQ((*offer.ruleList)[0]["rule"], "周末通用");
  ASSERT_TRUE(offer.packageList);  // kept as sent, unchecked
  EXPECT_TRUE(offer.packageList->is_object());
  ASSERT_TRUE(offer.remarkList);
  EXPECT_TRUE(offer.remarkList->is_null());

  const ActivityModel bare(parseJson(R"({"commodityId":"1"})"));
  EXPECT_FALSE(bare.ruleList);
  EXPECT_FALSE(bare.packageList);
  EXPECT_FALSE(bare.remarkList);
  EXPECT_FALSE(ActivityModel(Json("text")).ruleList);
}

TEST(ActivityModelTest, PriceTextsFollowTheFirstPurchaseFlag) {
  ActivityModel offer(parseJson(R"({"nowPrice":"39.9","price":"88","num":"7","firstPrice":"19.9","isFirst":"0"})"));
  EXPECT_EQ(offer.priceText(), "¥39.9");
  EXPECT_EQ(offer.originalPriceText(), "原价:¥88");
  EXPECT_EQ(offer.soldText(), "已售7份");
  offer.isFirst = "1";
  EXPECT_EQ(offer.priceText(), "¥19.9");
  offer.isFirst = "";  // anything but "0" is a first purchase
  EXPECT_EQ(offer.priceText(), "¥19.9");
}

TEST(ActivityModelTest, ContentHeightHasNoMinimumOrPadding) {
  // Fixed metrics at 14 points: 14 per CJK character, 16.8 per line; the description
  // wraps to 375 - 30 = 345, which holds 24 characters.
  FixedMetricsTextMeasurer measurer(1.2);
  ActivityModel offer;
  offer.setContentHeight(measurer);
  EXPECT_EQ(offer.contentHeight, 0.0);
  offer.content = "好";
  offer.setContentHeight(measurer);
  EXPECT_DOUBLE_EQ(offer.contentHeight, 16.8);
  offer.content = "一二三四五六七八九十一二三四五六七八九十一二三四五";
  offer.setContentHeight(measurer);
  EXPECT_DOUBLE_EQ(offer.contentHeight, 2 * 16.8);
  measurer.setScreenWidth(500);
  offer.setContentHeight(measurer);
  EXPECT_DOUBLE_EQ(offer.contentHeight, 16.8);
}

}  // namespace
}  // namespace qmv
