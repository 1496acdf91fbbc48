#include "apps/gtk/store_map_page.h"

#include "apps/gtk/ui.h"

namespace qmv::gtk {

StoreMapPage::StoreMapPage(PageContext& context, StoreInfoModel store)
    : ScreenPage(context, store.storeName, true), screen_(std::move(store)) {
  auto* route = Gtk::make_managed<Gtk::Button>();
  route->set_icon_name("route-symbolic");
  route->set_name("navigate");
  route->signal_clicked().connect([this] { screen_.navigate(); });
  addHeaderButton(*route);
  screen_.viewDidLoad();
  refresh();
}

void StoreMapPage::refresh() {
  ui::clear(body());
  std::vector<PinMap::Pin> pins;
  if (const auto gcj = screen_.storeCoordinateGcj()) {
    pins.push_back({*gcj, screen_.store().storeName, screen_.store().address, nullptr});
  }
  map_.setPins(std::move(pins));
  body().append(map_.widget());
  body().append(*ui::label(screen_.store().address, "dim-label"));
}

}  // namespace qmv::gtk
