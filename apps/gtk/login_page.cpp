#include "apps/gtk/account_pages.h"
#include "apps/gtk/ui.h"

namespace qmv::gtk {

LoginPage::LoginPage(PageContext& context) : ScreenPage(context, LoginViewController::kTitle, false) {
  follow(screen_);
  addAction("login", [this] { screen_.loginNet(); });
  addAction("register", [this] { screen_.registerAction(); });
  addAction("forget", [this] { screen_.forgetAction(); });
  addAction("cancel", [this] { screen_.cancel(); });
  screen_.viewWillAppear();
  LoginView& view = screen_.view();
  auto* form = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::VERTICAL, 8);
  phone_ = ui::entry(LoginView::kPhonePlaceholder, view.phoneText, [&view](const std::string& t) { view.phoneText = t; });
  phone_->set_name("phone");
  phone_->set_input_purpose(Gtk::InputPurpose::PHONE);
  password_ = ui::entry(LoginView::kPasswordPlaceholder, view.passwordText,
                        [&view](const std::string& t) { view.passwordText = t; }, true);
  password_->set_name("password");
  password_->signal_activate().connect([this] { activate_action("page.login"); });
  form->append(*phone_);
  form->append(*password_);
  const auto button = [](const char* title, const char* action, const char* cssClass) {
    auto* b = Gtk::make_managed<Gtk::Button>(title);
    b->add_css_class(cssClass);
    b->set_action_name(action);
    return b;
  };
  form->append(*button(LoginView::kLoginButtonTitle, "page.login", "suggested-action"));
  auto* links = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::HORIZONTAL, 6);
  links->set_homogeneous(true);
  links->append(*button(LoginView::kRegisterButtonTitle, "page.register", "flat"));
  links->append(*button(LoginView::kForgetButtonTitle, "page.forget", "flat"));
  form->append(*links);
  form->append(*button(LoginView::kCancelButtonTitle, "page.cancel", "flat"));
  body().append(*form);
}

// Each appearance shows the fields as the screen has them now (a registration may have
// filled the phone).
void LoginPage::appeared() {
  screen_.viewWillAppear();
  const LoginView& view = screen_.view();
  const std::string phone = view.phoneText;
  const std::string password = view.passwordText;
  phone_->set_text(phone);
  password_->set_text(password);
}

}  // namespace qmv::gtk
