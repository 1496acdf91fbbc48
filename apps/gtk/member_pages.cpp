#include "apps/gtk/member_pages.h"

#include "apps/gtk/gtk_texts.h"
#include "apps/gtk/page_context.h"
#include "apps/gtk/page_navigator.h"
#include "apps/gtk/ui.h"
#include "core/session/account_texts.h"
#include "core/session/global_data.h"
#include "core/session/member_texts.h"
#include "features/orders/order_texts.h"
#include "features/referral/referral_texts.h"
#include "features/wallet/wallet_texts.h"
#include "features/wheel/wheel_texts.h"
#include "shell/h5_texts.h"
#include "shell/app_delegate.h"

namespace qmv::gtk {

WealthPage::WealthPage(PageContext& context) : ScreenPage(context, "", false) {
  signal_map().connect([this] { refreshSoon(); });
  refresh();
}

void WealthPage::refresh() {
  ui::clear(body());
  const auto& me = GlobalData::sharedInstance().selfInfo();
  if (me) {
    auto* balance = ui::label(gtk_texts::kYuanPrefix + member_texts::balanceYuan(*me), "title-1");
    balance->set_name("balance");
    balance->set_xalign(0.5);
    body().append(*balance);
  }
  auto* list = ui::boxedList();
  PageNavigator& navigator = context_.navigator();
  ui::addRow(*list, wallet_texts::kMyBankCardTitle, "", "",
             [&navigator] { navigator.push(wallet_texts::kMyBankCardScreen); });
  ui::addRow(*list, wallet_texts::kWithDrawTitle, "", "", [&navigator] { navigator.push(wallet_texts::kWithDrawScreen); });
  body().append(*list);
}

MinePage::MinePage(PageContext& context) : ScreenPage(context, "", false) {
  follow(logout_);
  logout_.onFinished = [this](bool) { refreshSoon(); };
  signal_map().connect([this] { refreshSoon(); });
}

void MinePage::refresh() {
  ui::clear(body());
  const auto& me = GlobalData::sharedInstance().selfInfo();
  if (!me) {
    body().append(*ui::button(account_texts::kLoginButton, [this] { logout_.presentLoginCtrl(); }, "suggested-action"));
    return;
  }
  auto* name = ui::label(me->nickName.empty() ? me->userName : me->nickName, "title-1");
  name->set_name("member-name");
  body().append(*name);
  auto* list = ui::boxedList();
  ui::addRow(*list, me->userName, me->phone);
  ui::addRow(*list, gtk_texts::kYuanPrefix + member_texts::balanceYuan(*me), "");
  ui::addRow(*list, member_texts::level(*me) + "  " + member_texts::progress(*me), member_texts::remainingExp(*me));
  body().append(*list);
  // The member's own screens, and the server pages about him.
  PageNavigator& navigator = context_.navigator();
  auto* screens = ui::boxedList();
  screens->set_name("member-screens");
  ui::addRow(*screens, order_texts::kMyOrdersTitle, "", "",
             [&navigator] { navigator.push(order_texts::kMyOrdersScreen, {{"type", 0}}); });
  ui::addRow(*screens, referral_texts::kMyContactTitle, "", "",
             [&navigator] { navigator.push(referral_texts::kMyContactScreen); });
  ui::addRow(*screens, wheel_texts::kTitle, "", "", [&navigator] { navigator.push(wheel_texts::kWheelScreen); });
  for (const long type : {h5_texts::kCoinType, h5_texts::kAddressType, h5_texts::kLevelType, h5_texts::kMyTopicType}) {
    ui::addRow(*screens, h5_texts::kPages[type].title, "", "",
               [&navigator, type] { navigator.push(h5_texts::kH5Screen, {{"h5Type", type}}); });
  }
  body().append(*screens);
  auto* leave = Gtk::make_managed<Gtk::Button>();
  leave->set_icon_name("system-log-out-symbolic");
  leave->set_name("logout");
  leave->add_css_class("destructive-action");
  leave->signal_clicked().connect([this] { logout_.logout(); });
  body().append(*leave);
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
