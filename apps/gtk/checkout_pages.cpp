#include "apps/gtk/checkout_pages.h"

#include "apps/gtk/ui.h"
#include "features/orders/checkout_texts.h"
#include "features/orders/pay_cash_view.h"

namespace qmv::gtk {

namespace texts = checkout_texts;

SubmitOrderPage::SubmitOrderPage(PageContext& context, const Json& payload)
    : ScreenPage(context, texts::kSubmitTitle, true), screen_(payload) {
  follow(screen_);
  const ActivityModel& offer = screen_.activityInfo();
  body().append(*ui::label(offer.name, "title-2"));
  auto* list = ui::boxedList();
  ui::addRow(*list, screen_.unitPriceText(), "");
  body().append(*list);

  auto* stepper = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::HORIZONTAL, 12);
  stepper->set_halign(Gtk::Align::CENTER);
  minus_ = Gtk::make_managed<Gtk::Button>();
  minus_->set_icon_name("list-remove-symbolic");
  minus_->set_name("minus");
  minus_->add_css_class("circular");
  minus_->signal_clicked().connect([this] {
    screen_.reduceAction();
    refresh();
  });
  quantity_ = ui::label("", "title-2", false);
  quantity_->set_name("quantity");
  auto* plus = Gtk::make_managed<Gtk::Button>();
  plus->set_icon_name("list-add-symbolic");
  plus->set_name("plus");
  plus->add_css_class("circular");
  plus->signal_clicked().connect([this] {
    screen_.plusAction();
    refresh();
  });
  stepper->append(*minus_);
  stepper->append(*quantity_);
  stepper->append(*plus);
  body().append(*stepper);

  total_ = ui::label("", "price", false);
  total_->set_name("total");
  total_->set_halign(Gtk::Align::END);
  body().append(*total_);
  auto* submit = ui::button(texts::kSubmitTitle, [this] { screen_.submitAction(); }, "suggested-action");
  submit->set_name("submit");
  submit->add_css_class("pill");
  body().append(*submit);
  refresh();
}

void SubmitOrderPage::refresh() {
  quantity_->set_text(screen_.quantityText());
  total_->set_text(screen_.totalPayable() ? texts::kTotalPrefix + screen_.totalText() : screen_.totalText());
  minus_->set_sensitive(screen_.quantityText() != "1");
}

PayNowPage::PayNowPage(PageContext& context, const Json& payload)
    : ScreenPage(context, texts::kPayNowTitle, true), screen_(payload) {
  follow(screen_);
  // A success leaves the screen; the page goes with it.
  screen_.onPayStep = [this](QXPayNowViewController::PayStep) { refreshSoon(); };
  screen_.viewDidLoad();
  refresh();
}

void PayNowPage::refresh() {
  ui::clear(body());
  body().append(*ui::label(screen_.name, "title-2"));
  auto* total = ui::label(screen_.totalText(), "price", false);
  total->set_name("total");
  body().append(*total);
  const auto tap = [this](void (QXPayNowViewController::*action)()) {
    return [this, action] {
      (screen_.*action)();
      refreshSoon();
    };
  };
  if (!screen_.topHidden()) {
    auto* balance = ui::boxedList();
    balance->set_name("balance");
    ui::addCheckRow(*balance, screen_.balanceText(), screen_.balanceSelected(),
                    tap(&QXPayNowViewController::toggleBalance));
    body().append(*balance);
  }
  if (!screen_.bottomHidden()) {
    auto* channels = ui::boxedList();
    channels->set_name("channels");
    const struct {
      const char* title;
      bool selected;
      void (QXPayNowViewController::*action)();
    } rows[] = {
        {texts::kAlipayName, screen_.alipaySelected(), &QXPayNowViewController::selectAlipay},
        {texts::kWeChatName, screen_.weChatSelected(), &QXPayNowViewController::selectWeChat},
        {texts::kUnionPayName, screen_.unionPaySelected(), &QXPayNowViewController::selectUnionPay},
    };
    for (const auto& row : rows) ui::addCheckRow(*channels, row.title, row.selected, tap(row.action));
    body().append(*channels);
  }
  auto* confirm = ui::button(screen_.confirmTitle(), [this] {
    screen_.confirmAction();
    refreshSoon();
  }, "suggested-action");
  confirm->set_name("confirm");
  confirm->add_css_class("pill");
  // One payment at a time, and none before the balance and the amount have been read:
  // the button rests meanwhile.
  confirm->set_sensitive(!screen_.isLoading() && !screen_.isPreparing() && !screen_.paid());
  body().append(*confirm);
  // The receipt of the order the server prepared, while its payment runs.
  if (const auto receipt = screen_.receipt()) {
    auto* rows = ui::boxedList();
    rows->set_name("receipt");
    for (const auto& row : receipt->rows()) ui::addRow(*rows, row.title, "", row.value);
    ui::addRow(*rows, receipt->orderNumber(), "");
    body().append(*rows);
    body().append(*ui::label(PayCashView::note(), "dim-label"));
  }
}

}  // namespace qmv::gtk
