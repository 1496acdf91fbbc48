#include "apps/gtk/store_rows.h"

#include "apps/gtk/ui.h"
#include "core/session/global_data.h"
#include "features/discovery/main_view_controller.h"
#include "features/discovery/store_screens.h"

namespace qmv::gtk {

RowTexts storeRowTexts(const StoreInfoModel& store) {
  std::string subtitle = store.title;
  subtitle += (subtitle.empty() ? "" : "\n") + store.distanceText(GlobalData::sharedInstance().userLocation()) + "  " +
              store.soldText();
  return {store.storeName, subtitle, store.priceText(), true};
}

void addStoreRows(Gtk::ListBox& list, const std::vector<StoreInfoModel>& stores) {
  for (const StoreInfoModel& store : stores) {
    if (MainViewController::isPlaceholderRow(store)) continue;
    const RowTexts texts = storeRowTexts(store);
    ui::addRow(list, texts.title, texts.subtitle, texts.trailing, [store] { openStoreDetail(store); });
  }
}

}  // namespace qmv::gtk
