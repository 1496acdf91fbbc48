#pragma once
// The account screens: login (presented in its own layer), registration with the QR
// invitation, and the two steps of password recovery.
#include "apps/gtk/screen_page.h"
#include "core/session/find_pwd_step2_view_controller.h"
#include "core/session/find_pwd_view_controller.h"
#include "core/session/login_view_controller.h"
#include "core/session/qx_register_view_controller.h"

namespace qmv::gtk {

// Built once; an appearance refills the two fields from the screen.
class LoginPage : public ScreenPage {
 public:
  explicit LoginPage(PageContext& context);
  void refresh() override {}
  void appeared() override;

 private:
  LoginViewController screen_;
  Gtk::Entry* phone_ = nullptr;
  Gtk::Entry* password_ = nullptr;
};

}  // namespace qmv::gtk

namespace qmv::gtk {

class RegisterPage : public ScreenPage {
 public:
  explicit RegisterPage(PageContext& context);
  ~RegisterPage() override;
  void refresh() override;
  QXRegisterViewController& screen() { return screen_; }

 private:
  QXRegisterViewController screen_;
  Gtk::Button* codeButton_ = nullptr;
  Gtk::Entry* invite_ = nullptr;
};

class FindPwdPage : public ScreenPage {
 public:
  explicit FindPwdPage(PageContext& context);
  ~FindPwdPage() override;
  void refresh() override;

 private:
  FindPwdViewController screen_;
  Gtk::Button* codeButton_ = nullptr;
};

class FindPwdStep2Page : public ScreenPage {
 public:
  FindPwdStep2Page(PageContext& context, const std::string& phone);
  void refresh() override {}

 private:
  FindPwdStep2ViewController screen_;
};

}  // namespace qmv::gtk
