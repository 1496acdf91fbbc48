#pragma once
// Store rows as every list of stores shows them: name, headline, distance from the
// member, price and sales; a tap opens the store screen.
#include <gtkmm.h>

#include <vector>

#include "features/discovery/store_info_model.h"

namespace qmv::gtk {

// Appends one row per store to `list`; placeholder rows (no store) are skipped.
void addStoreRows(Gtk::ListBox& list, const std::vector<StoreInfoModel>& stores);

}  // namespace qmv::gtk
