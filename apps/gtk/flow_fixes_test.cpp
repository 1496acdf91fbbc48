// Flows a new member walks through the graphical client, each checked where it once went
// wrong: a chosen city reaching every tab at once, a keyword search that can be left, a
// home category reaching the nearby list on screen, the sign-out, an untouched rating
// form, screen titles, forms that say what their fields hold, the keys that go back, the
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
  // The title the header bar of `page` (the page on top when null) shows.
  std::string titleOf(Gtk::Widget* page = nullptr) {
    std::function<GtkWidget*(GtkWidget*)> find = [&](GtkWidget* w) -> GtkWidget* {
      if (ADW_IS_WINDOW_TITLE(w)) return w;
      for (GtkWidget* c = gtk_widget_get_first_child(w); c != nullptr; c = gtk_widget_get_next_sibling(c)) {
        if (GtkWidget* found = find(c)) return found;
      }
      return nullptr;
    };
    GtkWidget* title = find((page != nullptr ? *page : top()).gobj());
    return title != nullptr ? adw_window_title_get_title(ADW_WINDOW_TITLE(title)) : "";
  }
  static std::set<std::string> storeIds(const std::vector<StoreInfoModel>& stores) {
    std::set<std::string> ids;
    for (const StoreInfoModel& store : stores) ids.insert(store.storeId);
    return ids;
  }
  // Whether the drawn row titled `title` on the page on top carries the current choice's mark.
  bool marked(const std::string& title) {
    bool inRow = false;
    bool result = false;
    const std::function<void(GtkWidget*)> walk = [&](GtkWidget* w) {
      if (!gtk_widget_get_visible(w)) return;
      const bool row = ADW_IS_PREFERENCES_ROW(w) && title == adw_preferences_row_get_title(ADW_PREFERENCES_ROW(w));
      if (row) inRow = true;
      if (inRow && GTK_IS_IMAGE(w) &&
          std::string_view("object-select-symbolic") == gtk_image_get_icon_name(GTK_IMAGE(w))) {
        result = true;
      }
      for (GtkWidget* c = gtk_widget_get_first_child(w); c != nullptr; c = gtk_widget_get_next_sibling(c)) walk(c);
      if (row) inRow = false;
    };
    walk(top().gobj());
    return result;
  }
  // Waits until the nearby list has answered its last search.
  bool nearbySettled(NearbyPage& page) {
    return driver_->waitUntil([&] { return !page.screen().nearbyView().isSearching(); });
  }
  // Types `keyword` on the nearby tab's search face and sends it (an empty one too).
  void searchNearby(const std::string& keyword) {
    tabs_->select(1);
    ASSERT_TRUE(tap("search"));
    auto* field = dynamic_cast<Gtk::SearchEntry*>(finders::findNamed(top(), "keyword"));
    ASSERT_NE(field, nullptr);
    field->set_text(keyword);
    g_signal_emit_by_name(field->gobj(), "activate");
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

TEST_F(FlowFixesTest, SigningOutAsksForgetsThePasswordFieldAndTheCommunityPageFollows) {
  signIn("13800000000", "qmv123");
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

TEST_F(FlowFixesTest, AnOfferOpenWhileTheMemberSignsInShowsHisPrice) {
  // Signed out, offer 1 is a first purchase; the demo member has bought it before.
  driver_->app().navigator().push("QXActivitiesViewController", {{"commodityId", "1"}});
  ASSERT_TRUE(driver_->waitUntil([&] { return shownAs("price-label") == "首单价"; }));
  presentLoginScreen();
  ASSERT_TRUE(driver_->waitUntil([&] { return driver_->topName() == "LoginViewController"; }));
  type("phone", "13800000000");
  type("password", "qmv123");
  ASSERT_TRUE(tap("登录"));
  ASSERT_TRUE(driver_->waitUntil([&] { return driver_->topName() == "QXActivitiesViewController"; }));
  EXPECT_TRUE(driver_->waitUntil([&] { return shownAs("price-label") == "现价"; })) << shownAs("price-label");
}

TEST_F(FlowFixesTest, CommentsAndUndrawnScreensHaveReadableTitlesAndARatingNeedsAStar) {
  signIn("13800000000", "qmv123");
  // A store reached from the home list: its "more comments" lands on its comments.
  tabs_->select(0);
  auto& home = static_cast<HomePage&>(tabs_->tab(0));
  ASSERT_TRUE(driver_->waitUntil([&] { return home.screen().popularStores().size() > 1; }));
  const StoreInfoModel store = home.screen().popularStores().front();
  ASSERT_TRUE(driver_->waitUntil([&] { return finders::activateRow(top(), store.storeName); }));
  ASSERT_TRUE(driver_->waitUntil([&] { return driver_->topName() == "QXRStoreDetailViewController"; }));
  ASSERT_TRUE(driver_->waitUntil([&] { return finders::activateRow(top(), "查看更多评论"); }));
  ASSERT_TRUE(driver_->waitUntil([&] { return driver_->topName() == "UserCommitViewController"; }));
  EXPECT_EQ(titleOf(), "用户评论");
  EXPECT_TRUE(waitFor("全部"));

  // No screen is titled by its class name, drawn or not.
  for (const char* name : {"QXPublishViewController", "WealthViewController", "PortraitViewController"}) {
    driver_->app().navigator().push(name);
    ASSERT_TRUE(driver_->waitUntil([&] { return driver_->topName() == name; }));
    const std::string title = titleOf();
    EXPECT_FALSE(title.empty()) << name;
    EXPECT_EQ(title.find("Controller"), std::string::npos) << name;
    EXPECT_NE(title, name);
  }

  // An untouched rating form lights no star and sends nothing.
  driver_->app().navigator().popToRoot();
  driver_->app().navigator().push("GradeStoreViewController", {{"orderId", "SB20161000012"}, {"storeName", "河东铜锅涮肉"}});
  ASSERT_TRUE(driver_->waitUntil([&] { return driver_->topName() == "GradeStoreViewController"; }));
  for (int n = 1; n <= 5; ++n) {
    auto* star = dynamic_cast<Gtk::Button*>(finders::findNamed(top(), "star" + std::to_string(n)));
    ASSERT_NE(star, nullptr);
    EXPECT_EQ(star->get_icon_name(), "non-starred-symbolic") << n;
  }
  ASSERT_TRUE(tap("submit"));
  EXPECT_TRUE(toasted("请选择评分"));
  ASSERT_EQ(driver_->topName(), "GradeStoreViewController");
  ASSERT_TRUE(tap("star4"));
  ASSERT_TRUE(tap("submit", true));
  EXPECT_TRUE(toasted("评价成功"));
}

TEST_F(FlowFixesTest, TheNearbyMapThinsCrowdedTitlesAndMarksTheMember) {
  tabs_->select(1);
  auto& nearby = static_cast<NearbyPage&>(tabs_->tab(1));
  const NearbyView& list = nearby.screen().nearbyView();
  ASSERT_TRUE(driver_->waitUntil([&] { return !list.storeList.empty() && !list.isSearching(); }));
  ASSERT_TRUE(tap("map-switch"));
  const NearByMapView& view = nearby.screen().mapView();
  ASSERT_TRUE(driver_->waitUntil([&] { return view.pins.size() > 2; }));
  std::vector<GtkWidget*> found;
  const std::function<void(GtkWidget*, const char*)> collect = [&](GtkWidget* w, const char* cssClass) {
    if (gtk_widget_has_css_class(w, cssClass)) found.push_back(w);
    for (GtkWidget* c = gtk_widget_get_first_child(w); c != nullptr; c = gtk_widget_get_next_sibling(c))
      collect(c, cssClass);
  };
  const auto widgets = [&](const char* cssClass) {
    found.clear();
    collect(GTK_WIDGET(nearby.gobj()), cssClass);
    return found;
  };
  ASSERT_TRUE(driver_->waitUntil([&] { return nearby.map().pinCount() == view.pins.size(); }));
  ASSERT_TRUE(driver_->waitUntil([&] { return widgets("my-location").size() == 1; })) << "the member was located";
  std::vector<GtkWidget*> maps;
  const std::function<void(GtkWidget*)> findMap = [&](GtkWidget* w) {
    if (SHUMATE_IS_SIMPLE_MAP(w)) maps.push_back(w);
    for (GtkWidget* c = gtk_widget_get_first_child(w); c != nullptr; c = gtk_widget_get_next_sibling(c)) findMap(c);
  };
  findMap(GTK_WIDGET(nearby.gobj()));
  ASSERT_EQ(maps.size(), 1u);
  ShumateViewport* viewport = shumate_simple_map_get_viewport(SHUMATE_SIMPLE_MAP(maps[0]));

  // Titles drawn at a zoom level, once the markers stopped moving: none may cover another.
  const auto bubbles = [&] {
    std::vector<graphene_rect_t> shown;
    for (GtkWidget* title : widgets("pin-title")) {
      graphene_rect_t box;
      GtkWidget* bubble = gtk_widget_get_parent(gtk_widget_get_parent(title));
      // A marker off the map is left where it last was, unmapped, and not drawn.
      if (gtk_widget_get_visible(title) && gtk_widget_get_mapped(bubble) &&
          gtk_widget_compute_bounds(bubble, maps[0], &box)) {
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
  // configured template, and what the map draws is what the sandbox draws there.
  const MapTiles tiles = driver_->app().launch().config().mapTiles();
  EXPECT_EQ(tiles.urlTemplate.rfind(driver_->app().launch().config().webHost + "/tiles/", 0), 0u) << tiles.urlTemplate;
  GObject* downloader = nullptr;
  g_object_get(shumate_simple_map_get_map_source(SHUMATE_SIMPLE_MAP(maps[0])), "data-source", &downloader, nullptr);
  ASSERT_NE(downloader, nullptr);
  gchar* urlTemplate = nullptr;
  g_object_get(downloader, "url-template", &urlTemplate, nullptr);
  EXPECT_EQ(std::string(urlTemplate != nullptr ? urlTemplate : ""), tiles.urlTemplate);
  g_free(urlTemplate);
  g_object_unref(downloader);
  // The colour most pixels have, and how many have it.
  const auto dominant = [](GdkTexture* texture) {
    const int w = gdk_texture_get_width(texture), h = gdk_texture_get_height(texture);
    std::vector<guint32> pixels(static_cast<std::size_t>(w) * h);
    gdk_texture_download(texture, reinterpret_cast<guchar*>(pixels.data()), w * 4);
    std::map<guint32, int> counts;
    for (guint32 p : pixels) ++counts[p];
    const auto top = std::max_element(counts.begin(), counts.end(),
                                      [](const auto& a, const auto& b) { return a.second < b.second; });
    return std::make_pair(top->first, static_cast<double>(top->second) / pixels.size());
  };
  const double lat = shumate_location_get_latitude(SHUMATE_LOCATION(viewport));
  const double lng = shumate_location_get_longitude(SHUMATE_LOCATION(viewport));
  const int z = 18;
  const int x = static_cast<int>((lng + 180) / 360 * (1 << z));
  const int y = static_cast<int>((1 - std::asinh(std::tan(lat * G_PI / 180)) / G_PI) / 2 * (1 << z));
  // The sandbox's tile there, through the client's own picture loader.
  const std::string url = tiles.urlFor(z, x, y);
  std::optional<ImageOutcome> fetched;
  const ImageTicket ticket = driver_->app().pictures()->load(url, {}, [&](ImageOutcome o) { fetched = std::move(o); });
  ASSERT_TRUE(driver_->waitUntil([&] { return fetched.has_value(); }));
  ASSERT_TRUE(fetched->ok()) << url << ": " << fetched->message;
  const DecodedImage& tile = *fetched->image;
  GBytes* bytes = g_bytes_new(tile.pixels.data(), tile.pixels.size());
  GdkTexture* expected =
      gdk_memory_texture_new(tile.width, tile.height, GDK_MEMORY_R8G8B8A8_PREMULTIPLIED, bytes, tile.stride);
  g_bytes_unref(bytes);
  const auto wanted = dominant(expected);
  g_object_unref(expected);
  ASSERT_GT(wanted.second, 0.5) << "the tile under the member is mostly one county's fill";
  const std::string shot = (home_ / "map.png").string();
  std::pair<guint32, double> seen{0, 0};
  EXPECT_TRUE(driver_->waitUntil([&] {
    driver_->settle(std::chrono::milliseconds(100));
    if (!driver_->renderToPng(*Glib::wrap(maps[0]), shot)) return false;
    GdkTexture* texture = gdk_texture_new_from_filename(shot.c_str(), nullptr);
    if (texture == nullptr) return false;
    seen = dominant(texture);
    g_object_unref(texture);
    return seen.first == wanted.first && seen.second > 0.3;
  })) << "the map draws the sandbox's tiles: " << std::hex << seen.first << " on " << seen.second;

  // The map grows with the window, leaving the stores room under it on a phone.
  const int phone = gtk_widget_get_height(maps[0]);
  EXPECT_LT(phone, GtkDriver::kHeight * 2 / 3);
  ASSERT_TRUE(driver_->resize(1280, 800));
  EXPECT_TRUE(driver_->waitUntil([&] {
    return gtk_widget_get_height(maps[0]) > phone && gtk_widget_get_width(maps[0]) > 640;
  })) << gtk_widget_get_width(maps[0]) << "x" << gtk_widget_get_height(maps[0]);
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
