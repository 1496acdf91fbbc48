// Every page of the graphical client as a screen reader and a keyboard meet it: each
// control a member acts on has a name and a role that says what it does, and Tab reaches
// it; and coloured text and the drawn wheel stay readable in the light and dark styles.
//
// GTK 4.8 reads accessible values back only through its test API, which hands back a
// property's value when it differs from the one expected; a name is what GTK itself
// gives a screen reader: the label property, else the names of the widgets a control is
// labelled by. GTK 4.8 computes no name from a button's content, so a button holding a
// box of labels is as silent as an icon-only one.
#include <adwaita.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <memory>
#include <set>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "apps/gtk/gtk_client_test_support.h"
#include "apps/gtk/home_page.h"
#include "apps/gtk/image_browser_page.h"
#include "apps/gtk/nearby_page.h"
#include "apps/gtk/order_pages.h"
#include "apps/gtk/picture_strip.h"
#include "apps/gtk/wheel_page.h"
#include "apps/gtk/zoomable_picture.h"
#include "core/common/color_contrast.h"
#include "core/session/account_texts.h"
#include "core/session/base_view_controller.h"
#include "features/discovery/discovery_texts.h"
#include "features/discovery/store_screens.h"
#include "features/member/account_centre_texts.h"
#include "features/member/member_centre_texts.h"
#include "features/orders/checkout_texts.h"
#include "features/orders/order_texts.h"
#include "features/referral/referral_texts.h"
#include "features/wallet/wallet_texts.h"
#include "features/wheel/wheel_texts.h"
#include "shell/h5_texts.h"

namespace qmv::gtk {
namespace {

// A web page's content reaches a screen reader through WebKit's own tree, not GTK's widgets.
bool isWebView(GtkWidget* widget) {
  const GType webView = g_type_from_name("WebKitWebView");
  return webView != 0 && G_TYPE_CHECK_INSTANCE_TYPE(widget, webView);
}

void forEachBelow(GtkWidget* root, const std::function<void(GtkWidget*)>& visit) {
  for (GtkWidget* c = gtk_widget_get_first_child(root); c != nullptr; c = gtk_widget_get_next_sibling(c)) {
    visit(c);
    if (!isWebView(c)) forEachBelow(c, visit);
  }
}

std::string labelProperty(GtkWidget* widget) {
  auto* accessible = GTK_ACCESSIBLE(widget);
  if (!gtk_test_accessible_has_property(accessible, GTK_ACCESSIBLE_PROPERTY_LABEL)) return {};
  char* value = gtk_test_accessible_check_property(accessible, GTK_ACCESSIBLE_PROPERTY_LABEL, "\x01");
  std::string label = value != nullptr ? value : "";
  g_free(value);
  return label;
}

// The name a screen reader gets for `widget`; `window` holds what it may be labelled by,
// whose own label property GTK reads (and no further).
std::string accessibleName(GtkWidget* widget, GtkWidget* window) {
  std::string name = labelProperty(widget);
  if (!name.empty()) return name;
  auto* accessible = GTK_ACCESSIBLE(widget);
  if (!gtk_test_accessible_has_relation(accessible, GTK_ACCESSIBLE_RELATION_LABELLED_BY)) return {};
  // The one widget it is labelled by (GTK compares the whole list), searched in the window.
  std::function<std::string(GtkWidget*)> search = [&](GtkWidget* root) -> std::string {
    for (GtkWidget* c = gtk_widget_get_first_child(root); c != nullptr; c = gtk_widget_get_next_sibling(c)) {
      char* differs = gtk_test_accessible_check_relation(accessible, GTK_ACCESSIBLE_RELATION_LABELLED_BY, c, nullptr);
      const bool match = differs == nullptr;
      g_free(differs);
      if (match) return labelProperty(c);
      if (std::string found = search(c); !found.empty()) return found;
    }
    return {};
  };
  return search(window);
}

bool has(GtkWidget* widget, GType controllerType) {
  bool found = false;
  GListModel* controllers = gtk_widget_observe_controllers(widget);
  for (guint i = 0; !found && i < g_list_model_get_n_items(controllers); ++i) {
    auto* controller = static_cast<GObject*>(g_list_model_get_item(controllers, i));
    found = G_TYPE_CHECK_INSTANCE_TYPE(controller, controllerType);
    g_object_unref(controller);
  }
  g_object_unref(controllers);
  return found;
}

// A widget a pointer taps that GTK gives no keyboard handling of its own: a box, a
// picture or a drawing of the client's that reacts to clicks.
bool tappedByPointerOnly(GtkWidget* widget) {
  const bool plain = GTK_IS_BOX(widget) || GTK_IS_PICTURE(widget) || GTK_IS_IMAGE(widget) || GTK_IS_SCROLLED_WINDOW(widget) ||
                     GTK_IS_DRAWING_AREA(widget) || GTK_IS_OVERLAY(widget) || GTK_IS_GRID(widget) ||
                     g_str_has_prefix(G_OBJECT_TYPE_NAME(widget), "gtkmm__CustomObject_");
  return plain && has(widget, GTK_TYPE_GESTURE_CLICK);
}

bool isControl(GtkWidget* widget) {
  // An entry's icons belong to the entry, which is named as a whole.
  if (GTK_IS_IMAGE(widget) && gtk_widget_get_ancestor(widget, GTK_TYPE_ENTRY) != nullptr) return false;
  if (GTK_IS_LIST_BOX_ROW(widget)) return gtk_list_box_row_get_activatable(GTK_LIST_BOX_ROW(widget));
  // A list view's item takes the focus for its row.
  if (GTK_IS_LIST_VIEW(gtk_widget_get_parent(widget))) return gtk_widget_get_focusable(widget);
  // A composite field is named as a whole; the text inside it is its part.
  if (GTK_IS_TEXT(widget)) {
    GtkWidget* parent = gtk_widget_get_parent(widget);
    return !(GTK_IS_ENTRY(parent) || GTK_IS_SEARCH_ENTRY(parent) || GTK_IS_PASSWORD_ENTRY(parent) ||
             GTK_IS_SPIN_BUTTON(parent) || gtk_widget_get_ancestor(widget, ADW_TYPE_ENTRY_ROW) != nullptr);
  }
  return GTK_IS_BUTTON(widget) || GTK_IS_CHECK_BUTTON(widget) || GTK_IS_SWITCH(widget) || GTK_IS_ENTRY(widget) ||
         GTK_IS_SEARCH_ENTRY(widget) || GTK_IS_PASSWORD_ENTRY(widget) || GTK_IS_SPIN_BUTTON(widget) ||
         GTK_IS_TEXT_VIEW(widget) || GTK_IS_SCALE(widget) || GTK_IS_DROP_DOWN(widget) || ADW_IS_ENTRY_ROW(widget) ||
         tappedByPointerOnly(widget) || (gtk_widget_get_focusable(widget) && GTK_IS_DRAWING_AREA(widget));
}

bool rolePlaysControl(GtkWidget* widget) {
  GtkAccessibleRole role = GTK_ACCESSIBLE_ROLE_NONE;
  g_object_get(widget, "accessible-role", &role, nullptr);
  switch (role) {
    case GTK_ACCESSIBLE_ROLE_GENERIC:
    case GTK_ACCESSIBLE_ROLE_GROUP:
    case GTK_ACCESSIBLE_ROLE_IMG:
    case GTK_ACCESSIBLE_ROLE_LABEL:
    case GTK_ACCESSIBLE_ROLE_NONE:
    case GTK_ACCESSIBLE_ROLE_PRESENTATION:
    case GTK_ACCESSIBLE_ROLE_WIDGET:
      return false;
    default:
      return true;
  }
}

// Whether the widget is in sight: it and its ancestors shown, no stack page out of sight.
bool shown(GtkWidget* widget) {
  for (GtkWidget* w = widget; w != nullptr; w = gtk_widget_get_parent(w)) {
    if (!gtk_widget_get_visible(w) || !gtk_widget_get_child_visible(w)) return false;
  }
  return true;
}

// The control's type, name and tip, and the nearest named widget it is in.
std::string describe(GtkWidget* widget) {
  std::ostringstream out;
  out << G_OBJECT_TYPE_NAME(widget) << " #" << gtk_widget_get_name(widget);
  if (const char* tip = gtk_widget_get_tooltip_text(widget)) out << " tip \"" << tip << '"';
  for (GtkWidget* w = gtk_widget_get_parent(widget); w != nullptr; w = gtk_widget_get_parent(w)) {
    if (std::string_view(gtk_widget_get_name(w)) != G_OBJECT_TYPE_NAME(w)) {
      out << " in #" << gtk_widget_get_name(w);
      break;
    }
  }
  return out.str();
}

// The widgets Tab passes through in `window`, from wherever the focus is, once round.
std::set<GtkWidget*> tabStops(GtkWidget* window) {
  std::set<GtkWidget*> stops;
  GtkRoot* root = GTK_ROOT(window);
  gtk_root_set_focus(root, nullptr);
  for (int i = 0; i < 3000; ++i) {
    if (!gtk_widget_child_focus(window, GTK_DIR_TAB_FORWARD)) continue;  // past the end: round again
    GtkWidget* focus = gtk_root_get_focus(root);
    if (focus == nullptr || !stops.insert(focus).second) break;
  }
  return stops;
}

bool reachedByTab(GtkWidget* control, const std::set<GtkWidget*>& stops) {
  for (GtkWidget* stop : stops) {
    if (stop == control || gtk_widget_is_ancestor(stop, control)) return true;
  }
  // Tab enters a list once; the arrows go through its rows.
  if (GTK_IS_LIST_BOX_ROW(control) || GTK_IS_LIST_VIEW(gtk_widget_get_parent(control))) {
    GtkWidget* list = gtk_widget_get_ancestor(control, GTK_TYPE_LIST_BOX);
    if (list == nullptr) list = gtk_widget_get_ancestor(control, GTK_TYPE_LIST_VIEW);
    for (GtkWidget* stop : stops) {
      if (list != nullptr && gtk_widget_is_ancestor(stop, list)) return true;
    }
  }
  return false;
}

double contrast(const GdkRGBA& a, const GdkRGBA& b) {
  const auto colour = [](const GdkRGBA& c) {
    return Color{int(std::lround(c.red * 255)), int(std::lround(c.green * 255)), int(std::lround(c.blue * 255))};
  };
  return contrastRatio(colour(a), colour(b));
}

// The colour at (x, y) of `widget` drawn by itself over `background`.
GdkRGBA drawnAt(GtkWidget* widget, int x, int y, const GdkRGBA& background) {
  const int width = gtk_widget_get_width(widget);
  const int height = gtk_widget_get_height(widget);
  GdkPaintable* paintable = gtk_widget_paintable_new(widget);
  GtkSnapshot* snapshot = gtk_snapshot_new();
  gdk_paintable_snapshot(paintable, snapshot, width, height);
  GskRenderNode* node = gtk_snapshot_free_to_node(snapshot);
  GdkRGBA result = background;
  if (node != nullptr) {
    const graphene_rect_t bounds = GRAPHENE_RECT_INIT(0, 0, static_cast<float>(width), static_cast<float>(height));
    GdkTexture* texture = gsk_renderer_render_texture(gtk_native_get_renderer(gtk_widget_get_native(widget)), node, &bounds);
    std::vector<guchar> pixels(static_cast<std::size_t>(width) * height * 4);
    gdk_texture_download(texture, pixels.data(), static_cast<gsize>(width) * 4);
    // Premultiplied B, G, R, A.
    const guchar* p = &pixels[(static_cast<std::size_t>(y) * width + x) * 4];
    const double alpha = p[3] / 255.0;
    result.blue = static_cast<float>(p[0] / 255.0 + background.blue * (1 - alpha));
    result.green = static_cast<float>(p[1] / 255.0 + background.green * (1 - alpha));
    result.red = static_cast<float>(p[2] / 255.0 + background.red * (1 - alpha));
    g_object_unref(texture);
    gsk_render_node_unref(node);
  }
  g_object_unref(paintable);
  return result;
}

// Whether a control below `root` says it controls `target` (the keys' way to what a
// pointer does on it).
bool controlledByControl(GtkWidget* target, GtkWidget* root) {
  bool found = false;
  forEachBelow(root, [&](GtkWidget* widget) {
    if (found || widget == target || !isControl(widget) || tappedByPointerOnly(widget)) return;
    auto* accessible = GTK_ACCESSIBLE(widget);
    if (!gtk_test_accessible_has_relation(accessible, GTK_ACCESSIBLE_RELATION_CONTROLS)) return;
    char* differs = gtk_test_accessible_check_relation(accessible, GTK_ACCESSIBLE_RELATION_CONTROLS, target, nullptr);
    found = differs == nullptr;
    g_free(differs);
  });
  return found;
}

class AccessibilityTest : public testsupport::GtkClientTest {
 protected:
  // Reads the page on top as `page` once `ready` holds, noting every control without a name,
  // without a role that says it acts, or out of the keyboard's reach.
  void audit(const std::string& page, const std::function<bool()>& ready = nullptr) {
    if (ready) {
      EXPECT_TRUE(driver_->waitUntil(ready)) << page << " never got ready";
    }
    driver_->settle();
    GtkWidget* top = this->top().gobj();
    // While pages slide, the one leaving is still there to Tab into.
    if (GtkWidget* stack = gtk_widget_get_ancestor(top, GTK_TYPE_STACK)) {
      EXPECT_TRUE(driver_->waitUntil([&] { return !gtk_stack_get_transition_running(GTK_STACK(stack)); })) << page;
    }
    GtkWidget* window = GTK_WIDGET(gtk_widget_get_root(top));
    ASSERT_NE(window, nullptr) << page;
    ++audited_;
    const std::set<GtkWidget*> stops = tabStops(window);
    forEachBelow(top, [&](GtkWidget* widget) {
      if (!isControl(widget) || !shown(widget)) return;
      // What a pointer taps on a picture or a box, a control of its own offers to the keys.
      if (tappedByPointerOnly(widget)) {
        if (!controlledByControl(widget, top)) faults_.push_back(page + ": only a pointer acts on: " + describe(widget));
        return;
      }
      if (accessibleName(widget, window).empty()) faults_.push_back(page + ": no name: " + describe(widget));
      if (!rolePlaysControl(widget)) faults_.push_back(page + ": no control role: " + describe(widget));
      // A check that only shows its row's state is passed by with the row; GTK keeps its
      // window buttons out of the Tab order (the window has its own keys).
      const bool stateOnly = !gtk_widget_get_focusable(widget) && !gtk_widget_get_can_target(widget);
      const bool windowButton = gtk_widget_get_ancestor(widget, GTK_TYPE_WINDOW_CONTROLS) != nullptr;
      const bool mayAct = gtk_widget_is_sensitive(widget) && gtk_widget_get_mapped(widget) && !stateOnly && !windowButton;
      if (mayAct && !reachedByTab(widget, stops)) faults_.push_back(page + ": Tab never reaches: " + describe(widget));
    });
  }

  void expectNoFaults() {
    std::string all;
    for (const std::string& fault : faults_) all += fault + '\n';
    EXPECT_TRUE(faults_.empty()) << faults_.size() << " faults on " << audited_ << " pages:\n" << all;
  }

  bool topIs(const std::string& name) {
    return driver_->waitUntil([&] { return driver_->topName() == name; });
  }
  bool pushed(const std::string& name, const Json& payload = nullptr) {
    driver_->app().navigator().popToRoot();
    driver_->app().navigator().push(name, payload);
    return topIs(name);
  }

  // Runs `check` in the light style, then in the dark one ("light", "dark"), and gives the
  // choice back to the system afterwards, however the check ended.
  void inLightAndDarkStyles(const std::function<void(const char* style)>& check) {
    AdwStyleManager* styles = adw_style_manager_get_default();
    const std::unique_ptr<AdwStyleManager, void (*)(AdwStyleManager*)> restore(
        styles, [](AdwStyleManager* m) { adw_style_manager_set_color_scheme(m, ADW_COLOR_SCHEME_DEFAULT); });
    for (const AdwColorScheme scheme : {ADW_COLOR_SCHEME_FORCE_LIGHT, ADW_COLOR_SCHEME_FORCE_DARK}) {
      adw_style_manager_set_color_scheme(styles, scheme);
      driver_->settle();
      check(scheme == ADW_COLOR_SCHEME_FORCE_DARK ? "dark" : "light");
    }
  }

  int audited_ = 0;
  std::vector<std::string> faults_;
};

TEST_F(AccessibilityTest, EveryPageSignedOutNamesAndReachesItsControls) {
  auto& home = static_cast<HomePage&>(tabs_->tab(0));
  audit("home", [&] {
    return !home.screen().popularStores().empty() && finders::findNamed(top(), "popular") != nullptr;
  });
  tabs_->select(1);
  audit("nearby", [&] { return finders::findNamed(top(), "stores") != nullptr; });
  ASSERT_TRUE(tap("filter-category"));
  audit("nearby categories");
  ASSERT_TRUE(tap("filter-category"));
  auto& nearby = static_cast<NearbyPage&>(tabs_->tab(1));
  nearby.showSearch(true);
  audit("nearby search");
  nearby.showSearch(false);
  ASSERT_TRUE(tap("map-switch"));
  audit("nearby map", [&] { return finders::findNamed(top(), "pin") != nullptr; });
  tabs_->select(3);
  audit("community");
  tabs_->select(4);
  audit("member signed out");
  ASSERT_TRUE(pushed(kCityScreen));
  audit("city");
  driver_->app().navigator().present(BaseViewController::kLoginScreen);
  ASSERT_TRUE(topIs(BaseViewController::kLoginScreen));
  audit("login");
  driver_->app().navigator().push(account_texts::kRegisterScreen);
  ASSERT_TRUE(topIs(account_texts::kRegisterScreen));
  audit("register");
  driver_->app().navigator().pop();
  driver_->app().navigator().push(account_texts::kFindPwdScreen);
  ASSERT_TRUE(topIs(account_texts::kFindPwdScreen));
  audit("recover");
  driver_->app().navigator().push(account_texts::kFindPwdStep2Screen, {{"phone", "13800000000"}});
  ASSERT_TRUE(topIs(account_texts::kFindPwdStep2Screen));
  audit("recover step 2");
  driver_->app().navigator().dismiss();

  const StoreInfoModel store = home.screen().popularStores().front();
  driver_->app().navigator().popToRoot();
  openStoreDetail(store);
  ASSERT_TRUE(topIs(discovery_texts::kStoreDetailScreen));
  audit("store", [&] { return finders::findNamed(top(), "offers") != nullptr; });
  openStoreMap(store);
  ASSERT_TRUE(topIs(discovery_texts::kMapScreen));
  audit("store map");
  ASSERT_TRUE(pushed(discovery_texts::kCommentsScreen, {{"storeId", store.storeId}}));
  audit("comments");
  ASSERT_TRUE(pushed(discovery_texts::kActivityScreen, {{"commodityId", "2"}}));
  audit("offer", [&] { return finders::findNamed(top(), "picture-strip") != nullptr; });
  if (auto* strip = dynamic_cast<PictureStrip*>(finders::findNamed(top(), "picture-strip"))) strip->open(0);
  ASSERT_TRUE(topIs(kImageBrowserScreen));
  audit("pictures");
  // The zoom button does what a double click does.
  auto* browser = dynamic_cast<ImageBrowserPage*>(&top());
  ASSERT_NE(browser, nullptr);
  ASSERT_TRUE(tap("zoom"));
  EXPECT_GT(browser->picture(0).zoom(), 1.0);
  audit("pictures zoomed");
  driver_->app().navigator().popToRoot();
  ASSERT_TRUE(home.screen().didSelectBanner(1));
  ASSERT_TRUE(topIs(discovery_texts::kWebScreen));
  audit("web page");
  ASSERT_TRUE(pushed(kGuideScreen));
  audit("guide");
  expectNoFaults();
}

TEST_F(AccessibilityTest, EveryPageSignedInNamesAndReachesItsControls) {
  signIn("13800000000", "qmv123");
  tabs_->select(4);
  audit("member", [&] { return finders::findNamed(top(), "unread-badge") != nullptr; });
  tabs_->select(2);
  audit("wealth", [&] {
    auto* card = dynamic_cast<Gtk::Label*>(finders::findNamed(top(), "card-line"));
    return card != nullptr && !card->get_text().empty();
  });
  const std::vector<std::pair<std::string, Json>> plain = {
      {wallet_texts::kMyBankCardScreen, nullptr},
      {wallet_texts::kBindScreen, nullptr},
      {wallet_texts::kWithDrawScreen, nullptr},
      {wallet_texts::kFundRecordScreen, {{"type", 0}}},
      {wallet_texts::kVoucherScreen, nullptr},
      {discovery_texts::kMyRatingsScreen, nullptr},
      {discovery_texts::kFavoritesScreen, nullptr},
      {member_centre_texts::kMessagesScreen, nullptr},
      {member_centre_texts::kFeedbackScreen, nullptr},
      {account_centre_texts::kChangePasswordScreen, nullptr},
      {account_centre_texts::kMemberLevelScreen, nullptr},
      {account_centre_texts::kProfileScreen, nullptr},
      {account_centre_texts::kChangePhoneScreen, nullptr},
      {account_centre_texts::kInviteScreen, nullptr},
      {wheel_texts::kWheelScreen, nullptr},
      {h5_texts::kH5Screen, {{"h5Type", h5_texts::kCoinType}}},
  };
  for (const auto& [name, payload] : plain) {
    ASSERT_TRUE(pushed(name, payload)) << name;
    audit(name, [&] {
      Gtk::Widget* cover = finders::findNamed(top(), "loading");
      return cover == nullptr || !cover->get_visible();
    });
  }

  ASSERT_TRUE(pushed(referral_texts::kMyContactScreen));
  audit("contacts", [&] { return finders::findNamed(top(), "contacts") != nullptr; });
  top().activate_action("page.open-row", Glib::Variant<guint32>::create(0));
  ASSERT_TRUE(topIs(referral_texts::kSecondContactScreen));
  audit("second contacts");

  ASSERT_TRUE(pushed(order_texts::kMyOrdersScreen, {{"type", 0}}));
  audit("orders", [&] {
    auto* orders = dynamic_cast<OrderListPage*>(&top());
    return orders != nullptr && orders->rows().size() > 0 && !orders->screen().isLoading();
  });
  top().activate_action("page.open-row", Glib::Variant<guint32>::create(0));
  audit("order", [&] { return finders::findNamed(top(), "qr") != nullptr; });
  ASSERT_TRUE(pushed(order_texts::kMyOrdersScreen, {{"type", 2}}));
  ASSERT_TRUE(driver_->waitUntil([&] { return finders::findButton(top(), order_texts::kButtonRate) != nullptr; }));
  top().activate_action("page.open-row", Glib::Variant<guint32>::create(0));
  ASSERT_TRUE(topIs(order_texts::kStoreOrderDetailScreen));
  audit("store order");
  ASSERT_TRUE(pushed(order_texts::kMyOrdersScreen, {{"type", 2}}));
  ASSERT_TRUE(tap(order_texts::kButtonRate));
  ASSERT_TRUE(topIs(order_texts::kGradeStoreScreen));
  audit("rate");

  ASSERT_TRUE(pushed(discovery_texts::kActivityScreen, {{"commodityId", "2"}}));
  ASSERT_TRUE(tap("buy", true));
  ASSERT_TRUE(topIs(checkout_texts::kSubmitScreen));
  audit("submit");
  for (int i = 0; i < 6; ++i) ASSERT_TRUE(tap("plus"));
  ASSERT_TRUE(tap("submit"));
  ASSERT_TRUE(topIs(checkout_texts::kPayNowScreen));
  ASSERT_TRUE(payNowReady());
  audit("pay now");
  expectNoFaults();
}

std::string rgb(const GdkRGBA& c) {
  std::ostringstream out;
  out << c.red * 255 << ',' << c.green * 255 << ',' << c.blue * 255;
  return out.str();
}

// Text on a coloured background, a category's name in its colour on the window and the
// wheel's pointer: each reads at the ratio its size needs (the launch view's name and a
// banner's title are large text) in both styles. The ratios the colours are chosen for
// are the core's; here, that the pages apply them in either style.
TEST_F(AccessibilityTest, ColouredTextAndTheWheelPointerReadInLightAndDarkStyles) {
  auto& home = static_cast<HomePage&>(tabs_->tab(0));
  const auto categoryNames = [&] {
    return below(GTK_WIDGET(home.gobj()), [](GtkWidget* c) {
      return GTK_IS_LABEL(c) && std::string_view(gtk_widget_get_name(c)) == "category-name";
    });
  };
  ASSERT_TRUE(driver_->waitUntil([&] { return categoryNames().size() == 5; })) << categoryNames().size();
  auto* categories = dynamic_cast<Gtk::Box*>(finders::findNamed(home, "categories"));
  ASSERT_NE(categories, nullptr);
  // The launch view and a banner before its picture, drawn as they are styled.
  std::vector<Gtk::Label*> samples;
  for (const char* style : {"launch", "banner"}) {
    auto* sample = Gtk::make_managed<Gtk::Label>("qmv");
    sample->add_css_class(style);
    sample->add_css_class("title-2");
    sample->set_size_request(240, 120);
    categories->append(*sample);
    samples.push_back(sample);
  }
  inLightAndDarkStyles([&](const char* named) {
    GdkRGBA window;
    ASSERT_TRUE(gtk_style_context_lookup_color(gtk_widget_get_style_context(GTK_WIDGET(home.gobj())), "window_bg_color",
                                               &window));
    for (Gtk::Label* sample : samples) {
      GtkWidget* widget = GTK_WIDGET(sample->gobj());
      GdkRGBA text;
      gtk_style_context_get_color(gtk_widget_get_style_context(widget), &text);
      const int w = gtk_widget_get_width(widget);
      const int h = gtk_widget_get_height(widget);
      ASSERT_GT(w, 40);
      ASSERT_GT(h, 40);
      // Both ends of the gradient, inside the rounded corners.
      for (const auto& [x, y] :
           {std::pair{w / 2, 1}, std::pair{w / 2, h - 2}, std::pair{14, 14}, std::pair{w - 15, h - 15}}) {
        const GdkRGBA under = drawnAt(widget, x, y, window);
        EXPECT_GE(contrast(text, under), kLargeTextContrast)
            << named << ' ' << sample->get_css_classes()[0] << ": " << rgb(text) << " on " << rgb(under);
      }
    }
    for (GtkWidget* c : categoryNames()) {
      PangoAttrList* attributes = gtk_label_get_attributes(GTK_LABEL(c));
      ASSERT_NE(attributes, nullptr);
      PangoAttrIterator* at = pango_attr_list_get_iterator(attributes);
      const auto* foreground = reinterpret_cast<PangoAttrColor*>(pango_attr_iterator_get(at, PANGO_ATTR_FOREGROUND));
      const GdkRGBA colour = foreground == nullptr
                                 ? GdkRGBA{}
                                 : GdkRGBA{foreground->color.red / 65535.0f, foreground->color.green / 65535.0f,
                                           foreground->color.blue / 65535.0f, 1};
      pango_attr_iterator_destroy(at);
      ASSERT_NE(foreground, nullptr);
      EXPECT_GE(contrast(colour, window), kNormalTextContrast)
          << named << ' ' << gtk_label_get_text(GTK_LABEL(c)) << ": " << rgb(colour) << " on " << rgb(window);
    }
  });
  for (Gtk::Label* sample : samples) categories->remove(*sample);

  // The wheel's pointer stands above the face, on the window's own background.
  signIn("13800000000", "qmv123");
  ASSERT_TRUE(pushed(wheel_texts::kWheelScreen));
  auto* page = dynamic_cast<WheelPage*>(&top());
  ASSERT_NE(page, nullptr);
  ASSERT_TRUE(waitFor("剩余抽奖次数: 3"));
  // The wheel's picture comes after the count and redraws the face: measure the face it settles on.
  ASSERT_TRUE(driver_->waitUntil([&] { return page->face().showsPicture(); }));
  inLightAndDarkStyles([&](const char* named) {
    GtkWidget* face = GTK_WIDGET(page->face().gobj());
    GdkRGBA background;
    ASSERT_TRUE(gtk_style_context_lookup_color(gtk_widget_get_style_context(face), "window_bg_color", &background));
    const int width = gtk_widget_get_width(face);
    const int height = gtk_widget_get_height(face);
    const int radius = std::min(width, height) / 2 - 12;
    ASSERT_GT(radius, 0);
    // Just above the face's rim, inside the pointer.
    const GdkRGBA pointer = drawnAt(face, width / 2, height / 2 - radius - 4, background);
    EXPECT_GE(contrast(pointer, background), kLargeTextContrast)
        << named << ": pointer " << rgb(pointer) << " on " << rgb(background);
  });
}

}  // namespace
}  // namespace qmv::gtk
