#include "apps/gtk/checkout_pages.h"

#include <adwaita.h>

#include "apps/gtk/gtk_texts.h"
#include "apps/gtk/ui.h"
#include "features/discovery/discovery_texts.h"
#include "features/orders/checkout_texts.h"
#include "features/orders/pay_cash_view.h"

namespace qmv::gtk {

namespace texts = checkout_texts;

SubmitOrderPage::SubmitOrderPage(PageContext& context, const Json& payload)
    : ScreenPage(context, texts::kSubmitTitle, true), screen_(payload) {
  follow(screen_);
  const ActivityModel& offer = screen_.activityInfo();
  body().append(*ui::label(offer.name, "title-2"));
  // Each price with its label: the current price, and the first-purchase price when the
  // first unit is sold at it; the line under the stepper shows how they make the total.
  auto* list = ui::boxedList();
  list->set_name("prices");
  ui::addRow(*list, discovery_texts::kNowPriceLabel, "", screen_.unitPriceText());
  if (!screen_.firstPriceText().empty()) {
    ui::addRow(*list, discovery_texts::kFirstPriceLabel, "", screen_.firstPriceText());
  }
  body().append(*list);

  auto* stepper = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::HORIZONTAL, 12);
  stepper->set_halign(Gtk::Align::CENTER);
  minus_ = Gtk::make_managed<Gtk::Button>();
  minus_->set_icon_name("list-remove-symbolic");
  minus_->set_name("minus");
  ui::nameIcon(*minus_, gtk_texts::kFewer);
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
  ui::nameIcon(*plus, gtk_texts::kMore);
  plus->add_css_class("circular");
  plus->signal_clicked().connect([this] {
    screen_.plusAction();
    refresh();
  });
  stepper->append(*minus_);
  stepper->append(*quantity_);
  stepper->append(*plus);
  body().append(*stepper);

  breakdown_ = ui::label("", "dim-label");
  breakdown_->set_name("breakdown");
  breakdown_->set_halign(Gtk::Align::END);
  body().append(*breakdown_);
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
  breakdown_->set_text(screen_.totalBreakdownText());
  total_->set_text(screen_.totalPayable() ? texts::kTotalPrefix + screen_.totalText() : screen_.totalText());
  minus_->set_sensitive(screen_.quantityText() != "1");
}

namespace {

// A choice row with a check in front that shows the state, then the choice's mark (the
// themed icon `icon`, named `mark` for a screen reader); tapping the row runs the page's
// action `action` (with `target` when given).
Gtk::Widget* choiceRow(const std::string& action, const std::string& target, Gtk::CheckButton*& check,
                       const char* icon, const char* mark) {
  GtkWidget* row = adw_action_row_new();
  adw_preferences_row_set_use_markup(ADW_PREFERENCES_ROW(row), FALSE);
  gtk_list_box_row_set_activatable(GTK_LIST_BOX_ROW(row), TRUE);
  check = Gtk::make_managed<Gtk::CheckButton>();
  // The row takes the tap; the check only shows the state.
  check->set_can_target(false);
  check->set_focusable(false);
  // Out of the focus chain as a whole, or it claims Tab and holds the focus on its row.
  check->set_can_focus(false);
  ui::setAccessibleLabel(*check, mark);
  adw_action_row_add_prefix(ADW_ACTION_ROW(row), GTK_WIDGET(check->gobj()));
  Gtk::Image* logo = ui::icon(icon);
  logo->set_name("channel-logo");
  logo->set_icon_size(Gtk::IconSize::LARGE);
  ui::setAccessibleLabel(*logo, mark);
  adw_action_row_add_prefix(ADW_ACTION_ROW(row), GTK_WIDGET(logo->gobj()));
  struct Target {
    std::string action;
    std::string value;
  };
  g_signal_connect_data(row, "activated", G_CALLBACK(+[](AdwActionRow* self, gpointer data) {
                          const auto& t = *static_cast<Target*>(data);
                          if (t.value.empty()) {
                            gtk_widget_activate_action(GTK_WIDGET(self), t.action.c_str(), nullptr);
                          } else {
                            gtk_widget_activate_action(GTK_WIDGET(self), t.action.c_str(), "s", t.value.c_str());
                          }
                        }),
                        new Target{action, target},
                        [](gpointer data, GClosure*) { delete static_cast<Target*>(data); }, GConnectFlags(0));
  return Gtk::manage(Glib::wrap(row));
}

void setRowTitle(Gtk::Widget& row, const std::string& title) {
  adw_preferences_row_set_title(ADW_PREFERENCES_ROW(row.gobj()), title.c_str());
}

}  // namespace

PayNowPage::PayNowPage(PageContext& context, const Json& payload)
    : ScreenPage(context, texts::kPayNowTitle, true), screen_(payload) {
  follow(screen_);
  // A success leaves the screen; the page goes with it.
  screen_.onPayStep = [this](QXPayNowViewController::PayStep) { refreshSoon(); };
  const auto act = [this](void (QXPayNowViewController::*action)()) {
    return [this, action] {
      (screen_.*action)();
      refreshSoon();
    };
  };
  addAction("toggle-balance", act(&QXPayNowViewController::toggleBalance));
  addAction("select-channel", Glib::VariantType("s"), [this](const Glib::VariantBase& value) {
    const std::string channel = Glib::VariantBase::cast_dynamic<Glib::Variant<Glib::ustring>>(value).get();
    for (const Channel& c : channels_) {
      if (c.key == channel) (screen_.*c.select)();
    }
    refreshSoon();
  });
  addAction("confirm", act(&QXPayNowViewController::confirmAction));

  name_ = ui::label("", "title-2");
  body().append(*name_);
  total_ = ui::label("", "price", false);
  total_->set_name("total");
  body().append(*total_);
  balance_ = ui::boxedList();
  balance_->set_name("balance");
  balanceRow_ = choiceRow("page.toggle-balance", "", balanceCheck_, "qmv-pay-balance-symbolic", gtk_texts::kBalanceMark);
  balance_->append(*balanceRow_);
  body().append(*balance_);
  channelList_ = ui::boxedList();
  channelList_->set_name("channels");
  for (Channel& c : channels_) {
    Gtk::Widget* row = choiceRow("page.select-channel", c.key, c.check, c.icon, c.title);
    setRowTitle(*row, c.title);
    channelList_->append(*row);
  }
  body().append(*channelList_);
  confirm_ = Gtk::make_managed<Gtk::Button>();
  confirm_->set_name("confirm");
  confirm_->add_css_class("suggested-action");
  confirm_->add_css_class("pill");
  confirm_->set_action_name("page.confirm");
  body().append(*confirm_);
  body().append(receipt_.widget());
  note_ = ui::label(PayCashView::note(), "dim-label");
  body().append(*note_);
  screen_.viewDidLoad();
  refresh();
}

void PayNowPage::refresh() {
  name_->set_text(screen_.name);
  total_->set_text(screen_.totalText());
  balance_->set_visible(!screen_.topHidden());
  setRowTitle(*balanceRow_, screen_.balanceText());
  balanceCheck_->set_active(screen_.balanceSelected());
  channelList_->set_visible(!screen_.bottomHidden());
  const bool selected[] = {screen_.alipaySelected(), screen_.weChatSelected(), screen_.unionPaySelected()};
  for (std::size_t i = 0; i < channels_.size(); ++i) channels_[i].check->set_active(selected[i]);
  confirm_->set_label(screen_.confirmTitle());
  // One payment at a time, and none before the balance and the amount have been read:
  // the button rests meanwhile.
  const bool ready = !screen_.isLoading() && !screen_.isPreparing() && !screen_.paid();
  setActionEnabled("confirm", ready);
  confirm_->set_sensitive(ready);
  // The receipt of the order the server prepared, while its payment runs.
  const auto receipt = screen_.receipt();
  std::string shown;
  if (receipt) {
    for (const auto& row : receipt->rows()) shown += row.title + '\t' + row.value + '\n';
    shown += receipt->orderNumber();
  }
  if (shown != shownReceipt_) {
    shownReceipt_ = shown;
    std::vector<BoxedRow> rows;
    if (receipt) {
      for (const auto& row : receipt->rows()) rows.push_back({{row.title, "", row.value, false}, "", {}});
      rows.push_back({{receipt->orderNumber(), "", "", false}, "", {}});
    }
    receipt_.assign(std::move(rows));
  }
  receipt_.widget().set_visible(receipt.has_value());
  note_->set_visible(receipt.has_value());
}

PayResultPage::PayResultPage(PageContext& context, const Json& payload)
    : ScreenPage(context, texts::kPayResultTitle, true), screen_(payload) {
  follow(screen_);
  screen_.onLoaded = [this](bool) { refreshSoon(); };
  addAction("view-order", [this] { screen_.viewOrder(); });

  auto* mark = ui::icon(screen_.paid() ? "object-select-symbolic" : "dialog-error-symbolic");
  mark->set_pixel_size(64);
  mark->add_css_class(screen_.paid() ? "success" : "error");
  ui::setAccessibleLabel(*mark, screen_.resultText());
  body().append(*mark);
  auto* result = ui::label(screen_.resultText(), "title-1", false);
  result->set_name("result");
  result->set_halign(Gtk::Align::CENTER);
  result->add_css_class(screen_.paid() ? "success" : "error");
  body().append(*result);
  name_ = ui::label("", "title-3");
  name_->set_halign(Gtk::Align::CENTER);
  name_->set_justify(Gtk::Justification::CENTER);
  body().append(*name_);
  facts_ = ui::boxedList();
  facts_->set_name("facts");
  amount_ = ui::addRow(*facts_, "", "");
  orderId_ = ui::addRow(*facts_, "", "");
  body().append(*facts_);
  code_ = ui::label("", "title-3", false);
  code_->set_name("code");
  code_->set_selectable(true);
  code_->set_halign(Gtk::Align::CENTER);
  body().append(*code_);
  note_ = ui::label("", "dim-label");
  note_->set_name("note");
  body().append(*note_);
  auto* view = Gtk::make_managed<Gtk::Button>(texts::kViewOrder);
  view->set_name("view-order");
  view->add_css_class("pill");
  view->add_css_class(screen_.paid() ? "suggested-action" : "flat");
  view->set_action_name("page.view-order");
  body().append(*view);
  screen_.viewDidLoad();
  refresh();
}

void PayResultPage::refresh() {
  name_->set_text(screen_.nameText());
  name_->set_visible(!screen_.nameText().empty());
  ui::setRowTexts(*amount_, screen_.amountText(), "");
  amount_->set_visible(!screen_.amountText().empty());
  ui::setRowTexts(*orderId_, screen_.orderIdText(), "");
  orderId_->set_visible(!screen_.orderIdText().empty());
  facts_->set_visible(amount_->get_visible() || orderId_->get_visible());
  code_->set_text(screen_.codeText());
  code_->set_visible(!screen_.codeText().empty());
  note_->set_text(screen_.noteText());
  setActionEnabled("view-order", !screen_.orderIdText().empty());
}

}  // namespace qmv::gtk
