#include "apps/gtk/store_rows.h"

#include "core/session/global_data.h"
#include "features/discovery/main_view_controller.h"

namespace qmv::gtk {

RowTexts storeRowTexts(const StoreInfoModel& store) {
  std::string subtitle = store.title;
  subtitle += (subtitle.empty() ? "" : "\n") + store.distanceText(GlobalData::sharedInstance().userLocation()) + "  " +
              store.soldText();
  return {store.storeName, subtitle, store.priceText(), true};
}

std::vector<BoxedRow> storeBoxedRows(const std::vector<StoreInfoModel>& stores) {
  std::vector<BoxedRow> rows;
  for (const StoreInfoModel& store : stores) {
    if (MainViewController::isPlaceholderRow(store)) continue;
    rows.push_back({storeRowTexts(store), "page.open-store", store.storeId});
  }
  return rows;
}

}  // namespace qmv::gtk
