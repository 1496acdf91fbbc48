// Bookmarks, messages and feedback against a scripted server: the arguments each sends,
// the two bookmark tabs paging on their own, the offer screen's bookmark, the unread marks
// and the reading sent once per appearance, and feedback's checks with their messages.
#include <gtest/gtest.h>

#include "core/request/net_api_test_support.h"
#include "features/discovery/my_favorite_view_controller.h"
#include "features/discovery/qx_activities_view_controller.h"
#include "features/member/feedback_view_controller.h"
#include "features/member/my_news_view_controller.h"

namespace qmv {
namespace {

class MemberPagesTest : public testsupport::ApiServerTest {
 protected:
  void SetUp() override {
    ApiServerTest::SetUp();
    logIn("S1");
  }
  // Runs `start` and waits for `slot`'s first call: its value.
  template <class Start>
  std::optional<bool> await(std::function<void(bool)>& slot, Start start) {
    std::optional<bool> value;
    slot = [&](bool v) {
      if (!value) value = v;
    };
    start();
    loop_->runUntil([&] { return value.has_value(); }, std::chrono::seconds(10));
    slot = nullptr;
    return value;
  }
  static std::string list(const Json& rows) { return Json{{"success", "0"}, {"data", {{"dataList", rows}}}}.dump(); }
};

TEST_F(MemberPagesTest, BookmarkTabsPageOnTheirOwnAndOpenTheirRows) {
  MyFavoriteViewController screen;
  answer("getMyFavorite", list({{{"storeId", "14"}, {"storeName", "老街烧烤"}}, {{"storeName", "无id"}}}));
  EXPECT_EQ(await(screen.stores().onLoaded, [&] { screen.viewWillAppear(); }), true);
  EXPECT_EQ(last().endpoint, "getMyFavorite");
  EXPECT_EQ(last().arguments, (testsupport::Arguments{{"sessionId", "S1"}, {"page", "1"}}));
  ASSERT_EQ(screen.stores().rows().size(), 2u);

  answer("getMyCommodityFavorite", list({{{"commodityId", "9"}, {"name", "双人套餐"}, {"favorite", "1"}}}));
  EXPECT_EQ(await(screen.offers().onLoaded, [&] { screen.selectTab(MyFavoriteViewController::Tab::Offers); }), true);
  EXPECT_EQ(last().endpoint, "getMyCommodityFavorite");
  EXPECT_EQ(screen.offers().rows()[0].commodityID, "9");
  EXPECT_EQ(screen.emptyText(), std::string("暂无收藏的活动"));
  answer("getMyCommodityFavorite", "", 500);
  EXPECT_EQ(await(screen.offers().onLoaded, [&] { screen.offers().loadMore(); }), false);
  EXPECT_EQ(last().arguments, (testsupport::Arguments{{"sessionId", "S1"}, {"page", "2"}}));
  EXPECT_EQ(screen.offers().pageNum(), 1) << "a failed page is asked for again";
  EXPECT_EQ(screen.offers().rows().size(), 1u);
  EXPECT_EQ(screen.stores().rows().size(), 2u) << "each tab keeps its own rows";

  ASSERT_TRUE(screen.openRow(0));
  EXPECT_EQ(topName(), "QXActivitiesViewController");
  EXPECT_EQ(strForKey(navigator_->topScreen()->payload, "commodityId"), "9");
  EXPECT_FALSE(screen.openRow(1));
  answer("getMyFavorite", list({{{"storeId", "14"}}, {{"storeName", "无id"}}}));
  EXPECT_EQ(await(screen.stores().onLoaded, [&] { screen.selectTab(MyFavoriteViewController::Tab::Stores); }), true);
  EXPECT_FALSE(screen.openRow(1)) << "a row without an id opens nothing";
  ASSERT_TRUE(screen.openRow(0));
  EXPECT_EQ(topName(), "QXRStoreDetailViewController");
  EXPECT_EQ(strForKey(navigator_->topScreen()->payload, "storeId"), "14");
}

TEST_F(MemberPagesTest, OfferBookmarkFollowsTheAnswer) {
  QXActivitiesViewController screen("7");
  answer("getCommodityDetailInfo", R"({"success":"0","data":{"commodityId":"7","name":"双人套餐","favorite":"0"}})");
  ASSERT_EQ(await(screen.onLoaded, [&] { screen.loadDetail(); }), true);
  EXPECT_EQ(screen.bookmarkStateText(), std::string("未收藏"));

  answer("postCollectCommodity", R"({"success":"0","data":{"favorite":"1"}})");
  EXPECT_EQ(await(screen.onBookmarked, [&] { screen.bookmark(); }), true);
  EXPECT_EQ(last().method, "POST");
  EXPECT_EQ(last().endpoint, "postCollectCommodity");
  EXPECT_EQ(last().arguments, (testsupport::Arguments{{"sessionId", "S1"}, {"commodityId", "7"}}));
  EXPECT_EQ(screen.bookmarkStateText(), std::string("已收藏"));

  // A refusal, or an answer without the state, leaves the state shown.
  answer("postCollectCommodity", R"({"success":"1","message":"活动不存在"})");
  EXPECT_EQ(await(screen.onBookmarked, [&] { screen.bookmark(); }), false);
  EXPECT_EQ(overlay_->statuses().back(), "活动不存在");
  answer("postCollectCommodity", R"({"success":"0","data":{}})");
  EXPECT_EQ(await(screen.onBookmarked, [&] { screen.bookmark(); }), true);
  EXPECT_EQ(screen.activity()->favorite, "1");
}

TEST_F(MemberPagesTest, MessagesKeepTheirMarksAndAreReadOncePerAppearance) {
  MyNewsViewController screen;
  answer("getMyMessage", list({{{"contact", "订单提醒"}, {"title", "不是标题"}, {"isRead", "0"}},
                               {{"contact", "欢迎加入"}, {"isRead", "1"}},
                               {{"contact", "活动通知"}, {"isRead", 0}},
                               {{"contact", "无状态"}}}));
  answer("getMyReadMessage", "", 500);
  EXPECT_EQ(await(screen.onMarkedRead, [&] { screen.viewWillAppear(); }), false);
  EXPECT_EQ(received()[0].endpoint, "getMyMessage");
  EXPECT_EQ(last().endpoint, "getMyReadMessage");
  EXPECT_EQ(last().arguments, (testsupport::Arguments{{"sessionId", "S1"}}));
  EXPECT_TRUE(overlay_->statuses().empty()) << "a failed reading says nothing";
  ASSERT_EQ(screen.rows().size(), 4u);
  EXPECT_EQ(screen.rows()[0].title, "订单提醒");
  EXPECT_TRUE(MyNewsViewController::isUnread(screen.rows()[0]));
  EXPECT_FALSE(MyNewsViewController::isUnread(screen.rows()[1]));
  EXPECT_TRUE(MyNewsViewController::isUnread(screen.rows()[2])) << "a number arrives as its text";
  EXPECT_FALSE(MyNewsViewController::isUnread(screen.rows()[3])) << "no state is not guessed unread";
  EXPECT_EQ(screen.unreadCount(), 2u);

  // Later pages and a pull to refresh in the same appearance send no second reading.
  std::optional<bool> loaded;
  screen.onLoaded = [&](bool c) { loaded = c; };
  screen.loadMore();
  loop_->runUntil([&] { return loaded.has_value(); }, std::chrono::seconds(10));
  loaded.reset();
  screen.refresh();
  loop_->runUntil([&] { return loaded.has_value(); }, std::chrono::seconds(10));
  loop_->runUntil([] { return false; }, std::chrono::milliseconds(100));
  EXPECT_EQ(sentTo("getMyReadMessage"), 1u);

  // The next appearance reads again; the marks stay, the badge clears.
  answer("getMyReadMessage", R"({"success":"0","data":{"count":"2"}})");
  EXPECT_EQ(await(screen.onMarkedRead, [&] { screen.viewWillAppear(); }), true);
  EXPECT_EQ(sentTo("getMyReadMessage"), 2u);
  EXPECT_TRUE(MyNewsViewController::isUnread(screen.rows()[0]));
  EXPECT_EQ(screen.unreadCount(), 0u);
}

TEST_F(MemberPagesTest, FeedbackChecksInOrderThenSendsTheTrimmedFieldsAndPops) {
  navigator_->push("MineViewController");
  navigator_->push("FeedbackViewController");
  FeedbackViewController screen;
  std::string most;
  for (int i = 0; i < 500; ++i) most += "好";
  const struct {
    std::string content, contact, refusal;
  } refused[] = {
      {"", "", "请输入反馈内容"},
      {" \n\t ", "qq", "请输入反馈内容"},
      {"好\xff", "", "反馈内容包含无法识别的字符"},
      {"好\x1b[2J", "", "反馈内容包含无法识别的字符"},
      {"好\xc2\x85", "", "反馈内容包含无法识别的字符"},
      {most + "好", "", "反馈内容不能超过500字"},
      {most, std::string(51, '1'), "联系方式不能超过50个字符"},
      {"好用", "a\x7f", "联系方式格式不正确"},
      {"好用", "a\nb", "联系方式格式不正确"},
  };
  for (const auto& r : refused) {
    screen.contentText = r.content;
    screen.contactText = r.contact;
    EXPECT_FALSE(screen.submitAction()) << r.refusal;
    EXPECT_EQ(overlay_->statuses().back(), r.refusal);
  }
  EXPECT_TRUE(received().empty());
  screen.contentText = "  " + most + "\n";
  EXPECT_EQ(screen.countText(), "500/500");

  answer("postFeedback", R"({"success":"1","message":"系统繁忙"})");
  screen.contentText = "第一行\n第二行";
  screen.contactText = "";
  EXPECT_EQ(await(screen.onFinished, [&] { ASSERT_TRUE(screen.submitAction()); }), false);
  EXPECT_EQ(last().arguments,
            (testsupport::Arguments{{"sessionId", "S1"}, {"concent", "第一行\n第二行"}, {"type", "0"}}));
  EXPECT_EQ(topName(), "FeedbackViewController") << "a refusal keeps the screen";

  answer("postFeedback", R"({"success":"0"})");
  screen.contentText = " \t好用\n";
  screen.contactText = std::string(" ") + std::string(50, '1') + " ";
  EXPECT_EQ(await(screen.onFinished,
                  [&] {
                    ASSERT_TRUE(screen.submitAction());
                    EXPECT_FALSE(screen.submitAction()) << "a second tap while sending does nothing";
                  }),
            true);
  EXPECT_EQ(last().method, "POST");
  EXPECT_EQ(last().endpoint, "postFeedback");
  EXPECT_EQ(last().arguments,
            (testsupport::Arguments{
                {"sessionId", "S1"}, {"concent", "好用"}, {"contact", std::string(50, '1')}, {"type", "0"}}));
  EXPECT_EQ(sentTo("postFeedback"), 2u);
  EXPECT_EQ(overlay_->statuses().back(), "提交成功,感谢您的反馈");
  EXPECT_EQ(topName(), "MineViewController");
}

}  // namespace
}  // namespace qmv
