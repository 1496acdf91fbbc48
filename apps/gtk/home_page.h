#pragma once
// The home tab (MainViewController): the city button, the banners, the categories (a
// page per main category with its sub-categories' pictures, under dots), the recommended
// stores and the popular stores with "load more".
//
// The sections are built once and only their contents are set again: the sections are
// few, fixed and differently shaped (a carousel, a grid, two short lists), so a list view
// switching widget kinds per row would buy no recycling worth its code. The banners and
// categories are rebuilt only when their data changed; the store lists keep their rows by
// position and touch only rows whose texts changed.
#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include "apps/gtk/banner_carousel.h"
#include "apps/gtk/boxed_rows.h"
#include "apps/gtk/page_context.h"
#include "apps/gtk/picture_view.h"
#include "apps/gtk/screen_page.h"
#include "features/discovery/main_view_controller.h"

namespace qmv::gtk {

class HomePage : public ScreenPage {
 public:
  explicit HomePage(PageContext& context);
  ~HomePage() override;
  void refresh() override;

  MainViewController& screen() { return screen_; }
  BannerCarousel& banners() { return banners_; }

 private:
  void setBanners();
  void setCategories();
  void showCategoryPictures(std::size_t page);
  // Each main category's name in its colour, or as near it as reads on the window.
  void colourCategoryNames();
  void openStore(const std::string& storeId);

  MainViewController screen_;
  bool started_ = false;
  BannerCarousel banners_{context_.pictures()};
  Gtk::Box categories_{Gtk::Orientation::VERTICAL, 6};
  Gtk::Widget* categoryPages_ = nullptr;  // an AdwCarousel, a page per main category
  std::vector<MainViewController::CategoryGroup> groups_;
  // Per category page, its pictures and the addresses they are yet to be given.
  std::vector<std::vector<std::pair<PictureView*, std::string>>> categoryPictures_;
  std::vector<std::pair<Gtk::Label*, Color>> categoryNames_;  // owned by their pages
  gulong darkChanged_ = 0;
  Gtk::Label* recommendHeading_ = nullptr;
  BoxedRows recommend_{"", context_.pictures()};
  Gtk::Label* popularHeading_ = nullptr;
  BoxedRows popular_{"popular", context_.pictures()};
  Gtk::Button* more_ = nullptr;
};

}  // namespace qmv::gtk
