#pragma once
// The home tab (MainViewController): the city button, the banners, the category
// templates, the recommended stores and the popular stores with "load more".
#include "apps/gtk/screen_page.h"
#include "features/discovery/main_view_controller.h"

namespace qmv::gtk {

class HomePage : public ScreenPage {
 public:
  explicit HomePage(PageContext& context);
  void refresh() override;

  MainViewController& screen() { return screen_; }

 private:
  MainViewController screen_;
  bool started_ = false;
};

}  // namespace qmv::gtk
