#pragma once
// The member's password change and his level. The password form: the old password, the
// new one and its confirmation, and submit; refusals and the result are the screen's
// toasts, and it pops the page itself. The level page: the level, the points over the
// level's total, the remainder, the progress bar, and the way to the server's level page.
#include "apps/gtk/screen_page.h"
#include "features/member/change_password_view_controller.h"
#include "features/member/member_level_view_controller.h"

namespace qmv::gtk {

class ChangePasswordPage : public ScreenPage {
 public:
  explicit ChangePasswordPage(PageContext& context);
  void refresh() override;

 private:
  ChangePasswordViewController screen_;
  Gtk::Button* submit_ = nullptr;
};

// Each appearance reads the member record again (back from the level page, after a
// profile answer).
class MemberLevelPage : public ScreenPage {
 public:
  explicit MemberLevelPage(PageContext& context);
  void refresh() override;
  void appeared() override { refreshSoon(); }

 private:
  MemberLevelViewController screen_;
  Gtk::Label* level_ = nullptr;
  Gtk::Label* experience_ = nullptr;
  Gtk::Label* remaining_ = nullptr;
  Gtk::ProgressBar* progress_ = nullptr;
};

}  // namespace qmv::gtk
