#pragma once
// The city picker (AreaSelectView): recent cities, then every city by initial letter,
// or the cities matching what the member types. A choice closes the picker. The letters
// are built when their cities change; the matches are a list view.
#include "apps/gtk/row_list.h"
#include "apps/gtk/screen_page.h"
#include "features/discovery/area_select_view.h"

namespace qmv::gtk {

class CityPage : public ScreenPage {
 public:
  explicit CityPage(PageContext& context);
  void refresh() override;

 private:
  void choose(const std::string& city);
  void drawSections();
  void drawHistory();

  AreaSelectView screen_;
  std::string key_;
  RowList<AreaModel> rows_;
  Gtk::Stack faces_;
  Gtk::Box sections_{Gtk::Orientation::VERTICAL, 12};
  Gtk::Box history_{Gtk::Orientation::VERTICAL, 12};
  std::vector<std::string> drawnRecent_;  // the recent cities history_ shows
  bool drawn_ = false;
};

}  // namespace qmv::gtk
