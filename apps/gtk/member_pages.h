#pragma once
// The wealth and member tabs. Neither has a screen of its own in the core: the wealth
// tab shows the balance with the ways into the wallet screens, and the member tab shows
// the member record (or the way to sign in) and signs out through LogoutFlow.
#include <array>

#include "apps/gtk/screen_page.h"
#include "core/session/logout_flow.h"

namespace qmv::gtk {

// Both built once; a redraw sets the member's texts and what shows signed in or out.
class WealthPage : public ScreenPage {
 public:
  explicit WealthPage(PageContext& context);
  void refresh() override;

 private:
  Gtk::Label* balance_ = nullptr;
};

class MinePage : public ScreenPage {
 public:
  explicit MinePage(PageContext& context);
  void refresh() override;

 private:
  LogoutFlow logout_;
  Gtk::Button* login_ = nullptr;
  Gtk::Box* member_ = nullptr;
  Gtk::Label* name_ = nullptr;
  std::array<Gtk::Widget*, 3> facts_{};  // name and phone, balance, level
};

// The first-run guide: one page, and the way on to the main tabs.
class GuidePage : public ScreenPage {
 public:
  explicit GuidePage(PageContext& context);
  void refresh() override {}
};

}  // namespace qmv::gtk
