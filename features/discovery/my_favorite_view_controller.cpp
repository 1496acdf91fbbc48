#include "features/discovery/my_favorite_view_controller.h"

#include "features/discovery/store_screens.h"
#include "platform/env.h"
#include "platform/navigator.h"

namespace qmv {

void MyFavoriteViewController::selectTab(Tab tab) {
  if (tab == tab_) return;
  tab_ = tab;
  viewWillAppear();
}

void MyFavoriteViewController::viewWillAppear() {
  if (tab_ == Tab::Stores) {
    stores_.refresh();
  } else {
    offers_.refresh();
  }
}

const char* MyFavoriteViewController::emptyText() const {
  return tab_ == Tab::Stores ? discovery_texts::kNoFavoriteStores : discovery_texts::kNoFavoriteOffers;
}

bool MyFavoriteViewController::openRow(std::size_t row) {
  if (tab_ == Tab::Stores) {
    if (row >= stores_.rows().size() || stores_.rows()[row].storeId.empty()) return false;
    openStoreDetail(stores_.rows()[row]);
    return true;
  }
  if (row >= offers_.rows().size() || offers_.rows()[row].commodityID.empty()) return false;
  const ActivityModel& offer = offers_.rows()[row];
  Env::current().navigator->push(discovery_texts::kActivityScreen,
                                 {{"commodityId", offer.commodityID}, {"name", offer.name}});
  return true;
}

}  // namespace qmv
