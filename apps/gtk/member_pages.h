#pragma once
// The wealth and member tabs. The wealth tab draws WealthViewController: the balance, the
// bound card's line and the ways into the wallet screens. The member tab has no screen of
// its own in the core: it shows the member record (or the way to sign in), the member's
// own screens with the unread messages' badge, and signs out through LogoutFlow.
#include <array>

#include "apps/gtk/screen_page.h"
#include "core/session/logout_flow.h"
#include "features/member/unread_message_badge.h"
#include "features/wallet/wealth_view_controller.h"

namespace qmv::gtk {

// Both built once; a redraw sets the member's texts and what shows signed in or out.
// Each time the wealth tab is shown, its screen refreshes the balance and the card; each
// time the member tab is shown, the badge counts the unread messages again.
class WealthPage : public ScreenPage {
 public:
  explicit WealthPage(PageContext& context);
  void refresh() override;

 private:
  WealthViewController screen_;
  Gtk::Box* balance_ = nullptr;
  Gtk::Label* amount_ = nullptr;
  Gtk::Label* card_ = nullptr;
};

class MinePage : public ScreenPage {
 public:
  explicit MinePage(PageContext& context);
  void refresh() override;

 private:
  LogoutFlow logout_;
  UnreadMessageBadge badge_;
  Gtk::Label* unread_ = nullptr;  // the badge on the messages row
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
