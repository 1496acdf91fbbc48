// The member tab's unread badge against a scripted server: page 1 counted silently, a
// failure keeping the count, nothing sent signed out.
#include "features/member/unread_message_badge.h"

#include <gtest/gtest.h>

#include "core/request/net_api_test_support.h"
#include "core/session/global_data.h"

namespace qmv {
namespace {

class UnreadMessageBadgeTest : public testsupport::ApiServerTest {
 protected:
  // Shows the tab and waits until the asking has ended.
  void appear(UnreadMessageBadge& badge) {
    bool changed = false;
    badge.onChange = [&] { changed = true; };
    badge.viewWillAppear();
    loop_->runUntil([&] { return changed || !badge.isLoading(); }, std::chrono::seconds(10));
    badge.onChange = nullptr;
  }
  static std::string list(const Json& rows) { return Json{{"success", "0"}, {"data", {{"dataList", rows}}}}.dump(); }
};

TEST_F(UnreadMessageBadgeTest, CountsPageOneSilentlyKeepsItOnFailureAndSendsNothingSignedOut) {
  UnreadMessageBadge badge;
  appear(badge);
  EXPECT_TRUE(received().empty()) << "signed out";
  EXPECT_EQ(badge.badgeText(), "");

  logIn("S1");
  answer("getMyMessage", list({{{"isRead", "0"}}, {{"isRead", "1"}}, {{"isRead", "0"}}, {}}));
  appear(badge);
  ASSERT_EQ(received().size(), 1u);
  EXPECT_EQ(last().endpoint, "getMyMessage");
  EXPECT_EQ(last().arguments, (testsupport::Arguments{{"sessionId", "S1"}, {"page", "1"}}));
  EXPECT_EQ(badge.unreadCount(), 2u);
  EXPECT_EQ(badge.badgeText(), "2");

  answer("getMyMessage", "", 500);
  appear(badge);
  EXPECT_EQ(badge.unreadCount(), 2u);
  EXPECT_TRUE(overlay_->statuses().empty()) << "the badge says nothing of a failure";

  GlobalData::sharedInstance().setSelfInfo(nullptr);
  appear(badge);
  EXPECT_EQ(badge.unreadCount(), 0u);
  EXPECT_EQ(received().size(), 2u);
}

}  // namespace
}  // namespace qmv
