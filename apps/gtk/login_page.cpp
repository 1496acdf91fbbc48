#include "apps/gtk/account_pages.h"
#include "apps/gtk/ui.h"

namespace qmv::gtk {

LoginPage::LoginPage(PageContext& context) : ScreenPage(context, LoginViewController::kTitle, false) {
  follow(screen_);
  screen_.viewWillAppear();
  build();
}

void LoginPage::appeared() {
  screen_.viewWillAppear();
  build();
}

void LoginPage::build() {
  LoginView& view = screen_.view();
  ui::clear(body());
  auto* form = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::VERTICAL, 8);
  auto* phone = ui::entry(LoginView::kPhonePlaceholder, view.phoneText, [&view](const std::string& t) { view.phoneText = t; });
  phone->set_name("phone");
  phone->set_input_purpose(Gtk::InputPurpose::PHONE);
  auto* password = ui::entry(LoginView::kPasswordPlaceholder, view.passwordText,
                             [&view](const std::string& t) { view.passwordText = t; }, true);
  password->set_name("password");
  password->signal_activate().connect([this] { screen_.loginNet(); });
  form->append(*phone);
  form->append(*password);
  form->append(*ui::button(LoginView::kLoginButtonTitle, [this] { screen_.loginNet(); }, "suggested-action"));
  auto* links = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::HORIZONTAL, 6);
  links->set_homogeneous(true);
  links->append(*ui::button(LoginView::kRegisterButtonTitle, [this] { screen_.registerAction(); }, "flat"));
  links->append(*ui::button(LoginView::kForgetButtonTitle, [this] { screen_.forgetAction(); }, "flat"));
  form->append(*links);
  form->append(*ui::button(LoginView::kCancelButtonTitle, [this] { screen_.cancel(); }, "flat"));
  body().append(*form);
}

}  // namespace qmv::gtk
