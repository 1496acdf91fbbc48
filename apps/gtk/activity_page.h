#pragma once
// The offer screen (QXActivitiesViewController): its pictures, price line, packages and
// the notice.
// Built once; a redraw sets the texts, one boxed list per package and the notice's lines
// by position.
#include <memory>
#include <vector>

#include "apps/gtk/boxed_rows.h"
#include "apps/gtk/picture_strip.h"
#include "apps/gtk/screen_page.h"
#include "features/discovery/qx_activities_view_controller.h"

namespace qmv::gtk {

class ActivityPage : public ScreenPage {
 public:
  ActivityPage(PageContext& context, const std::string& activityId, const std::string& name);
  void refresh() override;

 private:
  void setPackages();
  void setNotice();

  QXActivitiesViewController screen_;
  Gtk::Box content_{Gtk::Orientation::VERTICAL, 12};
  PictureStrip strip_{context_};
  Gtk::Label* name_ = nullptr;
  Gtk::Label* storeName_ = nullptr;
  Gtk::Label* priceLabel_ = nullptr;
  Gtk::Label* price_ = nullptr;
  Gtk::Label* originalPrice_ = nullptr;
  Gtk::Label* sold_ = nullptr;
  Gtk::Box packages_{Gtk::Orientation::VERTICAL, 12};
  std::vector<std::unique_ptr<BoxedRows>> packageRows_;
  Gtk::Box notice_{Gtk::Orientation::VERTICAL, 4};
  std::vector<Gtk::Label*> noticeLines_;
};

}  // namespace qmv::gtk
