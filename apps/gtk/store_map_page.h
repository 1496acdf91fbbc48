#pragma once
// The single-store map (MapViewController): the store's pin and the route hand-off.
#include "apps/gtk/pin_map.h"
#include "apps/gtk/screen_page.h"
#include "features/discovery/map_view_controller.h"

namespace qmv::gtk {

// Built once: the map with the store's pin and the address under it.
class StoreMapPage : public ScreenPage {
 public:
  StoreMapPage(PageContext& context, StoreInfoModel store);
  void refresh() override;

 private:
  MapViewController screen_;
  PinMap map_;
  Gtk::Label* address_ = nullptr;
};

}  // namespace qmv::gtk
