#include "apps/gtk/wallet_pages.h"

#include "apps/gtk/ui.h"
#include "features/wallet/wallet_texts.h"

namespace qmv::gtk {

BankCardPage::BankCardPage(PageContext& context) : ScreenPage(context, MyBankCardViewController::kTitle, true) {
  follow(screen_);
  screen_.onLoaded = [this](bool) { refreshSoon(); };
  screen_.onUnbindFinished = [this](MyBankCardViewController::UnbindOutcome) { refreshSoon(); };
  addAction("unbind", [this] { screen_.unbindAction(); });
  addAction("add-card", [this] { screen_.addAction(); });
  card_ = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::VERTICAL, 8);
  card_->add_css_class("bank-card");
  card_->set_name("card");
  holder_ = ui::label("", "heading");
  card_->append(*holder_);
  number_ = ui::label("", "title-2");
  card_->append(*number_);
  body().append(*card_);
  unbind_ = Gtk::make_managed<Gtk::Button>();
  unbind_->set_icon_name("user-trash-symbolic");
  unbind_->set_name("unbind");
  unbind_->add_css_class("destructive-action");
  unbind_->set_halign(Gtk::Align::CENTER);
  unbind_->set_action_name("page.unbind");
  body().append(*unbind_);
  add_ = Gtk::make_managed<Gtk::Button>(MyBankCardView::kAddButtonTitle);
  add_->add_css_class("suggested-action");
  add_->set_action_name("page.add-card");
  body().append(*add_);
  refresh();
}

void BankCardPage::refresh() {
  const MyBankCardView& view = screen_.view();
  const bool card = view.cardShown();
  holder_->set_text(card ? view.nameText() : "");
  number_->set_text(card ? view.cardNumberText() : "");
  card_->set_visible(card);
  unbind_->set_visible(card);
  add_->set_visible(!card && !screen_.isLoadingShown());
}

BindCardPage::BindCardPage(PageContext& context) : ScreenPage(context, QXBindBankCardViewController::kTitle, true) {
  follow(screen_);
  screen_.viewDidLoad();
  auto* form = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::VERTICAL, 8);
  using Field = QXBindBankCardViewController::Field;
  const auto field = [this](Field which, const char* name, const char* icon, std::string& text) {
    auto* e = ui::entry(QXBindBankCardViewController::placeholder(which), text, [this, &text](const std::string& t) {
      text = t;
      if (bank_ != nullptr) bank_->set_text(screen_.bankNameText());
    });
    e->set_name(name);
    e->set_icon_from_icon_name(icon, Gtk::Entry::IconPosition::PRIMARY);
    // Enter goes on to the next field; on the code field it binds.
    e->signal_activate().connect([this, which] {
      if (const auto next = screen_.textFieldShouldReturn(which)) fields_[static_cast<std::size_t>(*next)]->grab_focus();
    });
    fields_[static_cast<std::size_t>(which)] = e;
    return e;
  };
  form->append(*field(Field::Name, "holder", "avatar-default-symbolic", screen_.nameText));
  form->append(*field(Field::IdNumber, "id-number", "contact-new-symbolic", screen_.idNumText));
  form->append(*field(Field::CardNumber, "card-number", "auth-smartcard-symbolic", screen_.cardNumText));
  bank_ = ui::label(screen_.bankNameText(), "dim-label");
  bank_->set_name("bank-name");
  form->append(*bank_);
  form->append(*ui::label(screen_.phoneLabelText()));
  auto* codeRow = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::HORIZONTAL, 6);
  auto* code = field(Field::Code, "code", "mail-unread-symbolic", screen_.codeText);
  code->set_hexpand(true);
  codeButton_ = ui::button(screen_.codeButtonTitle(), [this] { screen_.getCodeAction(); });
  codeButton_->set_name("get-code");
  codeRow->append(*code);
  codeRow->append(*codeButton_);
  form->append(*codeRow);
  form->append(*ui::button(QXBindBankCardViewController::kTitle, [this] { screen_.bindAction(); }, "suggested-action"));
  body().append(*form);
  screen_.onCodeFinished = [this](bool) { refreshSoon(); };
}

BindCardPage::~BindCardPage() { screen_.viewWillDisappear(); }

void BindCardPage::refresh() {
  if (codeButton_ == nullptr) return;  // still being built
  codeButton_->set_label(screen_.codeButtonTitle());
  codeButton_->set_sensitive(screen_.codeButtonEnabled());
}

WithdrawPage::WithdrawPage(PageContext& context) : ScreenPage(context, QXWithDrawViewController::kTitle, true) {
  follow(screen_);
  screen_.onRefreshed = [this] { refreshSoon(); };
  auto* form = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::VERTICAL, 8);
  balance_ = ui::label("", "title-2");
  balance_->set_name("balance");
  form->append(*balance_);
  card_ = ui::label("", "dim-label");
  form->append(*ui::label(QXWithDrawViewController::kChooseCardTitle, "heading"));
  form->append(*card_);
  auto* row = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::HORIZONTAL, 6);
  auto* amountLabel = ui::label(QXWithDrawViewController::kAmountLabel, "", false);
  row->append(*amountLabel);
  auto* amount =
      ui::entry(wallet_texts::kNoAmount, screen_.amountText, [this](const std::string& t) { screen_.amountText = t; });
  ui::labelledBy(*amount, *amountLabel);
  amount->set_name("amount");
  amount->set_hexpand(true);
  amount->set_input_purpose(Gtk::InputPurpose::NUMBER);
  // Leaving the field applies the clamp, as the phone's field does.
  auto focus = Gtk::EventControllerFocus::create();
  focus->signal_leave().connect([this, amount] {
    screen_.textFieldDidEndEditing();
    amount->set_text(screen_.amountText);
  });
  amount->add_controller(focus);
  row->append(*amount);
  form->append(*row);
  form->append(*ui::button(QXWithDrawViewController::kTitle, [this, amount] {
    screen_.textFieldDidEndEditing();
    amount->set_text(screen_.amountText);
    screen_.withDrawAction();
  }, "suggested-action"));
  body().append(*form);
  refresh();
}

void WithdrawPage::refresh() {
  if (balance_ == nullptr) return;  // still being built
  balance_->set_text(screen_.balanceText());
  const auto& bank = screen_.bank();
  card_->set_text(bank ? bank->name + wallet_texts::kNameBankSeparator + bank->cardBank + "\n" + screen_.cardNumberText() : "");
}

}  // namespace qmv::gtk
