#include "apps/gtk/store_rows.h"

#include "apps/gtk/ui.h"
#include "core/session/global_data.h"
#include "features/discovery/main_view_controller.h"
#include "features/discovery/store_screens.h"

namespace qmv::gtk {

void addStoreRows(Gtk::ListBox& list, const std::vector<StoreInfoModel>& stores) {
  const auto member = GlobalData::sharedInstance().userLocation();
  for (const StoreInfoModel& store : stores) {
    if (MainViewController::isPlaceholderRow(store)) continue;
    std::string subtitle = store.title;
    subtitle += (subtitle.empty() ? "" : "\n") + store.distanceText(member) + "  " + store.soldText();
    ui::addRow(list, store.storeName, subtitle, store.priceText(), [store] { openStoreDetail(store); });
  }
}

}  // namespace qmv::gtk
