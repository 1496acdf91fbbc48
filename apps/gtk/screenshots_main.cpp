// Renders every screen of the graphical client at 360x720 to PNG files, through GTK's
// own snapshot path, walking the screens as a member would against the embedded
// sandbox in a fresh home; then a few in a 1280x800 window (the whole window, a list
// beside what it opened) and a few in the dark style at both sizes. Run it under a
// display (scripts/screenshots uses Xvfb).
//
// usage: qmv-gtk-screenshots OUTDIR
#include <unistd.h>

#include <adwaita.h>

#include <filesystem>
#include <iostream>

#include "apps/gtk/gtk_driver.h"
#include "apps/gtk/home_page.h"
#include "apps/gtk/favorites_page.h"
#include "apps/gtk/main_view.h"
#include "apps/gtk/member_centre_pages.h"
#include "apps/gtk/nearby_page.h"
#include "apps/gtk/picture_strip.h"
#include "apps/gtk/picture_view.h"
#include "apps/gtk/order_pages.h"
#include "apps/gtk/page_navigator.h"
#include "apps/gtk/screen_names.h"
#include "apps/gtk/tab_bar_page.h"
#include "apps/gtk/web_page_view.h"
#include "apps/gtk/wheel_page.h"
#include "apps/gtk/widget_finders.h"
#include "core/session/global_data.h"
#include "features/discovery/discovery_texts.h"
#include "features/discovery/nearby_view_controller.h"
#include "features/discovery/store_screens.h"
#include "features/member/account_centre_texts.h"
#include "features/member/member_centre_texts.h"
#include "features/orders/order_texts.h"
#include "features/referral/referral_texts.h"
#include "features/wallet/wallet_texts.h"
#include "features/wheel/wheel_texts.h"
#include "shell/h5_texts.h"
#include "shell/qx_h5_view_controller.h"
#include "shell/web_view_controller.h"
#include "shell/app_delegate.h"

namespace {

// The maps' tiles come from the embedded sandbox a moment after the map is shown.
constexpr std::chrono::milliseconds kTilesLoad{2000};

using namespace qmv;
using namespace qmv::gtk;

// Whether no stack below `root` is still sliding from one page to another.
bool transitionsEnded(Gtk::Widget& root) {
  if (auto* stack = dynamic_cast<Gtk::Stack*>(&root); stack != nullptr && stack->get_transition_running()) return false;
  for (Gtk::Widget* child = root.get_first_child(); child != nullptr; child = child->get_next_sibling()) {
    if (child->get_mapped() && !transitionsEnded(*child)) return false;
  }
  return true;
}

// Whether every picture on screen below `root` with an address has arrived.
bool picturesDrawn(Gtk::Widget& root) {
  for (Gtk::Widget* child = root.get_first_child(); child != nullptr; child = child->get_next_sibling()) {
    if (!child->get_mapped()) continue;
    auto* view = dynamic_cast<PictureView*>(child);
    if (view != nullptr && !view->url().empty() && !view->showsPicture()) return false;
    if (!picturesDrawn(*child)) return false;
  }
  return true;
}

int run(const std::filesystem::path& out) {
  if (!GtkDriver::initToolkit()) {
    std::cerr << "qmv-gtk-screenshots: no display\n";
    return 1;
  }
  std::filesystem::create_directories(out);
  const auto home = std::filesystem::temp_directory_path() / ("qmv-gtk-shots-" + std::to_string(::getpid()));
  std::filesystem::remove_all(home);
  int failures = 0;
  {
    GtkDriver driver(home.string(), "35.0606,118.3425");
    if (!driver.status().ok()) {
      std::cerr << "qmv-gtk-screenshots: " << driver.status().message() << '\n';
      return 1;
    }
    GtkFrontEnd& app = driver.app();
    const auto loaded = [&] {
      Gtk::Widget* cover = finders::findNamed(driver.top(), "loading");
      return cover == nullptr || !cover->get_visible();  // the state view is renamed once loaded
    };
    // The page on top, or with `wholeWindow` every pane the window shows.
    const auto shot = [&](const std::string& name, bool wholeWindow = false) {
      const auto shown = [&]() -> Gtk::Widget& { return wholeWindow ? app.view() : driver.top(); };
      driver.settle(std::chrono::milliseconds(400));
      driver.waitUntil([&] { return picturesDrawn(shown()) && transitionsEnded(shown()); }, std::chrono::seconds(10));
      // A page full of widgets (the city picker's letters) may take longer to get a size.
      driver.waitUntil([&] { return driver.top().get_width() > 0 && driver.top().get_height() > 0; },
                       std::chrono::seconds(10));
      const std::string path = (out / (name + ".png")).string();
      if (driver.renderToPng(shown(), path)) {
        std::cout << path << '\n';
      } else {
        std::cerr << "qmv-gtk-screenshots: could not render " << name << '\n';
        ++failures;
      }
    };
    // The first start shows the guide; the member goes on to the tabs.
    driver.waitUntil([&] { return driver.topName() == kGuideScreen || driver.topName() == kTabBarScreen; });
    if (driver.topName() == kGuideScreen) {
      shot("00-guide");
      app.appDelegate().showMainTabs();
    }
    app.appDelegate().removeLaunchImage();
    TabBarPage* tabs = nullptr;
    driver.waitUntil([&] { return (tabs = app.view().tabBar()) != nullptr; });
    auto& home = static_cast<HomePage&>(tabs->tab(0));
    // The stores are in and drawn (the page redraws on an idle turn after they arrive).
    driver.waitUntil([&] {
      return !home.screen().popularStores().empty() && finders::findNamed(driver.top(), "popular") != nullptr;
    });
    // The first banner's picture is in, and the slide from the guide has ended.
    driver.waitUntil([&] {
      auto* banner = dynamic_cast<PictureView*>(finders::findNamed(home, "banner-picture"));
      return banner != nullptr && banner->showsPicture();
    });
    driver.settle(std::chrono::milliseconds(1000));
    shot("01-home");

    tabs->select(1);
    driver.waitUntil([&] { return finders::findNamed(driver.top(), "stores") != nullptr; });
    shot("02-nearby");
    if (auto* filter = dynamic_cast<Gtk::Button*>(finders::findNamed(driver.top(), "filter-category"))) filter->activate();
    shot("03-nearby-category");
    if (auto* filter = dynamic_cast<Gtk::Button*>(finders::findNamed(driver.top(), "filter-category"))) filter->activate();
    auto& nearby = static_cast<NearbyPage&>(tabs->tab(1));
    nearby.showSearch(true);
    shot("04-search");
    nearby.showSearch(false);
    if (auto* face = dynamic_cast<Gtk::Button*>(finders::findNamed(driver.top(), "map-switch"))) face->activate();
    driver.waitUntil([&] { return finders::findNamed(driver.top(), "pin") != nullptr; }, std::chrono::seconds(5));
    driver.settle(kTilesLoad);
    shot("05-map");
    if (auto* face = dynamic_cast<Gtk::Button*>(finders::findNamed(driver.top(), "map-switch"))) face->activate();

    openStoreDetail(home.screen().popularStores().front());
    driver.waitUntil([&] { return finders::findNamed(driver.top(), "offers") != nullptr; });
    shot("06-store");
    if (auto* offers = finders::findNamed(driver.top(), "offers")) {
      if (auto* row = gtk_list_box_get_row_at_index(GTK_LIST_BOX(offers->gobj()), 0)) {
        adw_action_row_activate(ADW_ACTION_ROW(row));
      }
    }
    driver.waitUntil([&] { return driver.topName() == "QXActivitiesViewController" &&
                                  finders::findNamed(driver.top(), "call") != nullptr; });
    shot("07-offer");
    // The offer's pictures full screen, in the dark style.
    if (auto* strip = dynamic_cast<PictureStrip*>(finders::findNamed(driver.top(), "picture-strip"))) {
      strip->open(0);
      driver.waitUntil([&] { return driver.topName() == kImageBrowserScreen; });
      adw_style_manager_set_color_scheme(adw_style_manager_get_default(), ADW_COLOR_SCHEME_FORCE_DARK);
      shot("07-offer-pictures");
      adw_style_manager_set_color_scheme(adw_style_manager_get_default(), ADW_COLOR_SCHEME_DEFAULT);
      app.navigator().back();
    }
    app.navigator().popToRoot();

    app.navigator().push(kCityScreen);
    shot("08-city");
    app.navigator().popToRoot();

    tabs->select(4);
    shot("09-mine-signed-out");
    app.navigator().present(BaseViewController::kLoginScreen);
    shot("10-login");
    app.navigator().push("QXRegisterViewController");
    shot("11-register");
    app.navigator().pop();
    app.navigator().push("FindPwdViewController");
    shot("12-recover");
    app.navigator().dismiss();

    // Signed in as the demo member for the wallet screens.
    app.navigator().present(BaseViewController::kLoginScreen);
    driver.settle();
    if (auto* phone = dynamic_cast<Gtk::Entry*>(finders::findNamed(driver.top(), "phone"))) phone->set_text("13800000000");
    if (auto* password = dynamic_cast<Gtk::Entry*>(finders::findNamed(driver.top(), "password"))) password->set_text("qmv123");
    if (auto* login = finders::findButton(driver.top(), "登录")) login->activate();
    driver.waitUntil([&] { return GlobalData::sharedInstance().selfInfo() != nullptr && driver.topName() == kTabBarScreen; });
    shot("13-mine");
    tabs->select(2);
    driver.waitUntil([&] {
      auto* card = dynamic_cast<Gtk::Label*>(finders::findNamed(driver.top(), "card-line"));
      return card != nullptr && !card->get_text().empty();
    });
    shot("14-wealth");
    app.navigator().push(wallet_texts::kMyBankCardScreen);
    driver.settle();
    driver.waitUntil(loaded);
    shot("15-bank-card");
    app.navigator().push(wallet_texts::kBindScreen);
    shot("16-bind-card");
    app.navigator().popToRoot();
    app.navigator().push(wallet_texts::kWithDrawScreen);
    driver.settle();
    driver.waitUntil(loaded);
    shot("17-withdraw");
    app.navigator().popToRoot();

    // Checkout of the demo voucher: seven of them, more than the balance covers, so that the
    // payment channels show.
    app.navigator().push("QXActivitiesViewController", {{"commodityId", "2"}});
    // Once the offer is in; a tap ends in "clicked" (activate() waits out a press animation).
    driver.waitUntil([&] {
      Gtk::Widget* buy = finders::findNamed(driver.top(), "buy");
      return buy != nullptr && buy->is_sensitive() && buy->get_mapped();
    });
    if (auto* buy = finders::findNamed(driver.top(), "buy")) g_signal_emit_by_name(buy->gobj(), "clicked");
    driver.waitUntil([&] { return driver.topName() == "QXSubmitOderViewController"; });
    for (int i = 0; i < 6; ++i) {
      if (auto* plus = finders::findNamed(driver.top(), "plus")) g_signal_emit_by_name(plus->gobj(), "clicked");
    }
    shot("18-submit");
    if (auto* submit = finders::findNamed(driver.top(), "submit")) g_signal_emit_by_name(submit->gobj(), "clicked");
    driver.waitUntil([&] { return driver.topName() == "QXPayNowViewController"; });
    shot("19-pay-now");
    app.navigator().popToRoot();

    // The member's own screens.
    app.navigator().push(order_texts::kMyOrdersScreen, {{"type", 0}});
    driver.waitUntil([&] {
      auto* orders = dynamic_cast<OrderListPage*>(&driver.top());
      return orders != nullptr && orders->rows().size() > 0 && !orders->screen().isLoading();
    });
    driver.settle();
    shot("20-orders");
    driver.top().activate_action("page.open-row", Glib::Variant<guint32>::create(0));
    driver.waitUntil([&] { return finders::findNamed(driver.top(), "qr") != nullptr; });
    shot("21-order-code");
    app.navigator().popToRoot();
    app.navigator().push(referral_texts::kMyContactScreen);
    driver.waitUntil([&] { return finders::findNamed(driver.top(), "contacts") != nullptr; });
    shot("22-contacts");
    app.navigator().popToRoot();
    app.navigator().push(wheel_texts::kWheelScreen);
    driver.waitUntil([&] {
      auto* wheel = dynamic_cast<WheelPage*>(&driver.top());
      return finders::shows(driver.top(), "剩余抽奖次数: 3") && wheel != nullptr && wheel->face().showsPicture();
    });
    shot("23-wheel");
    // The face and its pointer read in the dark style too.
    adw_style_manager_set_color_scheme(adw_style_manager_get_default(), ADW_COLOR_SCHEME_FORCE_DARK);
    shot("23-wheel-dark");
    adw_style_manager_set_color_scheme(adw_style_manager_get_default(), ADW_COLOR_SCHEME_DEFAULT);
    app.navigator().popToRoot();
    app.navigator().push(h5_texts::kH5Screen, {{"h5Type", h5_texts::kCoinType}});
    driver.waitUntil([&] {
      auto* page = dynamic_cast<H5Page*>(&driver.top());
      const WebView* web = page != nullptr ? page->screen().webView() : nullptr;
      return web != nullptr && web->hasShownPage();
    }, std::chrono::seconds(30));
    shot("24-page");
    app.navigator().popToRoot();
    tabs->select(3);
    driver.waitUntil([&] {
      const QXH5ViewController* community = app.appDelegate().tabBarViewCtrl()->communityViewController();
      const WebView* web = community != nullptr ? community->webView() : nullptr;
      return web != nullptr && web->hasShownPage();
    }, std::chrono::seconds(30));
    shot("25-community");

    // The rating of a store order waiting for it, and a home banner's plain page.
    tabs->select(0);
    app.navigator().push(order_texts::kMyOrdersScreen, {{"type", 2}});
    driver.waitUntil([&] { return finders::findButton(driver.top(), order_texts::kButtonRate) != nullptr; });
    if (auto* rate = finders::findButton(driver.top(), order_texts::kButtonRate)) g_signal_emit_by_name(rate->gobj(), "clicked");
    driver.waitUntil([&] { return driver.topName() == order_texts::kGradeStoreScreen; });
    if (auto* star = finders::findNamed(driver.top(), "star4")) g_signal_emit_by_name(star->gobj(), "clicked");
    if (auto* comment = dynamic_cast<Gtk::TextView*>(finders::findNamed(driver.top(), "comment"))) {
      comment->get_buffer()->set_text("锅底很香，上菜也快。");
    }
    shot("26-rate");
    app.navigator().popToRoot();
    if (home.screen().didSelectBanner(1)) {
      driver.waitUntil([&] {
        auto* page = dynamic_cast<PlainWebPage*>(&driver.top());
        const WebView* web = page != nullptr ? page->screen().webView() : nullptr;
        return web != nullptr && web->hasShownPage();
      }, std::chrono::seconds(30));
      shot("27-web-page");
    }
    app.navigator().popToRoot();

    // Before the messages are opened (which reads them): the member tab with its badge.
    tabs->select(4);
    driver.waitUntil([&] {
      Gtk::Widget* badge = finders::findNamed(driver.top(), "unread-badge");
      return badge != nullptr && badge->get_visible();
    });
    shot("28-mine-badge");
    app.navigator().push(discovery_texts::kFavoritesScreen);
    driver.waitUntil([&] {
      auto* page = dynamic_cast<FavoritesPage*>(&driver.top());
      return page != nullptr && page->rows().size() > 0 && !page->isLoading();
    });
    driver.settle();
    shot("29-favorites");
    app.navigator().popToRoot();
    app.navigator().push(member_centre_texts::kMessagesScreen);
    driver.waitUntil([&] {
      auto* page = dynamic_cast<MessagesPage*>(&driver.top());
      return page != nullptr && page->rows().size() > 0 && !page->screen().isLoading();
    });
    driver.settle();
    shot("30-messages");
    app.navigator().popToRoot();
    app.navigator().push(member_centre_texts::kFeedbackScreen);
    shot("31-feedback");
    app.navigator().popToRoot();
    app.navigator().push(account_centre_texts::kChangePasswordScreen);
    shot("32-password");
    app.navigator().popToRoot();
    app.navigator().push(account_centre_texts::kMemberLevelScreen);
    shot("33-level");
    app.navigator().popToRoot();
    app.navigator().push(account_centre_texts::kProfileScreen);
    driver.waitUntil([&] { return finders::shows(driver.top(), "演示会员"); });
    shot("34-profile");
    app.navigator().popToRoot();
    app.navigator().push(account_centre_texts::kInviteScreen);
    driver.waitUntil([&] { return finders::findNamed(driver.top(), "invite-qr") != nullptr; });
    shot("35-invite");
    app.navigator().popToRoot();

    // A desktop window: the lists with what they opened beside them.
    const auto styled = [&](AdwColorScheme scheme) {
      adw_style_manager_set_color_scheme(adw_style_manager_get_default(), scheme);
    };
    const auto openStoreAndOffer = [&](const std::string& prefix, bool wholeWindow) {
      openStoreDetail(home.screen().popularStores().front());
      driver.waitUntil([&] { return finders::findNamed(driver.top(), "offers") != nullptr; });
      shot(prefix + "store", wholeWindow);
      if (auto* offers = finders::findNamed(driver.top(), "offers")) {
        if (auto* row = gtk_list_box_get_row_at_index(GTK_LIST_BOX(offers->gobj()), 0)) {
          adw_action_row_activate(ADW_ACTION_ROW(row));
        }
      }
      // Laid out in its pane, not only made.
      driver.waitUntil([&] {
        Gtk::Widget* buy = driver.topName() == discovery_texts::kActivityScreen ? finders::findNamed(driver.top(), "buy")
                                                                                : nullptr;
        return buy != nullptr && buy->get_mapped() && buy->get_width() > 0 && buy->is_sensitive();
      }, std::chrono::seconds(5));
      shot(prefix + "offer", wholeWindow);
      app.navigator().popToRoot();
    };
    driver.resize(1280, 800);
    tabs->select(0);
    shot("40-desktop-home", true);
    openStoreAndOffer("41-desktop-", true);
    openStoreDetail(home.screen().popularStores().front());
    driver.waitUntil([&] { return finders::findNamed(driver.top(), "offers") != nullptr; });
    openStoreMap(home.screen().popularStores().front());
    driver.waitUntil([&] { return driver.topName() == discovery_texts::kMapScreen; });
    driver.settle(kTilesLoad);
    shot("42-desktop-map", true);
    app.navigator().popToRoot();
    app.navigator().push(order_texts::kMyOrdersScreen, {{"type", 0}});
    driver.waitUntil([&] {
      auto* orders = dynamic_cast<OrderListPage*>(&driver.top());
      return orders != nullptr && orders->rows().size() > 0 && !orders->screen().isLoading();
    });
    driver.top().activate_action("page.open-row", Glib::Variant<guint32>::create(0));
    driver.waitUntil([&] { return finders::findNamed(driver.top(), "qr") != nullptr; });
    shot("43-desktop-order", true);
    app.navigator().popToRoot();

    // The dark style, on the desktop and on a phone.
    styled(ADW_COLOR_SCHEME_FORCE_DARK);
    openStoreAndOffer("50-dark-desktop-", true);
    driver.resize(GtkDriver::kWidth, GtkDriver::kHeight);
    tabs->select(0);
    shot("51-dark-home");
    openStoreAndOffer("52-dark-", false);
    tabs->select(4);
    shot("53-dark-mine");
    styled(ADW_COLOR_SCHEME_DEFAULT);
  }
  std::filesystem::remove_all(home);
  return failures == 0 ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::cerr << "usage: qmv-gtk-screenshots OUTDIR\n";
    return 2;
  }
  return run(argv[1]);
}
