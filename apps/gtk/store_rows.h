#pragma once
// Store rows as every list of stores shows them: the first picture, name, headline,
// distance from the member, price and sales; a tap opens the store screen. Also the
// picture addresses of stores and offers, for rows and picture strips.
#include <gtkmm.h>

#include <vector>

#include "apps/gtk/boxed_rows.h"
#include "apps/gtk/row_list.h"
#include "features/discovery/activity_model.h"
#include "features/discovery/store_info_model.h"

namespace qmv::gtk {

// The addresses in an "imageURL" value, split at "|", blanks skipped.
std::vector<std::string> pictureUrls(const std::string& joined);
// An offer's pictures: those of its "imageURL", then its description picture.
std::vector<std::string> offerPictures(const ActivityModel& offer);
// The first of an offer's "imageURL" pictures, or empty.
std::string firstPicture(const ActivityModel& offer);

// What a store's row shows; it opens the store.
RowTexts storeRowTexts(const StoreInfoModel& store);

// One row per store, tapping runs page.open-store with the store's id; placeholder rows
// (no store) are skipped.
std::vector<BoxedRow> storeBoxedRows(const std::vector<StoreInfoModel>& stores);

}  // namespace qmv::gtk
