#pragma once
// The store screen (QXRStoreDetailViewController): name, pictures count, address,
// hours, spend per person, call and map actions, the offers and the latest comments.
#include "apps/gtk/screen_page.h"
#include "features/discovery/qxr_store_detail_view_controller.h"

namespace qmv::gtk {

class StorePage : public ScreenPage {
 public:
  StorePage(PageContext& context, const std::string& storeId, const std::string& storeName);
  void refresh() override;

 private:
  QXRStoreDetailViewController screen_;
};

}  // namespace qmv::gtk
