#include "apps/gtk/account_pages.h"
#include "apps/gtk/ui.h"

namespace qmv::gtk {

FindPwdPage::FindPwdPage(PageContext& context) : ScreenPage(context, FindPwdViewController::kTitle, true) {
  follow(screen_);
  FindPwdView& view = screen_.view();
  auto* form = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::VERTICAL, 8);
  auto* phone = ui::entry(FindPwdView::kPhonePlaceholder, view.phoneText, [&view](const std::string& t) { view.phoneText = t; });
  phone->set_name("phone");
  auto* row = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::HORIZONTAL, 6);
  auto* code = ui::entry(FindPwdView::kCodePlaceholder, view.codeText, [&view](const std::string& t) { view.codeText = t; });
  code->set_name("code");
  code->set_hexpand(true);
  codeButton_ = ui::button(view.codeButtonTitle(), [&view] { view.getVerifyMsg(); });
  codeButton_->set_name("get-code");
  row->append(*code);
  row->append(*codeButton_);
  form->append(*phone);
  form->append(*row);
  form->append(*ui::button(FindPwdView::kNextButtonTitle, [&view] { view.nextAction(); }, "suggested-action"));
  body().append(*form);
  screen_.onCodeFinished = [this](bool) { refresh(); };
  screen_.viewDidLoad();
}

FindPwdPage::~FindPwdPage() { screen_.view().stopTimer(); }

void FindPwdPage::refresh() {
  if (codeButton_ == nullptr) return;  // still being built
  codeButton_->set_label(screen_.view().codeButtonTitle());
  codeButton_->set_sensitive(screen_.view().codeButtonEnabled());
}

FindPwdStep2Page::FindPwdStep2Page(PageContext& context, const std::string& phone)
    : ScreenPage(context, FindPwdStep2ViewController::kTitle, true), screen_(phone) {
  follow(screen_);
  FindPwdStep2View& view = screen_.view();
  auto* form = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::VERTICAL, 8);
  auto* password = ui::entry(FindPwdStep2View::kPasswordPlaceholder, view.passwordText,
                             [&view](const std::string& t) { view.passwordText = t; }, true);
  password->set_name("password");
  auto* confirm = ui::entry(FindPwdStep2View::kConfirmPlaceholder, view.confirmText,
                            [&view](const std::string& t) { view.confirmText = t; }, true);
  confirm->set_name("confirm");
  form->append(*password);
  form->append(*confirm);
  form->append(*ui::button(FindPwdStep2View::kSubmitButtonTitle, [&view] { view.submitAction(); }, "suggested-action"));
  body().append(*form);
}

}  // namespace qmv::gtk
