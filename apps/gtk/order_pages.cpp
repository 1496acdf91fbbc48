#include "apps/gtk/order_pages.h"

#include <adwaita.h>

#include "apps/gtk/gtk_texts.h"
#include "apps/gtk/page_context.h"
#include "apps/gtk/ui.h"
#include "features/orders/order_texts.h"
#include "shell/app_delegate.h"

namespace qmv::gtk {

namespace {

namespace texts = order_texts;

// The tab buttons: the "all" tab's picture, then the three statuses the tabs list.
constexpr const char* kTabIcons[QXMyOrderViewController::kTabCount] = {"view-list-symbolic", "alarm-symbolic",
                                                                        "starred-symbolic", "object-select-symbolic"};
constexpr const char* kTabTexts[QXMyOrderViewController::kTabCount] = {"", texts::kStatusToUse, texts::kStatusToRate,
                                                                        texts::kStatusDone};

Gtk::ToggleButton* tabButton(long tab) {
  auto* button = Gtk::make_managed<Gtk::ToggleButton>();
  auto* face = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::HORIZONTAL, 4);
  face->append(*ui::icon(kTabIcons[tab]));
  if (*kTabTexts[tab] != '\0') {
    auto* text = Gtk::make_managed<Gtk::Label>(kTabTexts[tab]);
    face->append(*text);
    ui::labelledBy(*button, *text);
  } else {
    ui::nameIcon(*button, gtk_texts::kAllOrders);
  }
  button->set_child(*face);
  button->set_name("order-tab" + std::to_string(tab));
  button->set_hexpand(true);
  button->add_css_class("flat");
  button->set_action_name("page.select-tab");
  button->set_action_target_value(Glib::Variant<gint32>::create(static_cast<gint32>(tab)));
  return button;
}

bool orderDrawsAlike(const QXMyOrderTableViewCell& a, const QXMyOrderTableViewCell& b) {
  return a.nameText == b.nameText && a.orderIdText == b.orderIdText && a.priceText == b.priceText &&
         a.numberText == b.numberText && a.numberHidden == b.numberHidden && a.look.statusText == b.look.statusText &&
         a.look.buttonTitle == b.look.buttonTitle && a.look.buttonEnabled == b.look.buttonEnabled;
}

// One order row: the texts on the left, the status and the row's button on the right.
struct OrderRow {
  Gtk::Label* name;
  Gtk::Label* orderId;
  Gtk::Label* price;
  Gtk::Label* number;
  Gtk::Label* status;
  Gtk::Button* button;
};

Gtk::Widget* newOrderRow(const Glib::RefPtr<Gtk::ListItem>&) {
  auto* line = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::HORIZONTAL, 8);
  line->set_margin(8);
  auto* texts = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::VERTICAL, 2);
  texts->set_hexpand(true);
  auto* row = new OrderRow{ui::label("", "heading"), ui::label("", "dim-label"), ui::label(""), ui::label(""),
                           ui::label("", "dim-label", false), Gtk::make_managed<Gtk::Button>()};
  row->button->set_name("order-action");
  gtk_button_set_child(row->button->gobj(), adw_button_content_new());
  for (Gtk::Label* label : {row->name, row->orderId, row->price, row->number}) texts->append(*label);
  line->append(*texts);
  auto* side = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::VERTICAL, 4);
  side->set_valign(Gtk::Align::CENTER);
  side->append(*row->status);
  side->append(*row->button);
  line->append(*side);
  g_object_set_data_full(G_OBJECT(line->gobj()), "qmv-order-row", row, [](gpointer p) { delete static_cast<OrderRow*>(p); });
  return line;
}

void bindOrderRow(Gtk::Widget& line, const QXMyOrderTableViewCell& cell) {
  auto& row = *static_cast<OrderRow*>(g_object_get_data(G_OBJECT(line.gobj()), "qmv-order-row"));
  line.set_name("order-" + cell.orderInfo.orderId);
  row.name->set_text(cell.nameText);
  row.orderId->set_text(cell.orderIdText);
  row.price->set_text(cell.priceText);
  row.number->set_text(cell.numberText);
  row.number->set_visible(!cell.numberHidden);
  row.status->set_text(cell.look.statusText);
  // Refund asks first and rating opens its screen: the cell decides, by the status. The
  // two look apart (a warning red with an undo mark, the accent with a star), since one
  // tap on the wrong one takes back the voucher.
  const bool enabled = cell.look.buttonEnabled;
  const bool rate = enabled && cell.orderInfo.status == "2";
  const bool refund = enabled && !rate;
  auto* content = ADW_BUTTON_CONTENT(gtk_button_get_child(row.button->gobj()));
  adw_button_content_set_label(content, cell.look.buttonTitle.c_str());
  // A refunded order keeps the undo mark, greyed; a finished one a tick.
  const bool undo = refund || cell.orderInfo.status == "3";
  adw_button_content_set_icon_name(content, rate   ? "starred-symbolic"
                                            : undo ? "edit-undo-symbolic"
                                                   : "object-select-symbolic");
  if (enabled) {
    // The target first: the button must never name the action without its parameter.
    row.button->set_action_target_value(Glib::Variant<Glib::ustring>::create(cell.orderInfo.orderId));
    row.button->set_action_name(rate ? "page.rate" : "page.refund");
  } else {
    gtk_actionable_set_action_name(GTK_ACTIONABLE(row.button->gobj()), nullptr);
  }
  if (refund) {
    row.button->add_css_class("destructive-action");
  } else {
    row.button->remove_css_class("destructive-action");
  }
  if (rate) {
    row.button->add_css_class("suggested-action");
  } else {
    row.button->remove_css_class("suggested-action");
  }
  // Heard with the order it acts on: a list reads many alike buttons.
  ui::setAccessibleLabel(*row.button, cell.look.buttonTitle + " " + cell.nameText);
  row.button->set_sensitive(enabled);
}

}  // namespace

OrderListPage::OrderListPage(PageContext& context, long type)
    : ScreenPage(context, texts::kMyOrdersTitle, true),
      screen_(type),
      rows_([](const QXMyOrderTableViewCell& cell) { return cell.orderInfo.orderId; }, &orderDrawsAlike) {
  follow(screen_);
  screen_.onLoaded = [this](bool) { refreshSoon(); };
  screen_.onRefunded = [this](bool) { refreshSoon(); };
  pullToRefresh([this] { screen_.headerRefresh(); });
  addAction("load-more", [this] {
    screen_.footerRefresh();
    refreshSoon();
  });
  addAction("select-tab", Glib::VariantType("i"), [this](const Glib::VariantBase& value) {
    using Tap = void (QXMyOrderViewController::*)();
    constexpr Tap kTaps[] = {&QXMyOrderViewController::allBtnClick, &QXMyOrderViewController::waitUseBtnClick,
                             &QXMyOrderViewController::waitCommentBtnClick, &QXMyOrderViewController::doneBtnClick};
    const gint32 tab = Glib::VariantBase::cast_dynamic<Glib::Variant<gint32>>(value).get();
    if (tab < 0 || tab >= QXMyOrderViewController::kTabCount) return;
    (screen_.*kTaps[tab])();
    refreshSoon();
  });
  addAction("open-row", Glib::VariantType("u"), [this](const Glib::VariantBase& value) {
    // The row drawn at that position, found again in the screen's list, which may have
    // changed since the last redraw.
    const guint32 row = Glib::VariantBase::cast_dynamic<Glib::Variant<guint32>>(value).get();
    if (row >= rows_.size()) return;
    const std::string& orderId = rows_.at(row).orderInfo.orderId;
    for (std::size_t i = 0; i < screen_.numberOfRows(); ++i) {
      if (screen_.orderList[i].orderId == orderId) return screen_.didSelectRow(i);
    }
  });
  addAction("refund", Glib::VariantType("s"), [this](const Glib::VariantBase& id) { rowButton(id); });
  addAction("rate", Glib::VariantType("s"), [this](const Glib::VariantBase& id) { rowButton(id); });

  auto* tabs = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::HORIZONTAL, 4);
  tabs->add_css_class("linked");
  for (long tab = 0; tab < QXMyOrderViewController::kTabCount; ++tab) {
    tabs_[tab] = tabButton(tab);
    tabs->append(*tabs_[tab]);
  }
  body().append(*tabs);
  auto* list = listView(rows_.model(), rowFactory<QXMyOrderTableViewCell>(&newOrderRow, &bindOrderRow), "orders");
  setList(*list);
  more_ = ui::loadMoreButton();
  footer().append(*more_);

  screen_.viewDidLoad();
  refresh();
}

void OrderListPage::rowButton(const Glib::VariantBase& orderId) {
  const auto id = Glib::VariantBase::cast_dynamic<Glib::Variant<Glib::ustring>>(orderId).get();
  if (const QXMyOrderTableViewCell* cell = rows_.find(id)) {
    QXMyOrderTableViewCell pressed = *cell;  // the alert's answer may come after a redraw
    pressed.rightBtnAction();
  }
}

void OrderListPage::refresh() {
  setTitle(screen_.title());
  for (long tab = 0; tab < QXMyOrderViewController::kTabCount; ++tab) {
    tabs_[tab]->set_active(screen_.tabButtons[tab].selected);
  }
  std::vector<QXMyOrderTableViewCell> cells;
  cells.reserve(screen_.numberOfRows());
  for (std::size_t row = 0; row < screen_.numberOfRows(); ++row) cells.push_back(screen_.cellForRow(row));
  rows_.assign(std::move(cells));
  const bool more = !screen_.footerHidden && screen_.numberOfRows() > 0;
  showListState(screen_.numberOfRows() > 0, screen_.noDataShown, QXMyOrderViewController::kEmptyText);
  more_->set_visible(more);
  setActionEnabled("load-more", more && !screen_.isLoading());
}

StoreOrderPage::StoreOrderPage(PageContext& context, const std::string& orderId)
    : ScreenPage(context, texts::kOrderDetailTitle, true), screen_(orderId) {
  follow(screen_);
  screen_.onLoaded = [this](bool) { refreshSoon(); };
  content_ = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::VERTICAL, 12);
  auto* product = ui::boxedList();
  product_ = ui::addRow(*product, "", "", "", [this] { screen_.gotoProductDetailAction(); });
  content_->append(*product);
  auto* facts = ui::boxedList();
  facts->set_name("facts");
  for (Gtk::Widget*& row : facts_) row = ui::addRow(*facts, "", "");
  content_->append(*facts);
  rate_ = ui::boxedList();
  ui::addRow(*rate_, texts::kButtonRate, "", "", [this] { screen_.gotoCommentAction(); });
  content_->append(*rate_);
  body().append(*content_);
  refresh();
}

void StoreOrderPage::refresh() {
  setTitle(screen_.title());
  content_->set_visible(screen_.orderInfo.has_value());
  if (!screen_.orderInfo) return;
  ui::setRowTexts(*product_, screen_.nameText, std::string(texts::kPaidPriceLabel) + " " + screen_.priceText);
  const std::string* texts[] = {&screen_.statusText, &screen_.orderIdText, &screen_.phoneText, &screen_.timeText};
  for (std::size_t i = 0; i < facts_.size(); ++i) ui::setRowTexts(*facts_[i], *texts[i], "");
  rate_->set_visible(!screen_.commentHidden);
}

ActivityOrderPage::ActivityOrderPage(PageContext& context, const std::string& orderId)
    : ScreenPage(context, texts::kOrderDetailTitle, true), screen_(orderId) {
  follow(screen_);
  screen_.onLoaded = [this](bool) { refreshSoon(); };
  content_ = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::VERTICAL, 12);
  auto* product = ui::boxedList();
  product_ = ui::addRow(*product, "", "", "", [this] { screen_.gotoProductDetail(); });
  content_->append(*product);
  code_ = ui::label("", "title-3");
  code_->set_name("code");
  code_->set_selectable(true);
  content_->append(*code_);
  content_->append(*qr_);
  auto* facts = ui::boxedList();
  facts->set_name("facts");
  for (Gtk::Widget*& row : facts_) row = ui::addRow(*facts, "", "");
  content_->append(*facts);
  note_ = ui::label("");
  content_->append(*note_);
  body().append(*content_);
  refresh();
}

void ActivityOrderPage::refresh() {
  setTitle(screen_.title());
  content_->set_visible(screen_.orderInfo.has_value());
  if (!screen_.orderInfo) return;
  ui::setRowTexts(*product_, screen_.nameText, std::string(texts::kUnitPriceLabel) + " " + screen_.priceText);
  code_->set_text(screen_.codeText);
  // The picture is drawn again only for another code.
  if (drawnCode_ != screen_.codeText || screen_.qrCode.has_value() != (qrPicture_ != nullptr)) {
    drawnCode_ = screen_.codeText;
    if (qrPicture_ != nullptr) qr_->remove(*std::exchange(qrPicture_, nullptr));
    if (screen_.qrCode) {
      qrPicture_ = ui::qrPicture(*screen_.qrCode);
      qrPicture_->set_name("qr");
      qr_->append(*qrPicture_);
    }
  }
  const std::string* texts[] = {&screen_.statusText,  &screen_.numberText, &screen_.savingText, &screen_.totalText,
                                &screen_.orderIdText, &screen_.phoneText,  &screen_.timeText};
  for (std::size_t i = 0; i < facts_.size(); ++i) {
    ui::setRowTexts(*facts_[i], *texts[i], "");
    facts_[i]->set_visible(!texts[i]->empty());
  }
  note_->set_text(screen_.contentText);
  note_->set_visible(!screen_.contentText.empty());
}

GradeStorePage::GradeStorePage(PageContext& context, const std::string& orderId, const std::string& storeName)
    : ScreenPage(context, texts::kRateTitle, true),
      screen_(orderId, storeName, &context.appDelegate().successOrderID) {
  follow(screen_);
  screen_.onFinished = [this](bool) { refreshSoon(); };
  auto* store = ui::label(screen_.storeName(), "title-2");
  store->set_name("store-name");
  body().append(*store);
  auto* stars = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::HORIZONTAL, 4);
  stars->set_halign(Gtk::Align::CENTER);
  stars->set_tooltip_text(texts::kRateStarsLabel);
  for (int n = 1; n <= GradeStoreViewController::kMaxStar; ++n) {
    auto* star = Gtk::make_managed<Gtk::Button>();
    star->add_css_class("flat");
    star->set_name("star" + std::to_string(n));
    ui::nameIcon(*star, gtk_texts::starsOf(n));
    star->signal_clicked().connect([this, n] {
      screen_.selectStar(n);
      refresh();
    });
    stars_[n - 1] = star;
    stars->append(*star);
  }
  body().append(*stars);
  auto* comment = Gtk::make_managed<Gtk::TextView>();
  comment->set_name("comment");
  comment->set_wrap_mode(Gtk::WrapMode::WORD_CHAR);
  comment->set_size_request(-1, 120);
  comment->add_css_class("card");
  comment->set_top_margin(8);
  comment->set_left_margin(8);
  comment->set_right_margin(8);
  comment->set_tooltip_text(texts::kRatePlaceholder);
  ui::setAccessibleLabel(*comment, texts::kRatePlaceholder);
  comment->get_buffer()->signal_changed().connect([this, comment] {
    screen_.contentText = comment->get_buffer()->get_text();
    refresh();
  });
  body().append(*comment);
  count_ = ui::label(screen_.countText(), "dim-label", false);
  count_->set_name("count");
  count_->set_halign(Gtk::Align::END);
  body().append(*count_);
  submit_ = submitButton(texts::kRateSubmit, [this] { screen_.submitAction(); });
  body().append(*submit_);
  refresh();
}

void GradeStorePage::refresh() {
  for (int n = 1; n <= GradeStoreViewController::kMaxStar; ++n) {
    stars_[n - 1]->set_icon_name(n <= screen_.star() ? "starred-symbolic" : "non-starred-symbolic");
  }
  count_->set_text(screen_.countText());
  submit_->set_sensitive(!screen_.isSubmitting());
}

}  // namespace qmv::gtk
