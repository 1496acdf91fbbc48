#include "features/discovery/news_info_model.h"

#include <gtest/gtest.h>

#include "features/discovery/resource_model.h"
#include "features/discovery/search_condition_model.h"

namespace qmv {
namespace {

TEST(SmallRecordsTest, ReadTheirOwnKeys) {
  const NewsInfoModel news(parseJson(R"({"title":"ignored","contact":"系统通知","time":"2026-01-01","content":"hi",
    "isRead":0})"));
  EXPECT_EQ(news.title, "系统通知");
  EXPECT_EQ(news.time, "2026-01-01");
  EXPECT_EQ(news.content, "hi");
  EXPECT_EQ(news.isRead, "0");

  const ResourceModel banner(parseJson(R"({"title":"春节","url":"http://x/p","imageURL":"http://x/a.png|b"})"));
  EXPECT_EQ(banner.title, "春节");
  EXPECT_EQ(banner.URL, "http://x/p");
  EXPECT_EQ(banner.imgURL, "http://x/a.png|b");  // not split, unlike a store's
  EXPECT_EQ(ResourceModel(Json()).URL, "");

  SearchConditionModel condition;
  EXPECT_FALSE(condition.hasKeyword());
  condition.keyword = "";
  EXPECT_FALSE(condition.hasKeyword());
  condition.keyword = "火锅";
  EXPECT_TRUE(condition.hasKeyword());
}

}  // namespace
}  // namespace qmv
