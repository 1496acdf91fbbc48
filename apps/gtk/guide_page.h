#pragma once
// The first-run guide (LaunchViewController): its pages in a carousel under dots, the
// location page's one button and what it found, the city page's current city and the
// picker's button, and "下一步" turning into "开始使用" on the last page.
#include <adwaita.h>
#include <gtkmm.h>

#include "apps/gtk/screen_page.h"
#include "shell/launch_view_controller.h"

namespace qmv::gtk {

class GuidePage : public ScreenPage {
 public:
  explicit GuidePage(PageContext& context);
  ~GuidePage() override;
  void refresh() override;
  void appeared() override { refresh(); }  // back from the city picker

  LaunchViewController& screen() { return screen_; }
  // The page the carousel last came to rest on.
  std::size_t shownPage() const { return shown_; }

 private:
  void next();
  bool onLastPage() const { return shown_ + 1 >= LaunchViewController::kPageCount; }

  LaunchViewController screen_;
  AdwCarousel* pages_ = nullptr;
  std::size_t shown_ = 0;
  Gtk::Label* locationText_ = nullptr;
  Gtk::Label* city_ = nullptr;
  Gtk::Button* next_ = nullptr;
};

}  // namespace qmv::gtk
