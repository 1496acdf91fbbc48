// A store's comments and the member's own ratings against a scripted server: what each
// sends (the comments go without the session), the star filter, the count line, a screen
// without a store, and where a rating leads.
#include <gtest/gtest.h>

#include "core/request/net_api_test_support.h"
#include "features/discovery/my_grade_view_controller.h"
#include "features/discovery/user_commit_view_controller.h"

namespace qmv {
namespace {

using ReviewScreensTest = testsupport::ApiServerTest;

TEST_F(ReviewScreensTest, CommentsFilterByStarWithTheirCountAndNeedAStore) {
  logIn("S1");
  UserCommitViewController screen("7");
  answer("getRemarkMeByUser", R"({"success":"0","data":{"count":23,"dataList":[
      {"userName":"138****0001","nickName":"张三","star":"5","content":"好","storeId":"7"},{"star":"2"}]}})");
  EXPECT_EQ(load(screen, [&] { screen.refresh(); }), true);
  EXPECT_EQ(last().endpoint, "getRemarkMeByUser");
  EXPECT_EQ(last().arguments, (testsupport::Arguments{{"storeId", "7"}, {"page", "1"}, {"star", "0"}}));
  EXPECT_EQ(screen.countText(), "23条评论");
  ASSERT_EQ(screen.rows().size(), 2u);
  EXPECT_EQ(UserCommitViewController::starsText(screen.rows()[0].star), "★★★★★");

  answer("getRemarkMeByUser", R"({"success":"0","data":{"count":"many","dataList":[{"star":"4"}]}})");
  EXPECT_FALSE(screen.selectStar(6));
  EXPECT_EQ(load(screen, [&] { EXPECT_TRUE(screen.selectStar(4)); }), true);
  EXPECT_EQ(last().arguments, (testsupport::Arguments{{"storeId", "7"}, {"page", "1"}, {"star", "4"}}));
  EXPECT_EQ(screen.countText(), "") << "a count that is not a number is not shown";
  EXPECT_EQ(screen.rows().size(), 1u);
  EXPECT_EQ(UserCommitViewController::starFilters()[screen.star()], "4星");
  for (const char* bad : {"", "6", "-1", "10", "4.5"}) EXPECT_EQ(UserCommitViewController::starsText(bad), "") << bad;
  EXPECT_EQ(UserCommitViewController::starsText("0"), "☆☆☆☆☆");

  const std::size_t sent = received().size();
  UserCommitViewController noStore("");
  EXPECT_EQ(load(noStore, [&] { noStore.refresh(); }), false);
  EXPECT_EQ(received().size(), sent) << "no request without a store id";
}

TEST_F(ReviewScreensTest, MyRatingsAreTheMembersAndARowOpensItsStore) {
  logIn("S1");
  navigator_->push(discovery_texts::kMyRatingsScreen);
  MyGradeViewController screen;
  answer("getMyRemark", R"({"success":"0","data":{"dataList":[
      {"star":"4","content":"不错","storeId":"12","storeName":"老街烧烤"},{"star":"5","storeId":""}]}})");
  EXPECT_EQ(load(screen, [&] { screen.refresh(); }), true);
  EXPECT_EQ(last().arguments, (testsupport::Arguments{{"sessionId", "S1"}, {"page", "1"}}));
  ASSERT_EQ(screen.rows().size(), 2u);
  EXPECT_TRUE(MyGradeViewController::leadsToStore(screen.rows()[0]));
  EXPECT_FALSE(MyGradeViewController::leadsToStore(screen.rows()[1])) << "a rating without a store leads nowhere";
  EXPECT_FALSE(screen.openRow(1));
  EXPECT_FALSE(screen.openRow(2));
  EXPECT_EQ(topName(), discovery_texts::kMyRatingsScreen);
  ASSERT_TRUE(screen.openRow(0));
  const Screen store = navigator_->topScreen().value_or(Screen{});
  EXPECT_EQ(store.name, discovery_texts::kStoreDetailScreen);
  EXPECT_EQ(strForKey(store.payload, "storeId"), "12");
  EXPECT_EQ(strForKey(store.payload, "storeName"), "老街烧烤");
}

}  // namespace
}  // namespace qmv
