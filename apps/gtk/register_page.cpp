#include "apps/gtk/gtk_texts.h"
#include "apps/gtk/account_pages.h"
#include "apps/gtk/ui.h"
#include "core/session/account_texts.h"

namespace qmv::gtk {

namespace {

Gtk::Entry* iconEntry(const char* icon, const std::string& placeholder, std::string& text, bool password = false) {
  auto* e = ui::entry(placeholder, text, [&text](const std::string& t) { text = t; }, password);
  e->set_icon_from_icon_name(icon, Gtk::Entry::IconPosition::PRIMARY);
  return e;
}

}  // namespace

RegisterPage::RegisterPage(PageContext& context) : ScreenPage(context, QXRegisterViewController::kTitle, true) {
  namespace texts = account_texts;
  follow(screen_);
  auto* form = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::VERTICAL, 8);
  auto* phone = iconEntry("phone-symbolic", texts::kPhonePlaceholder, screen_.phoneText);
  phone->set_name("phone");
  auto* codeRow = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::HORIZONTAL, 6);
  auto* code = iconEntry("mail-unread-symbolic", texts::kCodePlaceholder, screen_.codeText);
  code->set_name("code");
  code->set_hexpand(true);
  codeButton_ = ui::button(screen_.codeButtonTitle(), [this] { screen_.getCodeAction(); });
  codeButton_->set_name("get-code");
  codeRow->append(*code);
  codeRow->append(*codeButton_);
  auto* name = iconEntry("avatar-default-symbolic", texts::kUserNamePlaceholder, screen_.userNameText);
  name->set_name("user-name");
  ui::setAccessibleLabel(*name, gtk_texts::kUserName);
  auto* password = iconEntry("dialog-password-symbolic", texts::kPasswordPlaceholder, screen_.passwordText, true);
  password->set_name("password");
  auto* confirm = iconEntry("dialog-password-symbolic", texts::kConfirmPasswordPlaceholder, screen_.confirmText, true);
  confirm->set_name("confirm");
  ui::setAccessibleLabel(*confirm, gtk_texts::kConfirmPassword);
  auto* inviteRow = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::HORIZONTAL, 6);
  invite_ = iconEntry("contact-new-symbolic", texts::kInvitePlaceholder, screen_.inviteText);
  invite_->set_name("invite");
  ui::setAccessibleLabel(*invite_, gtk_texts::kInviteCode);
  invite_->set_hexpand(true);
  auto* scan = Gtk::make_managed<Gtk::Button>();
  scan->set_icon_name("camera-photo-symbolic");
  scan->set_name("scan");
  ui::nameIcon(*scan, gtk_texts::kScanInvite);
  scan->signal_clicked().connect([this] { screen_.QRCodeAction(); });
  inviteRow->append(*invite_);
  inviteRow->append(*scan);
  for (Gtk::Widget* w : std::initializer_list<Gtk::Widget*>{phone, codeRow, name, password, confirm, inviteRow}) {
    form->append(*w);
  }
  form->append(*ui::button(texts::kRegisterButton, [this] { screen_.submitAction(); }, "suggested-action"));
  body().append(*form);
  screen_.onCodeFinished = [this](bool) { refresh(); };
  screen_.viewDidLoad();
}

RegisterPage::~RegisterPage() { screen_.stopTimer(); }

void RegisterPage::refresh() {
  if (codeButton_ == nullptr) return;  // still being built
  codeButton_->set_label(screen_.codeButtonTitle());
  codeButton_->set_sensitive(screen_.codeButtonEnabled());
  // A scanned invitation lands in the field.
  if (invite_->get_text().raw() != screen_.inviteText) invite_->set_text(screen_.inviteText);
}

}  // namespace qmv::gtk
