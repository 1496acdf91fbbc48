#pragma once
// One picture of the browser, fitted to the screen: a pinch zooms it (up to four times),
// a double click toggles between fitted and twice the size, and a zoomed picture scrolls
// to be panned.
#include <gtkmm.h>

#include <functional>
#include <string>

namespace qmv {
class ImageLoader;
}

namespace qmv::gtk {

class PictureView;

class ZoomablePicture : public Gtk::ScrolledWindow {
 public:
  static constexpr double kMaxZoom = 4.0;
  static constexpr double kToggledZoom = 2.0;

  ZoomablePicture(ImageLoader* pictures, const std::string& url, const std::string& label);

  double zoom() const { return zoom_; }
  void setZoom(double zoom);
  // Double click: fitted becomes zoomed, zoomed becomes fitted.
  void toggleZoom();
  PictureView& view() { return *view_; }
  // After every zoom change, with whether the picture is zoomed (the browser then stops
  // swiping, so that a drag pans).
  std::function<void(bool zoomed)> onZoomed;

 private:
  PictureView* view_;
  double zoom_ = 1.0;
  double pinchStart_ = 1.0;
};

}  // namespace qmv::gtk
