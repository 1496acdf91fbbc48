#pragma once
// The city picker (AreaSelectView): recent cities, then every city by initial letter,
// or the cities matching what the member types. A choice closes the picker.
#include "apps/gtk/screen_page.h"
#include "features/discovery/area_select_view.h"

namespace qmv::gtk {

class CityPage : public ScreenPage {
 public:
  explicit CityPage(PageContext& context);
  void refresh() override;

 private:
  void choose(const std::string& city);

  AreaSelectView screen_;
  std::string key_;
  Gtk::Box results_{Gtk::Orientation::VERTICAL, 12};
};

}  // namespace qmv::gtk
