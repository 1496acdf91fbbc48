#include "apps/gtk/picture_view.h"

#include <utility>

#include "apps/gtk/ui.h"
#include "core/images/image_loader.h"

namespace qmv::gtk {

PictureView::PictureView(ImageLoader* loader, ImageSize box, const std::string& label)
    : loader_(loader), box_(box) {
  add_css_class("picture-view");
  set_overflow(Gtk::Overflow::HIDDEN);
  placeholder_.set_from_icon_name("image-x-generic-symbolic");
  placeholder_.add_css_class("dim-label");
  placeholder_.set_vexpand(true);
  placeholder_.set_hexpand(true);
  picture_.set_content_fit(Gtk::ContentFit::COVER);
  picture_.set_can_shrink(true);
  picture_.set_vexpand(true);
  picture_.set_hexpand(true);
  placeholder_.set_icon_size(Gtk::IconSize::LARGE);
  // The picture is an overlay, which the view's size does not follow.
  set_child(placeholder_);
  add_overlay(picture_);
  showPlaceholder();
  if (!label.empty()) ui::setAccessibleLabel(*this, label);
}

// The ticket goes first: a reply already queued for it must find no widget to paint.
PictureView::~PictureView() { ticket_.cancel(); }

void PictureView::showPlaceholder() {
  const bool was = std::exchange(shown_, false);
  gtk_picture_set_paintable(picture_.gobj(), nullptr);
  picture_.set_visible(false);
  placeholder_.set_opacity(1);
  if (was && onShown) onShown(false);
}

void PictureView::setUrl(const std::string& url) {
  if (url == url_) return;
  url_ = url;
  ticket_ = ImageTicket();  // drops the old request before anything can answer it
  showPlaceholder();
  if (url.empty() || loader_ == nullptr) return;
  ticket_ = loader_->load(url, box_, [this](ImageOutcome outcome) {
    // A failed picture keeps the placeholder; the reason is the loader's to log.
    if (!outcome.ok()) return;
    ui::setPicture(picture_, std::move(outcome.image));
    placeholder_.set_opacity(0);  // still measured: it holds the view's size
    picture_.set_visible(true);
    shown_ = true;
    if (onShown) onShown(true);
  });
}

}  // namespace qmv::gtk
