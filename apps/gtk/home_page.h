#pragma once
// The home tab (MainViewController): the city button, the banners, the category
// templates, the recommended stores and the popular stores with "load more".
//
// The sections are built once and only their contents are set again: the sections are
// few, fixed and differently shaped (a carousel, a grid, two short lists), so a list view
// switching widget kinds per row would buy no recycling worth its code. The banners and
// templates are rebuilt only when their data changed; the store lists keep their rows by
// position and touch only rows whose texts changed.
#include <string>
#include <utility>
#include <vector>

#include "apps/gtk/banner_carousel.h"
#include "apps/gtk/boxed_rows.h"
#include "apps/gtk/page_context.h"
#include "apps/gtk/screen_page.h"
#include "features/discovery/main_view_controller.h"

namespace qmv::gtk {

class HomePage : public ScreenPage {
 public:
  explicit HomePage(PageContext& context);
  void refresh() override;

  MainViewController& screen() { return screen_; }
  BannerCarousel& banners() { return banners_; }

 private:
  void setBanners();
  void setTemplates();
  void openStore(const std::string& storeId);

  MainViewController screen_;
  bool started_ = false;
  BannerCarousel banners_{context_.pictures()};
  Gtk::FlowBox grid_;
  std::vector<std::pair<std::string, std::string>> templates_;  // name, type id
  Gtk::Label* recommendHeading_ = nullptr;
  BoxedRows recommend_{"", context_.pictures()};
  Gtk::Label* popularHeading_ = nullptr;
  BoxedRows popular_{"popular", context_.pictures()};
  Gtk::Button* more_ = nullptr;
};

}  // namespace qmv::gtk
