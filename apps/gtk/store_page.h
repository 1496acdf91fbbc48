#pragma once
// The store screen (QXRStoreDetailViewController): name, its pictures and their count, address,
// hours, spend per person, call and map actions, the offers and the latest comments.
// Built once; a redraw sets the texts and the rows whose data changed.
#include "apps/gtk/boxed_rows.h"
#include "apps/gtk/page_context.h"
#include "apps/gtk/picture_strip.h"
#include "apps/gtk/screen_page.h"
#include "features/discovery/qxr_store_detail_view_controller.h"

namespace qmv::gtk {

class StorePage : public ScreenPage {
 public:
  StorePage(PageContext& context, const std::string& storeId, const std::string& storeName);
  void refresh() override;

 private:
  QXRStoreDetailViewController screen_;
  Gtk::Box content_{Gtk::Orientation::VERTICAL, 12};
  Gtk::Label* name_ = nullptr;
  Gtk::Label* pictures_ = nullptr;
  PictureStrip strip_{context_};
  BoxedRows info_;
  Gtk::ToggleButton favorite_;
  bool settingFavorite_ = false;  // the redraw, not the member, moved the toggle
  Gtk::Label* offersHeading_ = nullptr;
  BoxedRows offers_{"offers", context_.pictures()};
  Gtk::Label* commentsHeading_ = nullptr;
  BoxedRows comments_{"comments"};
};

}  // namespace qmv::gtk
