#include "apps/gtk/zoomable_picture.h"

#include <algorithm>

#include "apps/gtk/picture_view.h"

namespace qmv::gtk {

ZoomablePicture::ZoomablePicture(ImageLoader* pictures, const std::string& url, const std::string& label)
    // Decoded at the server's size; zooming scales the texture.
    : view_(Gtk::make_managed<PictureView>(pictures, ImageSize{}, label)) {
  set_hexpand(true);
  set_vexpand(true);
  set_policy(Gtk::PolicyType::AUTOMATIC, Gtk::PolicyType::AUTOMATIC);
  view_->picture().set_content_fit(Gtk::ContentFit::CONTAIN);
  view_->setUrl(url);
  set_child(*view_);

  auto pinch = Gtk::GestureZoom::create();
  pinch->signal_begin().connect([this](Gdk::EventSequence*) { pinchStart_ = zoom_; });
  pinch->signal_scale_changed().connect([this](double scale) { setZoom(pinchStart_ * scale); });
  add_controller(pinch);
  auto clicks = Gtk::GestureClick::create();
  clicks->signal_pressed().connect([this](int presses, double, double) {
    if (presses == 2) toggleZoom();
  });
  add_controller(clicks);
}

void ZoomablePicture::setZoom(double zoom) {
  zoom = std::clamp(zoom, 1.0, kMaxZoom);
  if (zoom == zoom_) return;
  zoom_ = zoom;
  if (zoom_ == 1.0) {
    view_->set_size_request(-1, -1);
  } else {
    // The fitted size is the viewport's; zoomed, the picture outgrows it and scrolls.
    view_->set_size_request(static_cast<int>(get_width() * zoom_), static_cast<int>(get_height() * zoom_));
  }
  if (onZoomed) onZoomed(zoom_ > 1.0);
}

void ZoomablePicture::toggleZoom() { setZoom(zoom_ > 1.0 ? 1.0 : kToggledZoom); }

}  // namespace qmv::gtk
