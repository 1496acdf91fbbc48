#pragma once
// A picture by URL: the theme's picture icon until the decoded picture arrives through the
// client's shared loader. One request at a time: a new URL or the widget's end drops the
// old ticket, so a row given another record never shows the picture it asked for before.
// Its size is the placeholder's or the one it is given, never the picture's: the picture
// is laid over it, cropped to fill it.
#include <gtkmm.h>

#include <functional>
#include <string>

#include "core/common/decoded_image.h"
#include "core/images/image_ticket.h"

namespace qmv {
class ImageLoader;
}

namespace qmv::gtk {

class PictureView : public Gtk::Overlay {
 public:
  // `loader` may be null (no pictures: the placeholder stays). `box` is the size pictures
  // are decoded to fit (empty: their own size); `label` is what a screen reader says.
  PictureView(ImageLoader* loader, ImageSize box, const std::string& label);
  ~PictureView() override;

  // Empty shows the placeholder. The same URL again keeps what is shown or asked.
  void setUrl(const std::string& url);
  const std::string& url() const { return url_; }
  // The themed icon shown while there is no picture (a person for a portrait).
  void setPlaceholderIcon(const std::string& iconName) { placeholder_.set_from_icon_name(iconName); }
  // Whether a decoded picture (not the placeholder) is drawn.
  bool showsPicture() const { return shown_; }
  Gtk::Picture& picture() { return picture_; }
  // With whether a picture (true) or the placeholder (false) is drawn, on every change.
  std::function<void(bool shown)> onShown;

 private:
  void showPlaceholder();

  ImageLoader* loader_;
  ImageSize box_;
  std::string url_;
  bool shown_ = false;
  Gtk::Image placeholder_;
  Gtk::Picture picture_;
  ImageTicket ticket_;
};

}  // namespace qmv::gtk
