#include "apps/gtk/main_view.h"

#include <adwaita.h>

#include <set>
#include <string_view>

#include "apps/gtk/account_centre_pages.h"
#include "apps/gtk/account_pages.h"
#include "apps/gtk/activity_page.h"
#include "apps/gtk/checkout_pages.h"
#include "apps/gtk/city_page.h"
#include "apps/gtk/contact_pages.h"
#include "apps/gtk/favorites_page.h"
#include "apps/gtk/gtk_texts.h"
#include "apps/gtk/image_browser_page.h"
#include "apps/gtk/member_centre_pages.h"
#include "apps/gtk/guide_page.h"
#include "apps/gtk/member_pages.h"
#include "apps/gtk/order_pages.h"
#include "apps/gtk/page_context.h"
#include "apps/gtk/page_navigator.h"
#include "apps/gtk/picture_view.h"
#include "apps/gtk/profile_pages.h"
#include "apps/gtk/review_pages.h"
#include "apps/gtk/screen_names.h"
#include "apps/gtk/store_map_page.h"
#include "apps/gtk/store_page.h"
#include "apps/gtk/tab_bar_page.h"
#include "apps/gtk/wallet_centre_pages.h"
#include "apps/gtk/wallet_pages.h"
#include "apps/gtk/web_page_view.h"
#include "apps/gtk/wheel_page.h"
#include "core/session/account_texts.h"
#include "features/discovery/discovery_texts.h"
#include "features/member/account_centre_texts.h"
#include "features/member/member_centre_texts.h"
#include "features/orders/checkout_texts.h"
#include "features/orders/order_texts.h"
#include "features/referral/referral_texts.h"
#include "features/wallet/wallet_texts.h"
#include "features/wheel/wheel_texts.h"
#include "shell/h5_texts.h"
#include "shell/app_delegate.h"

namespace qmv::gtk {

namespace {

// A screen this client does not draw: a note and the way back. Its title is a word for
// the member, never the screen's class name (which stays the page's widget name).
class UndrawnPage : public ScreenPage {
 public:
  explicit UndrawnPage(PageContext& context) : ScreenPage(context, gtk_texts::kUndrawnTitle, true) {
    GtkWidget* note = adw_status_page_new();
    adw_status_page_set_icon_name(ADW_STATUS_PAGE(note), "dialog-information-symbolic");
    adw_status_page_set_title(ADW_STATUS_PAGE(note), gtk_texts::kUndrawnNote);
    gtk_widget_set_vexpand(note, TRUE);
    body().append(*Gtk::manage(Glib::wrap(note)));
  }
  void refresh() override {}
};

// Two header bars side by side: only the right one has the window's buttons and the way
// back (the left one's would close the page on the right).
void showHeaderButtons(GtkWidget* widget, bool shown, bool inHeader = false) {
  if (ADW_IS_HEADER_BAR(widget)) {
    adw_header_bar_set_show_end_title_buttons(ADW_HEADER_BAR(widget), shown);
    inHeader = true;
  }
  if (inHeader && GTK_IS_BUTTON(widget) && std::string_view(gtk_widget_get_name(widget)) == "back") {
    gtk_widget_set_visible(widget, shown);
    return;
  }
  for (GtkWidget* child = gtk_widget_get_first_child(widget); child != nullptr;
       child = gtk_widget_get_next_sibling(child)) {
    showHeaderButtons(child, shown, inHeader);
  }
}

}  // namespace

MainView::MainView(PageContext& context, std::shared_ptr<NearbyViewController> nearby)
    : Gtk::Box(Gtk::Orientation::VERTICAL), context_(context), nearby_(std::move(nearby)),
      toasts_(ADW_TOAST_OVERLAY(adw_toast_overlay_new())) {
  stack_.set_transition_type(Gtk::StackTransitionType::SLIDE_LEFT_RIGHT);
  stack_.set_vexpand(true);
  stack_.set_hexpand(true);
  // The list pane's width while split; unbounded (the whole window) otherwise.
  listClamp_ = adw_clamp_new();
  adw_clamp_set_child(ADW_CLAMP(listClamp_), GTK_WIDGET(stack_.gobj()));
  detail_.set_vexpand(true);
  detail_.set_hexpand(true);
  detail_.set_transition_type(Gtk::StackTransitionType::CROSSFADE);
  leaflet_ = adw_leaflet_new();
  adw_leaflet_append(ADW_LEAFLET(leaflet_), listClamp_);
  AdwLeafletPage* divider = adw_leaflet_append(ADW_LEAFLET(leaflet_), GTK_WIDGET(divider_.gobj()));
  adw_leaflet_page_set_navigatable(divider, FALSE);
  adw_leaflet_append(ADW_LEAFLET(leaflet_), GTK_WIDGET(detail_.gobj()));
  gtk_widget_set_vexpand(leaflet_, TRUE);
  // Panes appear and go with the screens they show, not with an animation of their own.
  adw_leaflet_set_mode_transition_duration(ADW_LEAFLET(leaflet_), 0);
  showSplit(false);
  overlay_.set_child(*Gtk::manage(Glib::wrap(leaflet_)));
  // A box lays its children out through a layout manager, never through a vfunc of its
  // own: an empty area over the content is told the width instead.
  widthWatch_.set_can_target(false);
  widthWatch_.set_can_focus(false);
  widthWatch_.signal_resize().connect([this](int width, int) { widthChanged(width); });
  overlay_.add_overlay(widthWatch_);
  // The launch view: the placeholder's colours with the application's name, covered by
  // the server's welcome picture once it has arrived. A picture still on its way when the
  // view goes is drawn for the next showing rather than dropped.
  launch_.add_css_class("launch");
  launch_.set_name("launch");
  auto* name = Gtk::make_managed<Gtk::Label>("qmv");
  name->add_css_class("title-1");
  name->set_vexpand(true);
  auto* layers = Gtk::make_managed<Gtk::Overlay>();
  layers->set_vexpand(true);
  layers->set_child(*name);
  launchPicture_ = Gtk::make_managed<PictureView>(context_.pictures(), ImageSize{1080, 1920}, gtk_texts::kLaunchPicture);
  launchPicture_->set_name("launch-picture");
  launchPicture_->set_visible(false);
  launchPicture_->onShown = [this](bool shown) { launchPicture_->set_visible(shown); };
  layers->add_overlay(*launchPicture_);
  launch_.append(*layers);
  launch_.set_visible(false);
  overlay_.add_overlay(launch_);
  adw_toast_overlay_set_child(toasts_, GTK_WIDGET(overlay_.gobj()));
  gtk_widget_set_vexpand(GTK_WIDGET(toasts_), TRUE);
  append(*Glib::wrap(GTK_WIDGET(toasts_)));
}

MainView::~MainView() { pending_.disconnect(); }

void MainView::showLaunchView(bool shown, const std::string& imageUrl) {
  launch_.set_visible(shown);
  if (shown) launchPicture_->setUrl(imageUrl);
}

void MainView::queueSync() {
  if (pending_.connected()) return;
  pending_ = Glib::signal_idle().connect([this] {
    sync();
    return false;
  });
}

Gtk::Widget* MainView::topPage() {
  auto it = pages_.find(top_);
  return it == pages_.end() ? nullptr : it->second;
}

Gtk::Widget* MainView::listPage() {
  auto it = pages_.find(beside_);
  return it == pages_.end() ? nullptr : it->second;
}

void MainView::widthChanged(int width) {
  // Panes change on the next idle turn: no widget may be moved while the window lays out.
  if (const bool wide = width >= kWideWidth; wide != wide_) {
    wide_ = wide;
    queueSync();
  }
}

void MainView::place(Gtk::Widget& page, ScreenId id, Gtk::Stack& pane) {
  Gtk::Widget* parent = page.get_parent();
  if (parent == &pane) return;
  // Held while it has no parent, which would otherwise destroy it.
  g_object_ref(page.gobj());
  if (auto* stack = dynamic_cast<Gtk::Stack*>(parent)) stack->remove(page);
  pane.add(page, std::to_string(id));
  g_object_unref(page.gobj());
  if (auto* screen = dynamic_cast<ScreenPage*>(&page)) screen->moved();
}

void MainView::showSplit(bool split) {
  constexpr int kUnbounded = 1 << 20;
  const int width = split ? kListWidth : kUnbounded;
  adw_clamp_set_maximum_size(ADW_CLAMP(listClamp_), width);
  adw_clamp_set_tightening_threshold(ADW_CLAMP(listClamp_), width);
  // Left alone, the clamp would share the spare width and centre the list in it.
  gtk_widget_set_hexpand(listClamp_, !split);
  divider_.set_visible(split);
  detail_.set_visible(split);
  adw_leaflet_set_can_unfold(ADW_LEAFLET(leaflet_), split);
  adw_leaflet_set_visible_child(ADW_LEAFLET(leaflet_), split ? GTK_WIDGET(detail_.gobj()) : listClamp_);
}

Gtk::Widget* MainView::makePage(const Screen& screen) {
  const std::string& name = screen.name;
  const Json& payload = screen.payload;
  const auto text = [&payload](const char* key) {
    return payload.is_object() && payload.contains(key) && payload[key].is_string() ? payload[key].get<std::string>()
                                                                                    : std::string();
  };
  const auto number = [&payload](const char* key) {
    return payload.is_object() && payload.contains(key) && payload[key].is_number_integer() ? payload[key].get<long>() : 0L;
  };
  if (name == kTabBarScreen) {
    TabBarViewController* tabBar = context_.appDelegate().tabBarViewCtrl();
    if (tabBar == nullptr) return nullptr;
    tabBar_ = Gtk::make_managed<TabBarPage>(context_, *tabBar, nearby_);
    // A tab built while the tabs are the list beside a detail takes the list's header.
    tabBar_->onTabShown = [this] {
      if (beside_ != 0 && listPage() == tabBar_) showHeaderButtons(GTK_WIDGET(tabBar_->gobj()), false);
    };
    return tabBar_;
  }
  if (name == kGuideScreen) return Gtk::make_managed<GuidePage>(context_);
  if (name == kCityScreen) return Gtk::make_managed<CityPage>(context_);
  if (name == kImageBrowserScreen) {
    std::vector<std::string> urls;
    if (payload.is_object() && payload.contains("urls") && payload["urls"].is_array()) {
      for (const Json& url : payload["urls"]) {
        if (url.is_string()) urls.push_back(url.get<std::string>());
      }
    }
    const long index = number("index");
    return Gtk::make_managed<ImageBrowserPage>(context_, std::move(urls), index > 0 ? static_cast<std::size_t>(index) : 0);
  }
  if (name == BaseViewController::kLoginScreen) return Gtk::make_managed<LoginPage>(context_);
  if (name == account_texts::kRegisterScreen) return Gtk::make_managed<RegisterPage>(context_);
  if (name == account_texts::kFindPwdScreen) return Gtk::make_managed<FindPwdPage>(context_);
  if (name == account_texts::kFindPwdStep2Screen) return Gtk::make_managed<FindPwdStep2Page>(context_, text("phone"));
  if (name == discovery_texts::kStoreDetailScreen) {
    return Gtk::make_managed<StorePage>(context_, text("storeId"), text("storeName"));
  }
  if (name == discovery_texts::kActivityScreen) {
    return Gtk::make_managed<ActivityPage>(context_, text("commodityId"), text("name"));
  }
  if (name == discovery_texts::kMapScreen) return Gtk::make_managed<StoreMapPage>(context_, StoreInfoModel(payload));
  if (name == checkout_texts::kSubmitScreen) return Gtk::make_managed<SubmitOrderPage>(context_, payload);
  if (name == checkout_texts::kPayNowScreen) return Gtk::make_managed<PayNowPage>(context_, payload);
  if (name == checkout_texts::kPayResultScreen) return Gtk::make_managed<PayResultPage>(context_, payload);
  if (name == wallet_texts::kMyBankCardScreen) return Gtk::make_managed<BankCardPage>(context_);
  if (name == wallet_texts::kBindScreen) return Gtk::make_managed<BindCardPage>(context_);
  if (name == wallet_texts::kWithDrawScreen) return Gtk::make_managed<WithdrawPage>(context_);
  if (name == wallet_texts::kFundRecordScreen) return Gtk::make_managed<FundRecordsPage>(context_, number("type"));
  if (name == wallet_texts::kVoucherScreen) return Gtk::make_managed<VouchersPage>(context_);
  if (name == discovery_texts::kCommentsScreen) return Gtk::make_managed<CommentsPage>(context_, text("storeId"));
  if (name == discovery_texts::kMyRatingsScreen) return Gtk::make_managed<MyRatingsPage>(context_);
  if (name == discovery_texts::kFavoritesScreen) return Gtk::make_managed<FavoritesPage>(context_);
  if (name == member_centre_texts::kMessagesScreen) return Gtk::make_managed<MessagesPage>(context_);
  if (name == member_centre_texts::kFeedbackScreen) return Gtk::make_managed<FeedbackPage>(context_);
  if (name == account_centre_texts::kChangePasswordScreen) return Gtk::make_managed<ChangePasswordPage>(context_);
  if (name == account_centre_texts::kMemberLevelScreen) return Gtk::make_managed<MemberLevelPage>(context_);
  if (name == account_centre_texts::kProfileScreen) return Gtk::make_managed<ProfilePage>(context_);
  if (name == account_centre_texts::kChangePhoneScreen) return Gtk::make_managed<ChangePhonePage>(context_);
  if (name == account_centre_texts::kInviteScreen) return Gtk::make_managed<InvitePage>(context_);
  if (name == order_texts::kMyOrdersScreen) return Gtk::make_managed<OrderListPage>(context_, number("type"));
  if (name == order_texts::kStoreOrderDetailScreen) return Gtk::make_managed<StoreOrderPage>(context_, text("orderId"));
  if (name == order_texts::kActivityOrderDetailScreen) {
    return Gtk::make_managed<ActivityOrderPage>(context_, text("orderId"));
  }
  if (name == order_texts::kGradeStoreScreen) {
    return Gtk::make_managed<GradeStorePage>(context_, text("orderId"), text("storeName"));
  }
  if (name == referral_texts::kMyContactScreen) return Gtk::make_managed<ContactsPage>(context_);
  if (name == referral_texts::kSecondContactScreen) return Gtk::make_managed<SecondContactsPage>(context_, payload);
  if (name == wheel_texts::kWheelScreen) return Gtk::make_managed<WheelPage>(context_);
  if (name == discovery_texts::kWebScreen) return Gtk::make_managed<PlainWebPage>(context_, text("title"), text("url"));
  if (name == h5_texts::kH5Screen) return Gtk::make_managed<H5Page>(context_, number("h5Type"));
  return nullptr;
}

namespace {

// Whether `detail`, opened from `list`, is drawn beside it on a wide window.
bool opensBeside(const std::string& list, const std::string& detail) {
  using namespace discovery_texts;
  const bool fromList = list == kTabBarScreen || list == kStoreDetailScreen || list == kFavoritesScreen ||
                        list == order_texts::kMyOrdersScreen || list == referral_texts::kMyContactScreen;
  const bool isDetail = detail == kStoreDetailScreen || detail == kActivityScreen || detail == kMapScreen ||
                        detail == kCommentsScreen || detail == order_texts::kStoreOrderDetailScreen ||
                        detail == order_texts::kActivityOrderDetailScreen ||
                        detail == referral_texts::kSecondContactScreen;
  return fromList && isDetail;
}

}  // namespace

void MainView::sync() {
  pending_.disconnect();
  const auto layers = context_.navigator().layers();
  std::set<ScreenId> live;
  const Screen* top = nullptr;
  const Screen* below = nullptr;  // under the top screen, in its layer
  for (const auto& layer : layers) {
    for (const Screen& screen : layer) {
      live.insert(screen.id);
      below = top != nullptr && &screen != &layer.front() ? top : nullptr;
      top = &screen;
      if (pages_.contains(screen.id)) continue;
      Gtk::Widget* page = makePage(screen);
      if (page == nullptr) page = Gtk::make_managed<UndrawnPage>(context_);
      page->set_name(screen.name);
      stack_.add(*page, std::to_string(screen.id));
      pages_.emplace(screen.id, page);
    }
  }
  if (top != nullptr) {
    const bool split = wide_ && below != nullptr && opensBeside(below->name, top->name);
    const ScreenId left = split ? below->id : top->id;
    const ScreenId wasBeside = beside_;
    beside_ = split ? below->id : 0;
    for (const auto& [id, page] : pages_) {
      if (live.contains(id)) place(*page, id, split && id == top->id ? detail_ : stack_);
    }
    const std::string leftName = std::to_string(left);
    if (stack_.get_visible_child_name().raw() != leftName) {
      const Glib::ustring shown = stack_.get_visible_child_name();
      const ScreenId before = shown.empty() ? 0 : std::stol(shown);
      // A resize that folds or unfolds the panes does not slide.
      stack_.set_transition_type(top->id == top_ && (beside_ != 0) != (wasBeside != 0)
                                     ? Gtk::StackTransitionType::NONE
                                 : left > before ? Gtk::StackTransitionType::SLIDE_LEFT
                                                 : Gtk::StackTransitionType::SLIDE_RIGHT);
      stack_.set_visible_child(leftName);
    }
    if (split) detail_.set_visible_child(std::to_string(top->id));
    showSplit(split);
    if (wasBeside != beside_) {
      if (auto it = pages_.find(wasBeside); it != pages_.end()) showHeaderButtons(it->second->gobj(), true);
      if (Gtk::Widget* list = listPage()) showHeaderButtons(list->gobj(), false);
    }
    if (top->id != top_) {
      top_ = top->id;
      Gtk::Widget* page = pages_[top_];
      if (auto* screen = dynamic_cast<ScreenPage*>(page)) screen->appeared();
      if (page == tabBar_) tabBar_->appeared();
    }
  }
  for (auto it = pages_.begin(); it != pages_.end();) {
    if (live.contains(it->first)) {
      ++it;
      continue;
    }
    if (it->second == tabBar_) tabBar_ = nullptr;
    if (auto* pane = dynamic_cast<Gtk::Stack*>(it->second->get_parent())) pane->remove(*it->second);
    it = pages_.erase(it);
  }
}

}  // namespace qmv::gtk
