#pragma once
// The main tabs (TabBarViewController): a libadwaita view stack with the switcher bar at
// the bottom, as a phone's tab bar. The selected tab follows the core's tab bar both
// ways: a tap selects the item, and the core's jumps (to nearby with a category) select
// the tab. A tab's page is built when the tab is first shown, not at start.
#include <array>
#include <functional>
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
  // The tab's page, built now when it was not yet. REQUIRES: 0 <= index < 5.
  ScreenPage& tab(int index);
  // The selected tab became visible again (e.g. the login layer closed).
  void appeared();

  // After another tab was shown (its page built when it was not yet).
  std::function<void()> onTabShown;

 private:
  static constexpr std::size_t kTabCount = 5;

  PageContext& context_;
  TabBarViewController& tabBar_;
  std::shared_ptr<NearbyViewController> nearby_;
  AdwViewStack* stack_;
  std::array<Gtk::Box*, kTabCount> slots_{};
  std::array<ScreenPage*, kTabCount> tabs_{};
};

}  // namespace qmv::gtk
