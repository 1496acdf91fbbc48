#pragma once
// The wealth and member tabs. The wealth tab draws WealthViewController: the balance, the
// bound card's line and the ways into the wallet screens. The member tab draws
// ZDMyViewController: the portrait and the member record (or the way to sign in), the
// member's own screens with the unread messages' badge; it signs out through LogoutFlow.
#include <vector>

#include "apps/gtk/screen_page.h"
#include "core/session/logout_flow.h"
#include "features/member/zd_my_view_controller.h"
#include "features/wallet/wealth_view_controller.h"

namespace qmv::gtk {

// Both built once; a redraw sets the member's texts and what shows signed in or out.
// Each time the wealth tab is shown, its screen refreshes the balance and the card; each
// time the member tab is shown, its screen counts the unread messages again.
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
  ZDMyViewController screen_;
  LogoutFlow logout_;
  std::vector<Gtk::Label*> badges_;  // one per entry, hidden while empty
  Gtk::Button* login_ = nullptr;
  Gtk::Box* member_ = nullptr;
  Gtk::Picture* portrait_ = nullptr;
  Gtk::Label* name_ = nullptr;
  Gtk::Widget* account_ = nullptr;
  Gtk::Widget* balance_ = nullptr;
  Gtk::Widget* level_ = nullptr;
};

}  // namespace qmv::gtk
