#pragma once
// A record's pictures full screen: swipe between them, pinch, double click or the zoom
// button to zoom; the close button and Escape close it. Its header bar follows the light or dark style.
#include <gtkmm.h>

#include <string>
#include <vector>

namespace qmv::gtk {

class PageContext;
class ZoomablePicture;

class ImageBrowserPage : public Gtk::Box {
 public:
  ImageBrowserPage(PageContext& context, std::vector<std::string> urls, std::size_t index);
  ~ImageBrowserPage() override;

  std::size_t size() const { return pictures_.size(); }
  // The picture shown (the nearest while swiping).
  std::size_t shownIndex() const;
  ZoomablePicture& picture(std::size_t index) { return *pictures_.at(index); }
  void close();

 private:
  void showCount();
  // The zoom button's look and name for the picture shown, and the picture it zooms.
  void showZoom();

  PageContext& context_;
  Gtk::Widget* carousel_ = nullptr;
  Gtk::Label title_;
  Gtk::Button zoom_;
  std::vector<ZoomablePicture*> pictures_;  // owned by the carousel
  GObject* carouselRef_ = nullptr;  // our reference, so the destructor may still reach it
  std::size_t first_ = 0;
  guint firstTick_ = 0;  // the tick that turns to the first picture shown, until it has
};

}  // namespace qmv::gtk
