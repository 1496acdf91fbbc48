#pragma once
// The main tabs (TabBarViewController): a libadwaita view stack with the switcher bar at
// the bottom, as a phone's tab bar. The selected tab follows the core's tab bar both
// ways: a tap selects the item, and the core's jumps (to nearby with a category) select
// the tab.
#include <memory>
#include <vector>

#include "apps/gtk/screen_page.h"

typedef struct _AdwViewStack AdwViewStack;

namespace qmv {
class NearbyViewController;
class TabBarViewController;
}  // namespace qmv

namespace qmv::gtk {

class HomePage;

class TabBarPage : public Gtk::Box {
 public:
  TabBarPage(PageContext& context, TabBarViewController& tabBar, std::shared_ptr<NearbyViewController> nearby);
  ~TabBarPage() override;

  void select(int index);
  int selected() const;
  ScreenPage& tab(int index) { return *tabs_.at(static_cast<std::size_t>(index)); }
  // The selected tab became visible again (e.g. the login layer closed).
  void appeared();

 private:
  TabBarViewController& tabBar_;
  AdwViewStack* stack_;
  std::vector<ScreenPage*> tabs_;
};

}  // namespace qmv::gtk
