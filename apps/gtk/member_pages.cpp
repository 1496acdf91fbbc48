#include "apps/gtk/member_pages.h"

#include <iterator>
#include <string_view>

#include "apps/gtk/gtk_texts.h"
#include "apps/gtk/page_context.h"
#include "apps/gtk/page_navigator.h"
#include "apps/gtk/ui.h"
#include "core/session/account_texts.h"
#include "core/session/global_data.h"
#include "features/discovery/discovery_texts.h"
#include "features/member/account_centre_texts.h"
#include "features/member/member_centre_texts.h"
#include "features/member/portrait_texts.h"
#include "features/orders/order_texts.h"
#include "features/referral/referral_texts.h"
#include "features/wallet/wallet_texts.h"
#include "features/wheel/wheel_texts.h"
#include "shell/h5_texts.h"
#include "shell/app_delegate.h"

namespace qmv::gtk {

namespace {

namespace mct = member_centre_texts;
constexpr bool same(std::string_view a, std::string_view b) { return a == b; }
// The member tab names screens of layers it cannot include; they must stay the same.
static_assert(same(mct::kMyOrdersScreen, order_texts::kMyOrdersScreen) && same(mct::kMyOrdersTitle, order_texts::kMyOrdersTitle));
static_assert(same(mct::kMyContactScreen, referral_texts::kMyContactScreen) &&
              same(mct::kMyContactTitle, referral_texts::kMyContactTitle));
static_assert(same(mct::kWheelScreen, wheel_texts::kWheelScreen) && same(mct::kWheelTitle, wheel_texts::kTitle));
static_assert(same(mct::kFundRecordScreen, wallet_texts::kFundRecordScreen) &&
              same(mct::kFundRecordTitle, wallet_texts::kFundRecordEntry));
static_assert(same(mct::kVoucherScreen, wallet_texts::kVoucherScreen) && same(mct::kVoucherTitle, wallet_texts::kVoucherEntry));
static_assert(same(account_centre_texts::kH5Screen, h5_texts::kH5Screen) &&
              same(mct::kCoinPageTitle, h5_texts::kPages[h5_texts::kCoinType].title) &&
              same(mct::kAddressPageTitle, h5_texts::kPages[h5_texts::kAddressType].title) &&
              same(mct::kLevelPageTitle, h5_texts::kPages[h5_texts::kLevelType].title) &&
              same(mct::kMyTopicPageTitle, h5_texts::kPages[h5_texts::kMyTopicType].title));

}  // namespace

WealthPage::WealthPage(PageContext& context) : ScreenPage(context, "", false) {
  follow(screen_);
  screen_.onRefreshed = [this] { refreshSoon(); };
  // Shown again (the tab chosen, a wallet screen closed): the screen's appearance.
  signal_map().connect([this] {
    screen_.viewWillAppear();
    refreshSoon();
  });
  balance_ = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::VERTICAL, 4);
  auto* label = ui::label(WealthViewController::kBalanceLabel, "dim-label");
  label->set_xalign(0.5);
  balance_->append(*label);
  amount_ = ui::label("", "title-1");
  amount_->set_name("balance");
  amount_->set_xalign(0.5);
  balance_->append(*amount_);
  card_ = ui::label("", "dim-label");
  card_->set_name("card-line");
  card_->set_xalign(0.5);
  balance_->append(*card_);
  body().append(*balance_);
  auto* list = ui::boxedList();
  list->set_name("wallet-entries");
  for (std::size_t i = 0; i < std::size(WealthViewController::kEntries); ++i) {
    ui::addRow(*list, WealthViewController::kEntries[i].title, "", "", [this, i] { screen_.openEntry(i); });
  }
  body().append(*list);
  refresh();
}

void WealthPage::refresh() {
  const bool member = GlobalData::sharedInstance().selfInfo() != nullptr;
  amount_->set_text(gtk_texts::kYuanPrefix + screen_.balanceText());
  card_->set_text(screen_.cardLine());
  card_->set_visible(!screen_.cardLine().empty());
  balance_->set_visible(member);
}

MinePage::MinePage(PageContext& context) : ScreenPage(context, "", false) {
  follow(logout_);
  logout_.onFinished = [this](bool) {
    screen_.viewWillAppear();
    refreshSoon();
  };
  screen_.onChanged = [this] { refreshSoon(); };
  signal_map().connect([this] {
    screen_.viewWillAppear();
    refreshSoon();
  });
  addAction("login", [this] { logout_.presentLoginCtrl(); });
  addAction("logout", [this] { logout_.confirmLogout(); });
  login_ = Gtk::make_managed<Gtk::Button>(account_texts::kLoginButton);
  login_->add_css_class("suggested-action");
  login_->set_action_name("page.login");
  body().append(*login_);

  member_ = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::VERTICAL, 12);
  portrait_ = Gtk::make_managed<Gtk::Picture>();
  portrait_->set_name("portrait");
  portrait_->set_can_shrink(false);
  portrait_->set_halign(Gtk::Align::CENTER);
  ui::setAccessibleLabel(*portrait_, portrait_texts::kTitle);
  member_->append(*portrait_);
  name_ = ui::label("", "title-1");
  name_->set_name("member-name");
  name_->set_xalign(0.5);
  member_->append(*name_);
  auto* list = ui::boxedList();
  list->set_name("member-facts");
  account_ = ui::addRow(*list, "", "");
  balance_ = ui::addRow(*list, "", "");
  level_ = ui::addRow(*list, "", "");
  member_->append(*list);
  auto* screens = ui::boxedList();
  screens->set_name("member-screens");
  const auto entries = ZDMyViewController::entries();
  for (std::size_t i = 0; i < entries.size(); ++i) {
    Gtk::Widget* row = ui::addRow(*screens, entries[i].title, "", "", [this, i] { screen_.openEntry(i); });
    badges_.push_back(ui::addBadge(*row));
    if (std::string_view(entries[i].screen) == member_centre_texts::kMessagesScreen) badges_.back()->set_name("unread-badge");
  }
  member_->append(*screens);
  auto* leave = Gtk::make_managed<Gtk::Button>();
  leave->set_icon_name("system-log-out-symbolic");
  leave->set_name("logout");
  leave->add_css_class("destructive-action");
  leave->set_action_name("page.logout");
  ui::setAccessibleLabel(*leave, gtk_texts::kLogout);
  member_->append(*leave);
  body().append(*member_);
  refresh();
}

void MinePage::refresh() {
  login_->set_visible(!screen_.hasMember());
  member_->set_visible(screen_.hasMember());
  if (!screen_.hasMember()) return;
  for (std::size_t i = 0; i < badges_.size(); ++i) {
    const std::string badge = screen_.badgeOf(i);
    badges_[i]->set_text(badge);
    badges_[i]->set_visible(!badge.empty());
    if (!badge.empty()) ui::setAccessibleLabel(*badges_[i], std::string(member_centre_texts::kUnreadMark) + " " + badge);
  }
  const DecodedImage* portrait = screen_.portrait();
  ui::setPicture(*portrait_, portrait);
  portrait_->set_visible(portrait != nullptr);
  name_->set_text(screen_.nameText());
  ui::setRowTexts(*account_, screen_.phoneText(), "");
  ui::setRowTexts(*balance_, gtk_texts::kYuanPrefix + screen_.balanceText(), "");
  ui::setRowTexts(*level_, screen_.levelText(), screen_.remainingText());
}

GuidePage::GuidePage(PageContext& context) : ScreenPage(context, "qmv", false) {
  auto* go = Gtk::make_managed<Gtk::Button>();
  go->set_icon_name("go-next-symbolic");
  go->set_name("guide-done");
  ui::nameIcon(*go, gtk_texts::kEnter);
  go->add_css_class("suggested-action");
  go->add_css_class("circular");
  go->set_halign(Gtk::Align::CENTER);
  go->set_valign(Gtk::Align::END);
  go->signal_clicked().connect([&context] { context.appDelegate().showMainTabs(); });
  body().append(*go);
}

}  // namespace qmv::gtk
