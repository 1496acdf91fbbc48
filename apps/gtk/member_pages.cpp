#include "apps/gtk/member_pages.h"

#include <iterator>

#include "apps/gtk/gtk_texts.h"
#include "apps/gtk/page_context.h"
#include "apps/gtk/page_navigator.h"
#include "apps/gtk/ui.h"
#include "core/session/account_texts.h"
#include "core/session/global_data.h"
#include "core/session/member_texts.h"
#include "features/discovery/discovery_texts.h"
#include "features/member/account_centre_texts.h"
#include "features/member/member_centre_texts.h"
#include "features/orders/order_texts.h"
#include "features/referral/referral_texts.h"
#include "features/wallet/wallet_texts.h"
#include "features/wheel/wheel_texts.h"
#include "shell/h5_texts.h"
#include "shell/app_delegate.h"

namespace qmv::gtk {

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
    badge_.viewWillAppear();
    refreshSoon();
  };
  badge_.onChange = [this] { refreshSoon(); };
  signal_map().connect([this] {
    badge_.viewWillAppear();
    refreshSoon();
  });
  addAction("login", [this] { logout_.presentLoginCtrl(); });
  addAction("logout", [this] { logout_.logout(); });
  login_ = Gtk::make_managed<Gtk::Button>(account_texts::kLoginButton);
  login_->add_css_class("suggested-action");
  login_->set_action_name("page.login");
  body().append(*login_);

  member_ = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::VERTICAL, 12);
  name_ = ui::label("", "title-1");
  name_->set_name("member-name");
  member_->append(*name_);
  auto* list = ui::boxedList();
  for (Gtk::Widget*& row : facts_) row = ui::addRow(*list, "", "");
  member_->append(*list);
  // The member's own screens, and the server pages about him.
  PageNavigator& navigator = context_.navigator();
  auto* screens = ui::boxedList();
  screens->set_name("member-screens");
  ui::addRow(*screens, order_texts::kMyOrdersTitle, "", "",
             [&navigator] { navigator.push(order_texts::kMyOrdersScreen, {{"type", 0}}); });
  Gtk::Widget* messages = ui::addRow(*screens, member_centre_texts::kMessagesTitle, "", "",
                                     [&navigator] { navigator.push(member_centre_texts::kMessagesScreen); });
  unread_ = ui::addBadge(*messages);
  unread_->set_name("unread-badge");
  ui::addRow(*screens, discovery_texts::kFavoritesTitle, "", "",
             [&navigator] { navigator.push(discovery_texts::kFavoritesScreen); });
  ui::addRow(*screens, referral_texts::kMyContactTitle, "", "",
             [&navigator] { navigator.push(referral_texts::kMyContactScreen); });
  ui::addRow(*screens, wheel_texts::kTitle, "", "", [&navigator] { navigator.push(wheel_texts::kWheelScreen); });
  ui::addRow(*screens, wallet_texts::kFundRecordEntry, "", "",
             [&navigator] { navigator.push(wallet_texts::kFundRecordScreen); });
  ui::addRow(*screens, wallet_texts::kVoucherEntry, "", "", [&navigator] { navigator.push(wallet_texts::kVoucherScreen); });
  ui::addRow(*screens, discovery_texts::kMyRatingsTitle, "", "",
             [&navigator] { navigator.push(discovery_texts::kMyRatingsScreen); });
  ui::addRow(*screens, account_centre_texts::kMemberLevelTitle, "", "",
             [&navigator] { navigator.push(account_centre_texts::kMemberLevelScreen); });
  ui::addRow(*screens, account_centre_texts::kChangePasswordTitle, "", "",
             [&navigator] { navigator.push(account_centre_texts::kChangePasswordScreen); });
  ui::addRow(*screens, member_centre_texts::kFeedbackTitle, "", "",
             [&navigator] { navigator.push(member_centre_texts::kFeedbackScreen); });
  for (const long type : {h5_texts::kCoinType, h5_texts::kAddressType, h5_texts::kLevelType, h5_texts::kMyTopicType}) {
    ui::addRow(*screens, h5_texts::kPages[type].title, "", "",
               [&navigator, type] { navigator.push(h5_texts::kH5Screen, {{"h5Type", type}}); });
  }
  member_->append(*screens);
  auto* leave = Gtk::make_managed<Gtk::Button>();
  leave->set_icon_name("system-log-out-symbolic");
  leave->set_name("logout");
  leave->add_css_class("destructive-action");
  leave->set_action_name("page.logout");
  member_->append(*leave);
  body().append(*member_);
  refresh();
}

void MinePage::refresh() {
  const auto& me = GlobalData::sharedInstance().selfInfo();
  login_->set_visible(!me);
  member_->set_visible(me != nullptr);
  if (!me) return;
  unread_->set_text(badge_.badgeText());
  unread_->set_visible(!badge_.badgeText().empty());
  ui::setAccessibleLabel(*unread_, std::string(member_centre_texts::kUnreadMark) + " " + badge_.badgeText());
  name_->set_text(me->nickName.empty() ? me->userName : me->nickName);
  ui::setRowTexts(*facts_[0], me->userName, me->phone);
  ui::setRowTexts(*facts_[1], gtk_texts::kYuanPrefix + member_texts::balanceYuan(*me), "");
  ui::setRowTexts(*facts_[2], member_texts::level(*me) + "  " + member_texts::progress(*me),
                  member_texts::remainingExp(*me));
}

GuidePage::GuidePage(PageContext& context) : ScreenPage(context, "qmv", false) {
  auto* go = Gtk::make_managed<Gtk::Button>();
  go->set_icon_name("go-next-symbolic");
  go->set_name("guide-done");
  go->add_css_class("suggested-action");
  go->add_css_class("circular");
  go->set_halign(Gtk::Align::CENTER);
  go->set_valign(Gtk::Align::END);
  go->signal_clicked().connect([&context] { context.appDelegate().showMainTabs(); });
  body().append(*go);
}

}  // namespace qmv::gtk
