// The bookmarks, messages and feedback commands as separate starts of the application
// against the embedded sandbox: bookmarks toggled on the store and offer screens persist
// and show on their tab, unread messages are marked once and then read, and feedback is
// sent or refused.
#include <gtest/gtest.h>

#include "core/common/json.h"
#include "platform/testing/temp_home.h"
#include "tests/cli_runner.h"

namespace qmv {
namespace {

class MemberPagesCommandsTest : public testsupport::DemoMemberCliTest {
 protected:
  static std::size_t count(const std::string& text, const std::string& part) {
    std::size_t n = 0;
    for (auto at = text.find(part); at != std::string::npos; at = text.find(part, at + part.size())) ++n;
    return n;
  }
};

TEST_F(MemberPagesCommandsTest, BookmarksToggleOnTheirScreensPersistAndShowOnTheirTab) {
  const auto stores = run({"favorites"});
  ASSERT_EQ(stores.status, 0) << stores.out << stores.err;
  EXPECT_TRUE(stores.has("我的收藏 - 商家\n")) << stores.out;
  EXPECT_EQ(data({"favorites"})["stores"].size(), 5u);
  const Json offers = data({"favorites", "--offers"});
  EXPECT_EQ(offers["tab"], "offers");
  ASSERT_EQ(offers["offers"].size(), 4u);
  EXPECT_EQ(offers["offers"][0]["commodityId"], "3");

  const auto added = run({"bookmark", "store", "6"});
  ASSERT_EQ(added.status, 0) << added.out << added.err;
  EXPECT_TRUE(added.has(" 已收藏\n")) << added.out;
  const Json six = data({"favorites"})["stores"];
  ASSERT_EQ(six.size(), 6u);
  EXPECT_EQ(six[0]["storeId"], "6") << "the newest bookmark first";
  const Json removed = data({"bookmark", "store", "6"});
  EXPECT_EQ(removed["state"], "未收藏");
  EXPECT_EQ(removed["favorite"], "0");
  EXPECT_EQ(data({"favorites"})["stores"].size(), 5u);

  EXPECT_EQ(data({"bookmark", "offer", "3"})["state"], "未收藏");
  EXPECT_EQ(data({"favorites", "--offers"})["offers"].size(), 3u);
  EXPECT_EQ(data({"bookmark", "offer", "3"})["state"], "已收藏");

  const auto missing = run({"bookmark", "store", "4242"});
  EXPECT_EQ(missing.status, 1);
  EXPECT_TRUE(missing.has("商家不存在")) << missing.out;
  EXPECT_EQ(run({"bookmark", "shop", "1"}).status, 2);
  EXPECT_EQ(run({"favorites", "--page", "0"}).status, 2);
}

TEST_F(MemberPagesCommandsTest, MessagesMarkTheUnreadOnceThenTheyAreRead) {
  const auto first = run({"messages"});
  ASSERT_EQ(first.status, 0) << first.out << first.err;
  EXPECT_TRUE(first.has("我的消息\n  [未读] 活动通知  ")) << first.out;
  EXPECT_EQ(count(first.out, "[未读]"), 3u) << first.out;
  const auto again = run({"messages"});
  EXPECT_EQ(count(again.out, "[未读]"), 0u) << again.out;
  const Json second = data({"messages", "--page", "2"});
  EXPECT_EQ(second["page"], 2);
  EXPECT_EQ(second["messages"].size(), 6u);
  const auto beyond = run({"messages", "--page", "4"});
  EXPECT_EQ(beyond.status, 0);
  EXPECT_TRUE(beyond.said("the list ends before page 4")) << beyond.err;

  TempHome signedOut;
  EXPECT_EQ(testsupport::runQmv(signedOut.home(), {"messages"}).status, 1);
}

TEST_F(MemberPagesCommandsTest, FeedbackIsCheckedBeforeItIsSent) {
  std::string most;
  for (int i = 0; i < 500; ++i) most += "好";
  const auto sent = run({"feedback", most, "--contact", "qq 12345"});
  ASSERT_EQ(sent.status, 0) << sent.out << sent.err;
  EXPECT_TRUE(sent.has("意见反馈 (500/500)\n提交成功,感谢您的反馈\n")) << sent.out;

  // The checks are the screen's own test's; a refused form fails the run with its message.
  const auto tooLong = run({"feedback", most + "!"});
  EXPECT_EQ(tooLong.status, 1);
  EXPECT_TRUE(tooLong.has("反馈内容不能超过500字")) << tooLong.out;
  EXPECT_EQ(run({"feedback"}).status, 2);
}

}  // namespace
}  // namespace qmv
