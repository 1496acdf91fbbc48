// Flows a new member walks through the graphical client, each checked where it once went
// wrong: a chosen city reaching every tab at once, a keyword search that can be left, a
// home category reaching the nearby list on screen, an open offer through sign-in and the
// sign-out, the guide, forms that say what their fields hold, the keys that go back, the
// menus' marks and GTK's own words in Chinese.
#include <adwaita.h>
#include <gtest/gtest.h>
#include <shumate/shumate.h>

#include <algorithm>
#include <clocale>
#include <cmath>
#include <functional>
#include <map>
#include <set>
#include <string_view>

#include "apps/gtk/chinese_locale.h"
#include "apps/gtk/dialog_alerts.h"
#include "apps/gtk/gtk_client_test_support.h"
#include "apps/gtk/home_page.h"
#include "apps/gtk/nearby_page.h"
#include "core/images/image_loader.h"
#include "core/session/global_data.h"
#include "core/session/login_screen.h"
#include "shell/app_delegate.h"
#include "shell/qx_h5_view_controller.h"
#include "shell/shell_texts.h"
#include "shell/tab_bar_view_controller.h"

namespace qmv::gtk {
namespace {

class FlowFixesTest : public testsupport::GtkClientTest {
 protected:
  static std::set<std::string> storeIds(const std::vector<StoreInfoModel>& stores) {
    std::set<std::string> ids;
    for (const StoreInfoModel& store : stores) ids.insert(store.storeId);
    return ids;
  }
  // Whether the drawn row titled `title` on the page on top carries the current choice's mark.
  bool marked(const std::string& title) {
    return rowHolds(title, [](GtkWidget* w) {
      return gtk_widget_is_visible(w) && GTK_IS_IMAGE(w) &&
             g_strcmp0(gtk_image_get_icon_name(GTK_IMAGE(w)), "object-select-symbolic") == 0;
    });
  }
  // Waits until the nearby list has answered its last search.
  bool nearbySettled(NearbyPage& page) {
    return driver_->waitUntil([&] { return !page.screen().nearbyView().isSearching(); });
  }
};

TEST_F(FlowFixesTest, AKeywordCanBeLeftAndAChosenCityReachesHomeNearbyAndTitlesAtOnce) {
  auto& home = static_cast<HomePage&>(tabs_->tab(0));
  ASSERT_TRUE(driver_->waitUntil([&] { return home.screen().popularStores().size() > 1; }));
  EXPECT_TRUE(driver_->waitUntil([&] { return titleOf(&home) == "临沂市"; })) << titleOf(&home);
  tabs_->select(1);
  auto& nearby = static_cast<NearbyPage&>(tabs_->tab(1));
  const NearbyView& list = nearby.screen().nearbyView();
  ASSERT_TRUE(driver_->waitUntil([&] { return !list.storeList.empty() && !list.isSearching(); }));
  const std::set<std::string> linyiStores = storeIds(list.storeList);

  // A keyword nothing matches: an empty list named by the word, which a clear button or
  // an empty search leaves for the filtered list of the city again.
  searchNearby("潜水");
  ASSERT_TRUE(driver_->waitUntil([&] { return list.isKeySearchModel && !list.isSearching(); }));
  EXPECT_TRUE(list.storeList.empty());
  EXPECT_TRUE(driver_->waitUntil([&] { return titleOf(&nearby) == "潜水"; })) << titleOf(&nearby);
  EXPECT_TRUE(driver_->waitUntil([&] { return drawn("clear-keyword"); })) << "the keyword can be cleared";
  searchNearby("");
  ASSERT_TRUE(driver_->waitUntil([&] { return !list.isKeySearchModel && !list.storeList.empty() && !list.isSearching(); }));
  EXPECT_EQ(storeIds(list.storeList), linyiStores);
  EXPECT_TRUE(driver_->waitUntil([&] { return titleOf(&nearby) == "临沂市" && !drawn("clear-keyword"); }));

  // Searched again, then a home category: the category's stores under its own label.
  searchNearby("潜水");
  ASSERT_TRUE(driver_->waitUntil([&] { return list.isKeySearchModel && !list.isSearching(); }));
  tabs_->select(0);
  ASSERT_TRUE(tap("餐饮美食"));
  ASSERT_TRUE(driver_->waitUntil([&] { return !list.isKeySearchModel && !list.storeList.empty() && !list.isSearching(); }));
  EXPECT_EQ(list.categoryButton.title, "美食") << "the catalogue's name for the home's 餐饮美食";
  EXPECT_TRUE(driver_->waitUntil([&] { return titleOf(&nearby) == "临沂市"; })) << titleOf(&nearby);
  EXPECT_TRUE(list.searchFieldText.empty()) << "the word no longer names the list";

  // Choosing 济南市: home and nearby name it and list its stores, without a pull.
  const std::set<std::string> homeBefore = storeIds(home.screen().popularStores());
  ASSERT_NO_FATAL_FAILURE(chooseCity("济南", "济南市"));
  EXPECT_TRUE(driver_->waitUntil([&] { return titleOf(&nearby) == "济南市"; })) << titleOf(&nearby);
  EXPECT_TRUE(driver_->waitUntil([&] { return !list.isSearching() && storeIds(list.storeList) != linyiStores; }));
  EXPECT_TRUE(driver_->waitUntil([&] { return !list.storeList.empty(); }));
  tabs_->select(0);
  EXPECT_TRUE(driver_->waitUntil([&] { return titleOf(&home) == "济南市"; })) << titleOf(&home);
  EXPECT_TRUE(driver_->waitUntil([&] { return storeIds(home.screen().popularStores()) != homeBefore; }));
}

TEST_F(FlowFixesTest, AnOfferShowsTheSignedInPriceAndSigningOutAsksAndForgetsThePassword) {
  // Signed out, offer 1 is a first purchase; the demo member has bought it before, and
  // the offer open while he signs in shows his price.
  driver_->app().navigator().push("QXActivitiesViewController", {{"commodityId", "1"}});
  ASSERT_TRUE(driver_->waitUntil([&] { return shownAs("price-label") == "首单价"; }));
  presentLoginScreen();
  ASSERT_TRUE(driver_->waitUntil([&] { return driver_->topName() == "LoginViewController"; }));
  type("phone", "13800000000");
  type("password", "qmv123");
  ASSERT_TRUE(tap("登录"));
  ASSERT_TRUE(driver_->waitUntil([&] { return driver_->topName() == "QXActivitiesViewController"; }));
  EXPECT_TRUE(driver_->waitUntil([&] { return shownAs("price-label") == "现价"; })) << shownAs("price-label");
  driver_->app().navigator().popToRoot();
  TabBarViewController* tabBar = driver_->app().appDelegate().tabBarViewCtrl();
  ASSERT_NE(tabBar, nullptr);
  tabs_->select(3);
  QXH5ViewController* community = nullptr;
  ASSERT_TRUE(driver_->waitUntil([&] {
    community = tabBar->communityViewController();
    return community != nullptr && community->webView() != nullptr && community->webView()->hasShownPage();
  }, std::chrono::seconds(60)));
  const auto pageText = [&] { return community->webView()->page().text; };
  ASSERT_TRUE(driver_->waitUntil([&] { return pageText().find("会员: 演示会员") != std::string::npos; },
                                 std::chrono::seconds(30)))
      << pageText();

  // The sign-out asks first; "取消" keeps the member.
  tabs_->select(4);
  ASSERT_TRUE(tap("logout"));
  ASSERT_TRUE(driver_->waitUntil([&] { return !driver_->app().alerts().open().empty(); }));
  EXPECT_EQ(driver_->app().alerts().open().front().message, "确定要退出登录吗?");
  EXPECT_TRUE(driver_->app().alerts().answer("取消"));
  driver_->settle();
  ASSERT_NE(GlobalData::sharedInstance().selfInfo(), nullptr);
  ASSERT_TRUE(tap("logout"));
  ASSERT_TRUE(driver_->waitUntil([&] { return !driver_->app().alerts().open().empty(); }));
  EXPECT_TRUE(driver_->app().alerts().answer("退出"));
  ASSERT_TRUE(driver_->waitUntil([&] { return GlobalData::sharedInstance().selfInfo() == nullptr; }));

  // The community page greets nobody once shown again.
  tabs_->select(3);
  EXPECT_TRUE(driver_->waitUntil([&] { return pageText().find("演示会员") == std::string::npos; },
                                 std::chrono::seconds(30)))
      << pageText();

  // The login screen keeps the phone, not the password.
  tabs_->select(4);
  ASSERT_TRUE(tap("登录"));
  ASSERT_TRUE(driver_->waitUntil([&] { return driver_->topName() == "LoginViewController"; }));
  ASSERT_NE(field("phone"), nullptr);
  EXPECT_EQ(field("phone")->get_text().raw(), "13800000000");
  EXPECT_EQ(field("password")->get_text().raw(), "");
}

TEST_F(FlowFixesTest, TheNearbyMapThinsCrowdedTitlesAndMarksTheMember) {
  tabs_->select(1);
  auto& nearby = static_cast<NearbyPage&>(tabs_->tab(1));
  const NearbyView& list = nearby.screen().nearbyView();
  ASSERT_TRUE(driver_->waitUntil([&] { return !list.storeList.empty() && !list.isSearching(); }));
  ASSERT_TRUE(tap("map-switch"));
  const NearByMapView& view = nearby.screen().mapView();
  ASSERT_TRUE(driver_->waitUntil([&] { return view.pins.size() > 2; }));
  const auto widgets = [&](const char* cssClass) {
    return below(GTK_WIDGET(nearby.gobj()), [&](GtkWidget* w) { return gtk_widget_has_css_class(w, cssClass); });
  };
  ASSERT_TRUE(driver_->waitUntil([&] { return nearby.map().pinCount() == view.pins.size(); }));
  ASSERT_TRUE(driver_->waitUntil([&] { return widgets("my-location").size() == 1; })) << "the member was located";
  GtkWidget* map = firstBelow(GTK_WIDGET(nearby.gobj()), [](GtkWidget* w) { return SHUMATE_IS_SIMPLE_MAP(w); });
  ASSERT_NE(map, nullptr);
  ShumateViewport* viewport = shumate_simple_map_get_viewport(SHUMATE_SIMPLE_MAP(map));

  // Titles drawn at a zoom level, once the markers stopped moving.
  const auto bubbles = [&] {
    std::vector<graphene_rect_t> shown;
    for (GtkWidget* title : widgets("pin-title")) {
      graphene_rect_t box;
      GtkWidget* bubble = gtk_widget_get_parent(gtk_widget_get_parent(title));
      // A marker off the map is left where it last was, unmapped, and not drawn.
      if (gtk_widget_get_visible(title) && gtk_widget_get_mapped(bubble) &&
          gtk_widget_compute_bounds(bubble, map, &box)) {
        shown.push_back(box);
      }
    }
    return shown;
  };
  // Titles drawn once thinned for `zoom` (the markers are laid out in that frame): none
  // covers another.
  const auto shownTitles = [&](double zoom) {
    shumate_viewport_set_zoom_level(viewport, zoom);
    EXPECT_TRUE(driver_->waitUntil([&] { return nearby.map().placedZoom() == zoom; })) << zoom;
    const std::vector<graphene_rect_t> shown = bubbles();
    for (std::size_t i = 0; i < shown.size(); ++i) {
      for (std::size_t j = 0; j < i; ++j) {
        EXPECT_FALSE(graphene_rect_intersection(&shown[i], &shown[j], nullptr)) << "zoom " << zoom;
      }
    }
    std::size_t count = 0;
    for (std::size_t i = 0; i < view.pins.size(); ++i) count += nearby.map().titleShown(i) ? 1 : 0;
    return count;
  };
  const std::size_t far = shownTitles(9);
  const std::size_t near = shownTitles(18);
  EXPECT_GE(far, 1u);
  EXPECT_LT(far, view.pins.size()) << "a city's pins crowd at a province's scale";
  EXPECT_GT(near, far) << "zooming in parts them again";

  // Under the pins lies the embedded sandbox's map: the map's source downloads from the
  // configured template (what the sandbox draws there is its tile test's).
  const MapTiles tiles = driver_->app().launch().config().mapTiles();
  EXPECT_EQ(tiles.urlTemplate.rfind(driver_->app().launch().config().webHost + "/tiles/", 0), 0u) << tiles.urlTemplate;
  GObject* downloader = nullptr;
  g_object_get(shumate_simple_map_get_map_source(SHUMATE_SIMPLE_MAP(map)), "data-source", &downloader, nullptr);
  ASSERT_NE(downloader, nullptr);
  gchar* urlTemplate = nullptr;
  g_object_get(downloader, "url-template", &urlTemplate, nullptr);
  EXPECT_EQ(std::string(urlTemplate != nullptr ? urlTemplate : ""), tiles.urlTemplate);
  g_free(urlTemplate);
  g_object_unref(downloader);

  // The map grows with the window, leaving the stores room under it on a phone.
  const int phone = gtk_widget_get_height(map);
  EXPECT_LT(phone, GtkDriver::kHeight * 2 / 3);
  ASSERT_TRUE(driver_->resize(1280, 800));
  EXPECT_TRUE(driver_->waitUntil([&] { return gtk_widget_get_height(map) > phone && gtk_widget_get_width(map) > 640; }))
      << gtk_widget_get_width(map) << "x" << gtk_widget_get_height(map);
}

class GuideTest : public FlowFixesTest {
 protected:
  GuideTest() { stopAtGuide_ = true; }
};

TEST_F(GuideTest, TheGuideLocatesTheMemberAndTheCityChosenOnItOpensTheTabs) {
  auto* guide = dynamic_cast<GuidePage*>(&top());
  ASSERT_NE(guide, nullptr);
  ASSERT_TRUE(tap("guide-next"));
  ASSERT_TRUE(driver_->waitUntil([&] { return guide->shownPage() == LaunchViewController::kLocationPage; }));
  ASSERT_TRUE(tap("guide-locate"));
  EXPECT_TRUE(waitFor(shell_texts::kGuideLocated));
  ASSERT_TRUE(tap("guide-next"));
  ASSERT_TRUE(driver_->waitUntil([&] { return guide->shownPage() == LaunchViewController::kCityPage; }));
  EXPECT_TRUE(waitFor("当前城市：临沂市"));
  ASSERT_TRUE(tap("guide-choose-city"));
  ASSERT_TRUE(driver_->waitUntil([&] { return driver_->topName() == kCityScreen; }));
  pickCity("jinan", "济南市", kGuideScreen);
  EXPECT_TRUE(waitFor("当前城市：济南市"));
  passGuide();
  EXPECT_TRUE(driver_->waitUntil([&] { return titleOf(&tabs_->tab(0)) == "济南市"; })) << titleOf(&tabs_->tab(0));
}

TEST_F(FlowFixesTest, FieldsSayWhatTheyHoldPasswordsShowOnAskingKeysGoBackAndMenusMarkTheChoice) {
  // GTK's own words are Chinese wherever the system has a Chinese locale.
  EXPECT_TRUE(messagesAreChinese("zh_CN.UTF-8", nullptr));
  EXPECT_TRUE(messagesAreChinese("zh_TW.UTF-8", "zh_TW:zh"));
  EXPECT_FALSE(messagesAreChinese("zh_CN.UTF-8", "en_US:en")) << "LANGUAGE comes first";
  EXPECT_FALSE(messagesAreChinese("C", "zh_CN")) << "LANGUAGE is not read under C";
  EXPECT_FALSE(messagesAreChinese("en_US.UTF-8", ""));
  if (std::string_view(std::setlocale(LC_MESSAGES, nullptr)).starts_with("zh")) {
    EXPECT_STRNE(g_dgettext("gtk40", "_Cancel"), "_Cancel");
  }

  // Registration: every field says what it holds; a password shows itself on asking.
  driver_->app().navigator().push("QXRegisterViewController");
  ASSERT_TRUE(driver_->waitUntil([&] { return driver_->topName() == "QXRegisterViewController"; }));
  for (const char* name : {"phone", "code", "user-name", "password", "confirm", "invite"}) {
    ASSERT_NE(field(name), nullptr) << name;
    EXPECT_FALSE(field(name)->get_placeholder_text().empty()) << name;
  }
  Gtk::Entry* password = field("password");
  EXPECT_FALSE(password->get_visibility());
  g_signal_emit_by_name(password->gobj(), "icon-release", GTK_ENTRY_ICON_SECONDARY);
  EXPECT_TRUE(password->get_visibility());
  g_signal_emit_by_name(password->gobj(), "icon-release", GTK_ENTRY_ICON_SECONDARY);
  EXPECT_FALSE(password->get_visibility());
  EXPECT_FALSE(field("confirm")->get_visibility());

  // Escape and Alt+Left go back from a pushed page; a tab's root keeps them.
  ASSERT_TRUE(pressKey(GDK_KEY_Escape));
  ASSERT_TRUE(driver_->waitUntil([&] { return driver_->topName() == kTabBarScreen; }));
  driver_->app().navigator().push("FindPwdViewController");
  ASSERT_TRUE(driver_->waitUntil([&] { return driver_->topName() == "FindPwdViewController"; }));
  ASSERT_TRUE(pressKey(GDK_KEY_Left, GDK_ALT_MASK));
  ASSERT_TRUE(driver_->waitUntil([&] { return driver_->topName() == kTabBarScreen; }));
  EXPECT_FALSE(pressKey(GDK_KEY_Escape));

  // The search fields say what to type.
  ASSERT_NO_FATAL_FAILURE(searchNearby("潜水"));
  auto* keyword = dynamic_cast<Gtk::SearchEntry*>(finders::findNamed(top(), "keyword"));
  ASSERT_NE(keyword, nullptr);
  gchar* placeholder = nullptr;
  g_object_get(keyword->gobj(), "placeholder-text", &placeholder, nullptr);
  EXPECT_STRNE(placeholder != nullptr ? placeholder : "", "");
  g_free(placeholder);
  auto& nearby = static_cast<NearbyPage&>(tabs_->tab(1));
  const NearbyView& list = nearby.screen().nearbyView();
  ASSERT_TRUE(driver_->waitUntil([&] { return list.isKeySearchModel && !list.isSearching(); }));

  // The sort and area menus mark the current choice, and follow a new one.
  ASSERT_TRUE(tap("filter-sort"));
  ASSERT_TRUE(driver_->waitUntil([&] { return marked("智能排序"); }));
  EXPECT_FALSE(marked("离我最近"));
  ASSERT_TRUE(finders::activateRow(top(), "离我最近"));
  ASSERT_TRUE(nearbySettled(nearby));
  ASSERT_TRUE(tap("filter-sort"));
  ASSERT_TRUE(driver_->waitUntil([&] { return marked("离我最近"); }));
  EXPECT_FALSE(marked("智能排序"));
  ASSERT_TRUE(tap("filter-area"));
  ASSERT_TRUE(driver_->waitUntil([&] { return marked("全部"); }));
  EXPECT_FALSE(marked("离我最近")) << "one menu at a time";
}

}  // namespace
}  // namespace qmv::gtk
