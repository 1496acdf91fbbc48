// The member centre in the graphical client, driven in-process against the embedded
// sandbox's demo member: the wallet tab and its fund records and vouchers, a store's
// comments and the member's own ratings, his bookmarks, his messages with the member
// tab's badge, the feedback, password and level pages, and the profile, portrait, phone and
// invitation pages. Each page is reached the way a
// member reaches it, and the assertions are on what the page draws.
#include <gtest/gtest.h>

#include <adwaita.h>

#include <algorithm>
#include <fstream>

#include "apps/gtk/favorites_page.h"
#include "apps/gtk/gtk_client_test_support.h"
#include "apps/gtk/list_state_view.h"
#include "apps/gtk/member_centre_pages.h"
#include "apps/gtk/page_navigator.h"
#include "apps/gtk/profile_pages.h"
#include "apps/gtk/review_pages.h"
#include "apps/gtk/wallet_centre_pages.h"
#include "apps/gtk/web_page_view.h"
#include "apps/gtk/widget_finders.h"
#include "platform/linux/codec_image_decoder.h"
#include "platform/linux/qr_png.h"
#include "platform/env.h"
#include "platform/settings_store.h"
#include "shell/qx_h5_view_controller.h"
#include "shell/web_view_controller.h"

namespace qmv::gtk {
namespace {

// Every test starts signed in as the demo member.
class MemberCentreTest : public testsupport::GtkClientTest {
 protected:
  void SetUp() override {
    GtkClientTest::SetUp();
    if (IsSkipped() || HasFatalFailure()) return;
    signIn("13800000000", "qmv123");
  }

  // The page on top as a `Page` once its list has answered with `rows` rows.
  template <class Page>
  Page* listed(std::size_t rows) {
    Page* page = nullptr;
    driver_->waitUntil([&] {
      page = dynamic_cast<Page*>(&top());
      return page != nullptr && !page->screen().isLoading() && page->rows().size() == rows;
    });
    return page != nullptr && page->rows().size() == rows ? page : nullptr;
  }
  // Whether the label named `name` on the page on top is drawn with `text`.
  bool labelShows(const std::string& name, const std::string& text) {
    auto* label = dynamic_cast<Gtk::Label*>(finders::findNamed(top(), name));
    return label != nullptr && label->get_visible() && label->get_text().raw() == text;
  }
  // Whether the page on top shows its list's empty state saying `text`.
  bool emptySays(const std::string& text) {
    auto* state = dynamic_cast<ListStateView*>(finders::findNamed(top(), "empty"));
    return state != nullptr && state->get_visible() && state->state().text == text;
  }
  bool pressed(const std::string& name) {
    auto* button = dynamic_cast<Gtk::ToggleButton*>(finders::findNamed(top(), name));
    return button != nullptr && button->get_active();
  }
};

TEST_F(MemberCentreTest, WalletShowsFundRecordsByKindPagedAndTheVouchers) {
  // The wallet tab: the refreshed balance, no bound card, and its four entries.
  tabs_->select(2);
  ASSERT_TRUE(driver_->waitUntil([&] { return labelShows("card-line", "未绑定银行卡"); }));
  EXPECT_TRUE(labelShows("balance", "￥500.00"));
  for (const char* entry : {"提现", "我的银行卡", "资金明细", "我的代金券"}) EXPECT_TRUE(finders::shows(top(), entry));

  // Twelve ledger lines: a page of ten, then the last two; a third pull finds the end
  // (what the lines say, kind by kind, is the wallet command's test).
  ASSERT_TRUE(openRow("资金明细", "FundRecordViewController"));
  auto* records = listed<FundRecordsPage>(10);
  ASSERT_NE(records, nullptr);
  EXPECT_TRUE(pressed("kind0"));
  ASSERT_TRUE(tap("load-more", true));
  ASSERT_NE(listed<FundRecordsPage>(12), nullptr);
  ASSERT_TRUE(tap("load-more", true));
  ASSERT_TRUE(driver_->waitUntil([&] { return !finders::findNamed(top(), "load-more")->get_visible(); }));
  EXPECT_EQ(records->rows().size(), 12u) << "the empty page ends the list and keeps the rows";

  // The prize kind: the wheel's two cash prizes alone, with their amounts.
  ASSERT_TRUE(tap("奖励", true));
  ASSERT_NE(listed<FundRecordsPage>(2), nullptr);
  EXPECT_TRUE(pressed("kind5"));
  EXPECT_FALSE(pressed("kind0"));
  for (const char* text : {"转盘奖励:5元红包", "转盘奖励:1元红包", "+5.00", "+1.00"}) EXPECT_TRUE(waitFor(text)) << text;

  // Fourteen vouchers: the first page starts with the ones of no store.
  ASSERT_TRUE(tap("back", true));
  ASSERT_TRUE(openRow("我的代金券", "MyVoucherViewController"));
  auto* vouchers = listed<VouchersPage>(10);
  ASSERT_NE(vouchers, nullptr);
  EXPECT_TRUE(waitFor("新人5元券"));
  EXPECT_TRUE(finders::shows(top(), "5.00元"));
  EXPECT_TRUE(finders::shows(top(), "全部门店通用  " + vouchers->rows().at(0).stateText() + "\n有效期至2027-12-31"));
  ASSERT_TRUE(tap("load-more", true));
  EXPECT_NE(listed<VouchersPage>(14), nullptr);
}

TEST_F(MemberCentreTest, StoreCommentsFilterByStarAndMyRatingsOpenTheirStores) {
  // The store's "more comments" row opens its comments with their count.
  driver_->app().navigator().push("QXRStoreDetailViewController", {{"storeId", "1"}});
  ASSERT_TRUE(openRow("查看更多评论", "UserCommitViewController"));
  auto* comments = listed<CommentsPage>(10);
  ASSERT_NE(comments, nullptr);
  EXPECT_EQ(titleOf(), "用户评论");
  EXPECT_TRUE(labelShows("count", comments->screen().count() + "条评论"));
  const GradeModel first = comments->rows().at(0);
  EXPECT_TRUE(waitFor(first.content + "\n" + first.time));

  // One star count: only its comments, counted again.
  ASSERT_TRUE(tap("star" + first.star, true));
  const auto onlyThatStar = [&] {
    for (guint i = 0; i < comments->rows().size(); ++i) {
      if (comments->rows().at(i).star != first.star) return false;
    }
    return comments->rows().size() > 0;
  };
  EXPECT_TRUE(driver_->waitUntil([&] {
    return !comments->screen().isLoading() && pressed("star" + first.star) && onlyThatStar();
  }));
  EXPECT_FALSE(pressed("star0"));
  const std::string stars = UserCommitViewController::starsText(first.star);
  EXPECT_TRUE(waitFor((first.nickName.empty() ? first.userName : first.nickName) + "  " + stars));

  // The first store rates four stars and has no one-star comment: the empty text.
  ASSERT_TRUE(tap("star1", true));
  EXPECT_TRUE(driver_->waitUntil([&] {
    return !comments->screen().isLoading() && pressed("star1") && comments->rows().size() == 0 &&
           emptySays("暂无评论");
  }));
  EXPECT_TRUE(labelShows("count", "0条评论"));
  EXPECT_FALSE(finders::findNamed(top(), "load-more")->get_visible());

  // My ratings: the four rated demo orders; a row opens its store.
  driver_->app().navigator().popToRoot();
  tabs_->select(4);
  ASSERT_TRUE(openRow("我的评价", "MyGradeViewController"));
  auto* ratings = listed<MyRatingsPage>(4);
  ASSERT_NE(ratings, nullptr);
  const GradeModel rated = ratings->rows().at(0);
  EXPECT_TRUE(waitFor(rated.storeName + "  ★★★★★"));
  EXPECT_TRUE(finders::shows(top(), "味道不错，服务热情！\n" + rated.time));
  ASSERT_TRUE(openRow(rated.storeName + "  ★★★★★", "QXRStoreDetailViewController"));
  EXPECT_TRUE(waitFor(rated.storeName));

  // No screen is titled by its class name, drawn or not.
  for (const char* name : {"QXPublishViewController", "WealthViewController", "PortraitViewController"}) {
    driver_->app().navigator().push(name);
    ASSERT_TRUE(driver_->waitUntil([&] { return driver_->topName() == name; }));
    const std::string title = titleOf();
    EXPECT_FALSE(title.empty()) << name;
    EXPECT_EQ(title.find("Controller"), std::string::npos) << name;
  }
}

TEST_F(MemberCentreTest, BookmarksShowBothTabsAndTheirRowsOpenTheStoreOrOffer) {
  // Five bookmarked stores, the newest first; a row opens its store.
  ASSERT_TRUE(openFromMemberTab("我的收藏", "MyFavoriteViewController"));
  FavoritesPage* page = nullptr;
  ASSERT_TRUE(driver_->waitUntil([&] {
    page = dynamic_cast<FavoritesPage*>(&top());
    return page != nullptr && !page->isLoading() && page->rows().size() == 5;
  }));
  EXPECT_TRUE(pressed("tab0"));
  const std::string store = page->rows().at(0).texts.title;
  EXPECT_EQ(store, page->screen().stores().rows().at(0).storeName);
  ASSERT_TRUE(openRow(store, "QXRStoreDetailViewController"));
  EXPECT_TRUE(waitFor(store));

  // Back on the bookmarks, the offers tab: four offers, a row opens its offer.
  ASSERT_TRUE(tap("back", true));
  ASSERT_TRUE(driver_->waitUntil([&] { return driver_->topName() == "MyFavoriteViewController"; }));
  ASSERT_TRUE(tap("tab1", true));
  ASSERT_TRUE(driver_->waitUntil([&] {
    return pressed("tab1") && !page->isLoading() && page->rows().size() == 4 && page->rows().at(0).key[0] == 'o';
  }));
  EXPECT_FALSE(pressed("tab0"));
  const std::string offer = page->rows().at(0).texts.title;
  ASSERT_TRUE(openRow(offer, "QXActivitiesViewController"));
  EXPECT_TRUE(waitFor(offer));
}

TEST_F(MemberCentreTest, MessagesMarkTheUnreadAndTheBadgeDropsOnceTheyAreSeen) {
  // Three unread messages among the newest: the member tab's badge says so.
  ASSERT_TRUE(driver_->waitUntil([&] { return labelShows("unread-badge", "3"); }));

  // The list, newest first, the unread ones marked.
  ASSERT_TRUE(openFromMemberTab("我的消息", "MyNewsViewController"));
  auto* messages = listed<MessagesPage>(10);
  ASSERT_NE(messages, nullptr);
  EXPECT_EQ(messages->rows().at(0).title, "活动通知");
  EXPECT_TRUE(waitFor("幸运大转盘上线啦，快来试试手气！\n" + messages->rows().at(0).time));
  const auto texts = finders::texts(*finders::findNamed(top(), "messages"));
  EXPECT_EQ(std::count(texts.begin(), texts.end(), "未读"), 3);

  // Seen: the list tells the server, and back on the tab the badge is gone.
  ASSERT_TRUE(driver_->waitUntil([&] {
    return !messages->screen().isMarkingRead() && messages->screen().unreadCount() == 0;
  }));
  ASSERT_TRUE(tap("back", true));
  ASSERT_TRUE(driver_->waitUntil([&] { return driver_->topName() == kTabBarScreen; }));
  EXPECT_TRUE(driver_->waitUntil([&] {
    Gtk::Widget* badge = finders::findNamed(top(), "unread-badge");
    return badge != nullptr && !badge->get_visible();
  }));
}

TEST_F(MemberCentreTest, FeedbackPasswordAndLevelPagesDrawTheirScreens) {
  // Feedback: a text is sent, thanked for and the page pops (what is refused is the
  // member pages' test).
  ASSERT_TRUE(openFromMemberTab("意见反馈", "FeedbackViewController"));
  auto* text = dynamic_cast<Gtk::TextView*>(finders::findNamed(top(), "feedback"));
  ASSERT_NE(text, nullptr);
  text->get_buffer()->set_text("第一行\n第二行");
  EXPECT_TRUE(labelShows("count", "7/500"));
  type("contact", "13800000000");
  ASSERT_TRUE(tap("submit", true));
  EXPECT_TRUE(toasted("提交成功,感谢您的反馈"));
  EXPECT_TRUE(driver_->waitUntil([&] { return driver_->topName() == kTabBarScreen; }));

  // Password: a wrong old password is the server's refusal, and the page stays.
  ASSERT_TRUE(openFromMemberTab("修改密码", "ChangePasswordViewController"));
  type("old-password", "wrong123");
  type("new-password", "abc12345");
  type("confirm", "abc12345");
  ASSERT_TRUE(tap("submit", true));
  EXPECT_TRUE(toasted("原密码错误"));
  EXPECT_EQ(driver_->topName(), "ChangePasswordViewController");

  // Level: the demo member's 1250 points are level 4 (800 to 1600), the bar 450/800
  // filled; its entry opens the server's level page.
  ASSERT_TRUE(openFromMemberTab("会员等级", "MemberLevelViewController"));
  ASSERT_TRUE(waitFor("等级说明"));
  EXPECT_TRUE(labelShows("level", "LV4"));
  EXPECT_TRUE(labelShows("experience", "1250/1600"));
  EXPECT_TRUE(labelShows("remaining", "距离下一等级还需要350经验"));
  auto* bar = dynamic_cast<Gtk::ProgressBar*>(finders::findNamed(top(), "progress"));
  ASSERT_NE(bar, nullptr);
  EXPECT_DOUBLE_EQ(bar->get_fraction(), 0.5625);
  ASSERT_TRUE(openRow("等级说明", "QXH5ViewController"));
  // Left while it still loads, the web page's teardown crashes the next test's start.
  EXPECT_TRUE(driver_->waitUntil([&] {
    auto* page = dynamic_cast<H5Page*>(&top());
    const WebView* web = page != nullptr ? page->screen().webView() : nullptr;
    return web != nullptr && web->hasShownPage();
  }, std::chrono::seconds(30)));
}

TEST_F(MemberCentreTest, ProfileEditsAFieldAndThePortraitReachesTheMemberTab) {
  // The tab: the nick name, the account with its phone masked, no portrait yet.
  tabs_->select(4);
  ASSERT_TRUE(waitFor("1380***0000"));
  EXPECT_TRUE(labelShows("member-name", "演示会员"));
  Gtk::Widget* none = finders::findNamed(top(), "portrait");
  ASSERT_NE(none, nullptr);
  EXPECT_FALSE(none->get_visible());

  // A field is edited in a dialog; a new nick name replaces the row's (the values refused
  // are the profile screens' test).
  ASSERT_TRUE(openFromMemberTab("个人资料", "ProfileViewController"));
  auto* page = dynamic_cast<ProfilePage*>(&top());
  ASSERT_NE(page, nullptr);
  ASSERT_TRUE(waitFor("演示会员"));
  const auto editTo = [&](const std::string& value) {
    ASSERT_TRUE(finders::activateRow(top(), "昵称"));
    ASSERT_NE(page->editor(), nullptr);
    // The entry is the dialog's extra child; wrapping the dialog itself would leave a
    // C++ wrapper behind that nothing deletes.
    auto* entry = dynamic_cast<Gtk::Entry*>(Glib::wrap(adw_message_dialog_get_extra_child(ADW_MESSAGE_DIALOG(page->editor()))));
    ASSERT_NE(entry, nullptr);
    EXPECT_EQ(entry->get_text().raw(), "演示会员");
    entry->set_text(value);
    adw_message_dialog_response(ADW_MESSAGE_DIALOG(page->editor()), "save");
    EXPECT_EQ(page->editor(), nullptr);
  };
  editTo("小明");
  EXPECT_TRUE(toasted("修改成功"));
  EXPECT_TRUE(waitFor("小明"));

  // The portrait: a 256 px JPEG is taken and shows on the tab at the tab's size (a file
  // that is no picture is the portrait screen's test).
  DecodedImage grey;
  grey.width = grey.height = 256;
  grey.stride = 256 * 4;
  grey.pixels.assign(grey.stride * 256, '\x70');
  std::ofstream(home_ / "face.jpg", std::ios::binary) << CodecImageDecoder().encodeJpeg(grey, 90).value();
  page->uploadPortrait(home_ / "face.jpg");
  ASSERT_TRUE(driver_->waitUntil([] { return Env::current().settings->dataForKey("headerImage_now").has_value(); }));
  ASSERT_TRUE(tap("back", true));
  ASSERT_TRUE(driver_->waitUntil([&] { return driver_->topName() == kTabBarScreen; }));
  EXPECT_TRUE(labelShows("member-name", "小明"));
  Gtk::Picture* portrait = nullptr;
  ASSERT_TRUE(driver_->waitUntil([&] {
    portrait = dynamic_cast<Gtk::Picture*>(finders::findNamed(top(), "portrait"));
    return portrait != nullptr && portrait->get_visible() && portrait->get_paintable();
  }));
  EXPECT_EQ(portrait->get_paintable()->get_intrinsic_width(), 128);
}

TEST_F(MemberCentreTest, PhoneChangesWithItsCodeAndTheInvitationShowsItsCodeAndQr) {
  // A new phone gets a code, its button counts down, and the change reaches the member tab
  // masked (which numbers are refused is the profile screens' test).
  ASSERT_TRUE(openFromMemberTab("更换手机号", "ChangePhoneViewController"));
  type("new-phone", "13900000009");
  ASSERT_TRUE(tap("get-code", true));
  auto* code = dynamic_cast<Gtk::Button*>(finders::findNamed(top(), "get-code"));
  ASSERT_NE(code, nullptr);
  ASSERT_TRUE(driver_->waitUntil([&] { return !code->is_sensitive() && code->get_label().raw() != "获取验证码"; }));
  type("code", "123456");
  ASSERT_TRUE(tap("submit", true));
  EXPECT_TRUE(toasted("手机号修改成功"));
  ASSERT_TRUE(driver_->waitUntil([&] { return driver_->topName() == kTabBarScreen; }));
  EXPECT_TRUE(waitFor("1390***0009"));

  // The invitation: the member number, the link that carries it last, and its QR code.
  ASSERT_TRUE(openFromMemberTab("邀请好友", "InviteViewController"));
  EXPECT_TRUE(labelShows("invite-code", "100001"));
  auto* link = dynamic_cast<Gtk::Label*>(finders::findNamed(top(), "invite-link"));
  ASSERT_NE(link, nullptr);
  EXPECT_TRUE(link->get_text().raw().ends_with("/static/register/index.html?inviteID=100001"));
  auto* qr = dynamic_cast<Gtk::Picture*>(finders::findNamed(top(), "invite-qr"));
  ASSERT_NE(qr, nullptr);
  ASSERT_TRUE(qr->get_paintable());
  EXPECT_GT(qr->get_paintable()->get_intrinsic_width(), 100);
  auto* page = dynamic_cast<InvitePage*>(&top());
  ASSERT_NE(page, nullptr);
  ASSERT_TRUE(page->saveQrCode(home_ / "invite.png"));
  EXPECT_EQ(decodeQrFromPng(home_ / "invite.png"), link->get_text().raw()) << "the saved picture reads back as the link";
}

}  // namespace
}  // namespace qmv::gtk
