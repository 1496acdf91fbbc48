#include "apps/gtk/order_pages.h"

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

Gtk::Widget* tabButton(long tab, bool selected, std::function<void()> tapped) {
  auto* button = Gtk::make_managed<Gtk::ToggleButton>();
  auto* face = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::HORIZONTAL, 4);
  face->append(*ui::icon(kTabIcons[tab]));
  if (*kTabTexts[tab] != '\0') face->append(*Gtk::make_managed<Gtk::Label>(kTabTexts[tab]));
  button->set_child(*face);
  button->set_name("order-tab" + std::to_string(tab));
  button->set_active(selected);
  button->set_hexpand(true);
  button->add_css_class("flat");
  button->signal_clicked().connect(std::move(tapped));
  return button;
}

}  // namespace

OrderListPage::OrderListPage(PageContext& context, long type)
    : ScreenPage(context, texts::kMyOrdersTitle, true), screen_(type) {
  follow(screen_);
  screen_.onLoaded = [this](bool) { refreshSoon(); };
  screen_.onRefunded = [this](bool) { refreshSoon(); };
  pullToRefresh([this] { screen_.headerRefresh(); });
  screen_.viewDidLoad();
  refresh();
}

void OrderListPage::refresh() {
  setTitle(screen_.title());
  ui::clear(body());
  auto* tabs = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::HORIZONTAL, 4);
  tabs->add_css_class("linked");
  using Tap = void (QXMyOrderViewController::*)();
  constexpr Tap kTaps[] = {&QXMyOrderViewController::allBtnClick, &QXMyOrderViewController::waitUseBtnClick,
                           &QXMyOrderViewController::waitCommentBtnClick, &QXMyOrderViewController::doneBtnClick};
  for (long tab = 0; tab < QXMyOrderViewController::kTabCount; ++tab) {
    tabs->append(*tabButton(tab, screen_.tabButtons[tab].selected, [this, tap = kTaps[tab]] {
      (screen_.*tap)();
      refreshSoon();
    }));
  }
  body().append(*tabs);

  auto* list = ui::boxedList();
  list->set_name("orders");
  for (std::size_t row = 0; row < screen_.numberOfRows(); ++row) {
    QXMyOrderTableViewCell cell = screen_.cellForRow(row);
    auto* line = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::HORIZONTAL, 8);
    line->set_margin(8);
    auto* texts = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::VERTICAL, 2);
    texts->set_hexpand(true);
    texts->append(*ui::label(cell.nameText, "heading"));
    texts->append(*ui::label(cell.orderIdText, "dim-label"));
    texts->append(*ui::label(cell.priceText));
    if (!cell.numberHidden) texts->append(*ui::label(cell.numberText));
    line->append(*texts);
    auto* side = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::VERTICAL, 4);
    side->set_valign(Gtk::Align::CENTER);
    side->append(*ui::label(cell.look.statusText, "dim-label", false));
    const std::string title = cell.look.buttonTitle;
    const bool enabled = cell.look.buttonEnabled;
    // The row's button asks and refunds (or rates) through the cell the screen made.
    auto* action = ui::button(title, [cell = std::move(cell)]() mutable { cell.rightBtnAction(); },
                              enabled ? "destructive-action" : "");
    action->set_sensitive(enabled);
    side->append(*action);
    line->append(*side);
    auto* item = Gtk::make_managed<Gtk::ListBoxRow>();
    item->set_child(*line);
    item->set_name("order" + std::to_string(row));
    list->append(*item);
  }
  list->signal_row_activated().connect([this](Gtk::ListBoxRow* row) {
    screen_.didSelectRow(static_cast<std::size_t>(row->get_index()));
  });
  if (screen_.numberOfRows() > 0) body().append(*list);
  if (!screen_.footerHidden && screen_.numberOfRows() > 0) {
    auto* more = Gtk::make_managed<Gtk::Button>();
    more->set_icon_name("view-more-horizontal-symbolic");
    more->set_name("load-more");
    more->add_css_class("flat");
    more->set_sensitive(!screen_.isLoading());
    more->signal_clicked().connect([this] {
      screen_.footerRefresh();
      refreshSoon();
    });
    body().append(*more);
  }
}

StoreOrderPage::StoreOrderPage(PageContext& context, const std::string& orderId)
    : ScreenPage(context, texts::kOrderDetailTitle, true), screen_(orderId) {
  follow(screen_);
  screen_.onLoaded = [this](bool) { refreshSoon(); };
}

void StoreOrderPage::refresh() {
  setTitle(screen_.title());
  ui::clear(body());
  if (!screen_.orderInfo) return;
  auto* product = ui::boxedList();
  ui::addRow(*product, screen_.nameText, screen_.priceText, "", [this] { screen_.gotoProductDetailAction(); });
  body().append(*product);
  auto* facts = ui::boxedList();
  facts->set_name("facts");
  for (const std::string* text : {&screen_.orderIdText, &screen_.phoneText, &screen_.timeText}) {
    ui::addRow(*facts, *text, "");
  }
  body().append(*facts);
  if (!screen_.commentHidden) {
    auto* rate = ui::boxedList();
    ui::addRow(*rate, texts::kButtonRate, "", "", [this] { screen_.gotoCommentAction(); });
    body().append(*rate);
  }
}

ActivityOrderPage::ActivityOrderPage(PageContext& context, const std::string& orderId)
    : ScreenPage(context, texts::kOrderDetailTitle, true), screen_(orderId) {
  follow(screen_);
  screen_.onLoaded = [this](bool) { refreshSoon(); };
}

void ActivityOrderPage::refresh() {
  setTitle(screen_.title());
  ui::clear(body());
  if (!screen_.orderInfo) return;
  auto* product = ui::boxedList();
  ui::addRow(*product, screen_.nameText, screen_.priceText, "", [this] { screen_.gotoProductDetail(); });
  body().append(*product);
  auto* code = ui::label(screen_.codeText, "title-3");
  code->set_name("code");
  code->set_selectable(true);
  body().append(*code);
  if (screen_.qrCode) {
    auto* picture = ui::qrPicture(*screen_.qrCode);
    picture->set_name("qr");
    body().append(*picture);
  }
  auto* facts = ui::boxedList();
  facts->set_name("facts");
  for (const std::string* text :
       {&screen_.numberText, &screen_.totalText, &screen_.orderIdText, &screen_.phoneText, &screen_.timeText}) {
    ui::addRow(*facts, *text, "");
  }
  body().append(*facts);
  if (!screen_.contentText.empty()) body().append(*ui::label(screen_.contentText));
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
  comment->get_buffer()->signal_changed().connect([this, comment] {
    screen_.contentText = comment->get_buffer()->get_text();
    refresh();
  });
  body().append(*comment);
  count_ = ui::label(screen_.countText(), "dim-label", false);
  count_->set_name("count");
  count_->set_halign(Gtk::Align::END);
  body().append(*count_);
  submit_ = ui::button(texts::kRateSubmit, [this] {
    screen_.submitAction();
    refresh();
  }, "suggested-action");
  submit_->set_name("submit");
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
