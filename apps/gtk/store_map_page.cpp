#include "apps/gtk/store_map_page.h"

#include "apps/gtk/gtk_texts.h"
#include "apps/gtk/page_context.h"
#include "apps/gtk/ui.h"
#include "core/session/global_data.h"

namespace qmv::gtk {

StoreMapPage::StoreMapPage(PageContext& context, StoreInfoModel store)
    : ScreenPage(context, store.storeName, true), screen_(std::move(store)), map_(context.mapTiles()) {
  addAction("navigate", [this] { screen_.navigate(); });
  auto* route = Gtk::make_managed<Gtk::Button>();
  // An icon every Adwaita theme has (some lack a route icon and would draw a broken one).
  route->set_icon_name("find-location-symbolic");
  route->set_name("navigate");
  ui::nameIcon(*route, gtk_texts::kNavigate);
  route->set_action_name("page.navigate");
  addHeaderButton(*route);
  // The map grows with the window, the address under it.
  fillPage();
  fillWidth();
  body().append(map_.widget());
  address_ = ui::label("", "dim-label");
  address_->set_margin(12);
  body().append(*address_);
  screen_.viewDidLoad();
  refresh();
}

void StoreMapPage::refresh() {
  address_->set_text(screen_.store().address);
  map_.setMyLocation(GlobalData::sharedInstance().userLocation());
  // The pin only when the map has none yet: setting it again would re-centre the map.
  if (map_.pinCount() > 0) return;
  if (const auto gcj = screen_.storeCoordinateGcj()) {
    map_.setPins({{*gcj, screen_.store().storeName, screen_.store().address, nullptr}});
  }
}

}  // namespace qmv::gtk
