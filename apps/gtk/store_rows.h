#pragma once
// Store rows as every list of stores shows them: name, headline, distance from the
// member, price and sales; a tap opens the store screen.
#include <gtkmm.h>

#include <vector>

#include "apps/gtk/boxed_rows.h"
#include "apps/gtk/row_list.h"
#include "features/discovery/store_info_model.h"

namespace qmv::gtk {

// What a store's row shows; it opens the store.
RowTexts storeRowTexts(const StoreInfoModel& store);

// One row per store, tapping runs page.open-store with the store's id; placeholder rows
// (no store) are skipped.
std::vector<BoxedRow> storeBoxedRows(const std::vector<StoreInfoModel>& stores);

}  // namespace qmv::gtk
