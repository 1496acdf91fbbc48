#pragma once
// The nearby tab (NearbyViewController): the filter bar with its three drop-downs and
// the paged store list, the keyword screen with its history, and the map face with the
// stores around the member as pins.
#include <memory>

#include "apps/gtk/pin_map.h"
#include "apps/gtk/screen_page.h"
#include "features/discovery/nearby_view_controller.h"

namespace qmv::gtk {

class NearbyPage : public ScreenPage {
 public:
  // `screen` is the tab's screen, shared with the application delegate's hand-offs.
  NearbyPage(PageContext& context, std::shared_ptr<NearbyViewController> screen);
  ~NearbyPage() override;
  void refresh() override;
  NearbyViewController& screen() { return *screen_; }

  // The keyword face: the search field with the history under it.
  void showSearch(bool shown);

 private:
  void drawList();
  void drawFilterDropDown();
  void drawSearch();
  void drawMap();

  std::shared_ptr<NearbyViewController> screen_;
  PinMap map_;
  Gtk::Box mapBox_{Gtk::Orientation::VERTICAL, 6};
  bool searching_ = false;
  std::function<void(const std::string&)> coreSearch_;
};

}  // namespace qmv::gtk
