// The contacts screens against scripted answers: paging and the end of the list, the
// header counts, and the way from a first-level row to that contact's own list.
#include <gtest/gtest.h>

#include "core/request/net_api_test_support.h"
#include "features/referral/my_contact_view_controller.h"
#include "features/referral/my_second_contact_view_controller.h"

namespace qmv {
namespace {

using testsupport::Arguments;

using ContactListTest = testsupport::ApiServerTest;

TEST_F(ContactListTest, PagesAppendRetryAFailedPageAndEndOnAnEmptyOne) {
  logIn("S1");
  answer("getMyContacts",
         R"({"success":"0","data":{"oneContact":"12","dataList":[{"name":"甲","phone":"13800000001","num":"2",)"
         R"("time":"2016-05-01","imgUrl":"http://x/a.png"},{"name":"乙","phone":"13800000002","num":"0"}]}})");
  MyContactViewController first;
  first.refresh();
  ASSERT_EQ(await(first), true);
  EXPECT_EQ(last().arguments, (Arguments{{"sessionId", "S1"}, {"page", "1"}}));
  EXPECT_EQ(first.num(), "12");
  EXPECT_EQ(first.subNum(), "") << "a missing count stays empty, not 0";
  EXPECT_FALSE(first.loadMoreFooterHidden);
  const ContactCell cell = first.cellAt(0);
  EXPECT_EQ(cell.phoneText, "手机号:138****0001");
  EXPECT_EQ(cell.timeText, "加入时间:2016-05-01");
  EXPECT_EQ(cell.invitedText, "邀请2人");
  EXPECT_EQ(cell.placeholderImage, "v4_morentouxiang");
  EXPECT_EQ(cell.arrowImage, "yaoqinganniu");

  first.loadMore();
  first.loadMore();  // pulled up twice before page 2 arrived
  ASSERT_EQ(await(first), true);
  EXPECT_EQ(first.pageNum, 2);
  EXPECT_EQ(first.contactList.size(), 4u) << "page 2 appends";
  answer("getMyContacts", R"({"success":"1","message":"服务器忙"})");
  first.loadMore();
  ASSERT_EQ(await(first), false);
  EXPECT_EQ(first.pageNum, 2) << "the failed page is asked for again next time";
  EXPECT_EQ(first.contactList.size(), 4u);
  answer("getMyContacts", R"({"success":"0","data":{"dataList":[]}})");
  first.loadMore();
  ASSERT_EQ(await(first), true);
  EXPECT_EQ(last().arguments, (Arguments{{"sessionId", "S1"}, {"page", "3"}}));
  EXPECT_TRUE(first.loadMoreFooterHidden) << "an empty page ends the list";
  first.refresh();
  ASSERT_EQ(await(first), true);
  EXPECT_TRUE(first.contactList.empty()) << "page 1 replaces";

  // A row opens its contact's list, which asks by phone with its own page counter and
  // shows no invitation count.
  answer("getMyContacts", R"({"success":"0","data":{"dataList":[{"name":"甲","phone":"13800000001","num":"2"}]}})");
  first.refresh();
  ASSERT_EQ(await(first), true);
  first.selectRow(5);  // out of range: nothing
  first.selectRow(0);
  const auto shown = navigator_->topScreen();
  ASSERT_TRUE(shown);
  EXPECT_EQ(shown->name, "MySecondContactViewController");
  answer("getIndirectContacts", R"({"success":"0","data":{"dataList":[{"name":"丙","phone":"13800000009"}]}})");
  MySecondContactViewController second{UserInfoModel(shown->payload)};
  EXPECT_EQ(second.title(), "甲的邀请");
  second.refresh();
  ASSERT_EQ(await(second), true);
  EXPECT_EQ(last().endpoint, "getIndirectContacts");
  EXPECT_EQ(last().arguments, (Arguments{{"sessionId", "S1"}, {"phone", "13800000001"}, {"page", "1"}}));
  EXPECT_EQ(second.cellAt(0).invitedText, "");
  EXPECT_EQ(second.cellAt(0).arrowImage, "");
  second.loadMore();
  ASSERT_EQ(await(second), true);
  EXPECT_EQ(last().arguments, (Arguments{{"sessionId", "S1"}, {"phone", "13800000001"}, {"page", "2"}}));
}

}  // namespace
}  // namespace qmv
