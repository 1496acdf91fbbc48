// What a list shows in place of its rows, as a new member meets it: the reason and a
// retry when the server cannot be reached (a form's, with its fields given back), the
// list's sentence when nothing matched, and a long note read whole rather than cut.
#include <gtest/gtest.h>

#include <adwaita.h>

#include <functional>
#include <string>

#include "apps/gtk/gtk_client_test_support.h"
#include "apps/gtk/home_page.h"
#include "apps/gtk/list_state_view.h"
#include "apps/gtk/nearby_page.h"
#include "core/request/network_config.h"

namespace qmv::gtk {
namespace {

class ListStatesTest : public testsupport::GtkClientTest {
 protected:
  // The state view `page` shows on screen, or null while its rows show.
  static ListStateView* shownState(Gtk::Widget& page) {
    for (const char* name : {"loading", "empty", "failed"}) {
      auto* view = dynamic_cast<ListStateView*>(finders::findNamed(page, name));
      if (view != nullptr && view->get_mapped()) return view;
    }
    return nullptr;
  }
  // Waits until `page` shows the state named `name` saying `text`.
  bool showsState(Gtk::Widget& page, const std::string& name, const std::string& text) {
    return driver_->waitUntil([&] {
      ListStateView* view = shownState(page);
      return view != nullptr && view->get_name().raw() == name && view->state().text == text && finders::shows(*view, text);
    });
  }
};

TEST_F(ListStatesTest, AFailedListSaysWhyAndRetriesAndEmptyListsSaySoInTheirOwnWords) {
  auto& home = static_cast<HomePage&>(tabs_->tab(0));
  ASSERT_TRUE(driver_->waitUntil([&] { return home.screen().popularStores().size() > 1; }));

  // The server goes away before the nearby list is first drawn: the reason and a retry,
  // in the rows' place, while the filters above stay.
  const std::string baseUrl = NetworkConfig::sharedInstance().baseUrl();
  const std::size_t host = baseUrl.find("://");
  ASSERT_NE(host, std::string::npos);
  const std::size_t path = baseUrl.find('/', host + 3);
  const std::string unreachable =
      baseUrl.substr(0, host + 3) + "127.0.0.1:1" + (path == std::string::npos ? "/" : baseUrl.substr(path));
  NetworkConfig::sharedInstance().setBaseUrl(unreachable);
  tabs_->select(1);
  auto& nearby = static_cast<NearbyPage&>(tabs_->tab(1));
  const NearbyView& list = nearby.screen().nearbyView();
  EXPECT_TRUE(showsState(nearby, "failed", "连接服务器失败,请稍后再试"));
  EXPECT_TRUE(drawn("filter-area"));
  auto* retry = dynamic_cast<Gtk::Button*>(finders::findNamed(nearby, "retry"));
  ASSERT_NE(retry, nullptr);
  EXPECT_TRUE(retry->get_mapped());
  EXPECT_TRUE(list.storeList.empty());

  // Back again: the retry lists the stores and the state gives way to them.
  NetworkConfig::sharedInstance().setBaseUrl(baseUrl);
  g_signal_emit_by_name(retry->gobj(), "clicked");
  // Until the answer is in, the rows' place says it is loading (the request is on its way).
  ListStateView* loading = shownState(nearby);
  ASSERT_NE(loading, nullptr);
  EXPECT_EQ(loading->get_name().raw(), "loading");
  EXPECT_EQ(loading->state().text, "努力加载中…");
  EXPECT_TRUE(driver_->waitUntil([&] { return !list.storeList.empty() && !list.isSearching(); }));
  EXPECT_TRUE(driver_->waitUntil([&] { return shownState(nearby) == nullptr; }));

  // A keyword no store matches: the list says so, not a bare picture.
  ASSERT_NO_FATAL_FAILURE(searchNearby("潜水"));
  EXPECT_TRUE(showsState(nearby, "empty", "没有找到相关商家"));

  // A city search that matches nothing says so; a match shows the city again.
  driver_->app().navigator().push(kCityScreen);
  auto* key = dynamic_cast<Gtk::SearchEntry*>(finders::findNamed(top(), "city-key"));
  ASSERT_NE(key, nullptr);
  key->set_text("火星");
  EXPECT_TRUE(showsState(top(), "empty", "没有找到匹配的城市"));
  key->set_text("济南");
  EXPECT_TRUE(driver_->waitUntil([&] { return shownState(top()) == nullptr && finders::shows(top(), "济南市"); }));

  // A form has nothing to reload: the member reads why, then has his form back.
  driver_->app().navigator().popToRoot();
  tabs_->select(4);
  ASSERT_TRUE(tap("登录"));
  ASSERT_TRUE(driver_->waitUntil([&] { return driver_->topName() == "LoginViewController"; }));
  type("phone", "13800000000");
  type("password", "qmv123");
  NetworkConfig::sharedInstance().setBaseUrl(unreachable);
  ASSERT_TRUE(tap("登录"));
  EXPECT_TRUE(showsState(top(), "failed", "连接服务器失败,请稍后再试"));
  ASSERT_TRUE(tap("知道了"));
  EXPECT_TRUE(driver_->waitUntil([&] { return shownState(top()) == nullptr && field("phone")->get_mapped(); }));

  // Signed in after all, a contact who invited no one: his list says so.
  NetworkConfig::sharedInstance().setBaseUrl(baseUrl);
  ASSERT_TRUE(tap("登录"));
  ASSERT_TRUE(driver_->waitUntil([&] { return driver_->topName() == kTabBarScreen; }));
  ASSERT_TRUE(openFromMemberTab("我的人脉", "MyContactViewController"));
  ASSERT_TRUE(driver_->waitUntil([&] { return finders::activateRow(top(), "王五"); }));
  ASSERT_TRUE(driver_->waitUntil([&] { return driver_->topName() == "MySecondContactViewController"; }));
  EXPECT_TRUE(showsState(top(), "empty", "暂无人脉"));
}

TEST_F(ListStatesTest, ALongNoteIsShownWholeOnAPhoneWideWindow) {
  const std::string note = "您的提现申请已提交,申请将在1-3个工作日内处理完成";
  driver_->app().overlay().showImage("", note);
  GtkWidget* window = GTK_WIDGET(top().get_root()->gobj());
  GtkWidget* label = nullptr;
  ASSERT_TRUE(driver_->waitUntil([&] {
    label =
        firstBelow(window, [&](GtkWidget* w) { return GTK_IS_LABEL(w) && note == gtk_label_get_text(GTK_LABEL(w)); });
    return label != nullptr && gtk_widget_get_mapped(label) && gtk_widget_get_width(label) > 0;
  }));
  driver_->settle();
  EXPECT_FALSE(pango_layout_is_ellipsized(gtk_label_get_layout(GTK_LABEL(label))));
  // Inside the window: wrapped over lines rather than running past its edges.
  graphene_rect_t bounds;
  ASSERT_TRUE(gtk_widget_compute_bounds(label, window, &bounds));
  EXPECT_GE(bounds.origin.x, 0);
  EXPECT_LE(bounds.origin.x + bounds.size.width, gtk_widget_get_width(window));
  EXPECT_GT(pango_layout_get_line_count(gtk_label_get_layout(GTK_LABEL(label))), 1);
}

}  // namespace
}  // namespace qmv::gtk
