#include "apps/gtk/banner_carousel.h"

#include <adwaita.h>

#include <cmath>

#include "apps/gtk/picture_view.h"
#include "apps/gtk/ui.h"

namespace qmv::gtk {

namespace {

constexpr int kBannerHeight = 144;
// Banners are drawn across the window: decoded at the width the server offers.
constexpr ImageSize kBannerBox{750, 750};

AdwCarousel* adwCarousel(Gtk::Widget* widget) { return ADW_CAROUSEL(widget->gobj()); }

}  // namespace

BannerCarousel::BannerCarousel(ImageLoader* pictures)
    : Gtk::Box(Gtk::Orientation::VERTICAL, 6), pictures_(pictures) {
  set_name("banners");
  carousel_ = Gtk::manage(Glib::wrap(adw_carousel_new()));
  carousel_->set_name("banner-carousel");
  carouselRef_ = G_OBJECT(g_object_ref(carousel_->gobj()));
  dots_ = Gtk::manage(Glib::wrap(adw_carousel_indicator_dots_new()));
  adw_carousel_indicator_dots_set_carousel(ADW_CAROUSEL_INDICATOR_DOTS(dots_->gobj()), adwCarousel(carousel_));
  append(*carousel_);
  append(*dots_);
  set_visible(false);
  // A turn or a swipe that ended makes the page it stopped on the next turn's start.
  g_signal_connect_swapped(carousel_->gobj(), "page-changed", G_CALLBACK(+[](BannerCarousel* self) {
                             self->target_ = -1;
                           }),
                           this);

  auto motion = Gtk::EventControllerMotion::create();
  motion->signal_enter().connect([this](double, double) { hovered_ = true; });
  motion->signal_leave().connect([this] { hovered_ = false; });
  add_controller(motion);
  // The timer runs only while the carousel is on screen.
  signal_map().connect([this] { startTimer(); });
  signal_unmap().connect([this] { timer_.disconnect(); });
}

// The carousel is held until here: when the page goes, its children may be gone first.
BannerCarousel::~BannerCarousel() {
  timer_.disconnect();
  g_signal_handlers_disconnect_by_data(carouselRef_, this);
  g_object_unref(carouselRef_);
}

void BannerCarousel::startTimer() {
  timer_.disconnect();
  timer_ = Glib::signal_timeout().connect(
      [this] {
        advance();
        return true;
      },
      static_cast<unsigned>(kInterval.count()));
}

void BannerCarousel::setBanners(std::vector<Banner> banners) {
  set_visible(!banners.empty());
  if (banners == banners_) return;
  AdwCarousel* carousel = adwCarousel(carousel_);
  while (adw_carousel_get_n_pages(carousel) > 0) adw_carousel_remove(carousel, adw_carousel_get_nth_page(carousel, 0));
  target_ = -1;
  for (std::size_t i = 0; i < banners.size(); ++i) {
    auto* card = Gtk::make_managed<Gtk::Button>();
    card->add_css_class("banner");
    card->set_name("banner" + std::to_string(i));
    ui::setAccessibleLabel(*card, banners[i].title);
    card->set_hexpand(true);
    card->set_size_request(-1, kBannerHeight);
    card->set_overflow(Gtk::Overflow::HIDDEN);
    auto* layers = Gtk::make_managed<Gtk::Overlay>();
    auto* picture = Gtk::make_managed<PictureView>(pictures_, kBannerBox, banners[i].title);
    picture->set_name("banner-picture");
    layers->set_child(*picture);
    // The title until the picture, which carries its own, is drawn.
    auto* title = ui::label(banners[i].title, "title-2");
    layers->add_overlay(*title);
    picture->onShown = [title](bool shown) { title->set_visible(!shown); };
    picture->setUrl(banners[i].picture);
    card->set_child(*layers);
    card->set_action_target_value(Glib::Variant<guint32>::create(static_cast<guint32>(i)));
    card->set_action_name("page.open-banner");
    adw_carousel_append(carousel, GTK_WIDGET(card->gobj()));
  }
  banners_ = std::move(banners);
}

std::size_t BannerCarousel::shownIndex() const {
  const double position = adw_carousel_get_position(adwCarousel(carousel_));
  return position < 0 ? 0 : static_cast<std::size_t>(std::lround(position));
}

bool BannerCarousel::advance() {
  AdwCarousel* carousel = adwCarousel(carousel_);
  const guint pages = adw_carousel_get_n_pages(carousel);
  if (pages < 2 || hovered_ || !get_mapped()) return false;
  const double position = adw_carousel_get_position(carousel);
  // Between pages: the member is swiping, or a turn is running.
  if (std::abs(position - std::round(position)) > 1e-3) return false;
  const long at = std::lround(position);
  // A turn asked for but not yet drawn leaves the carousel where it was for a frame.
  if (target_ >= 0 && target_ != at) return false;
  target_ = static_cast<long>((static_cast<guint>(at) + 1) % pages);
  adw_carousel_scroll_to(carousel, adw_carousel_get_nth_page(carousel, static_cast<guint>(target_)), TRUE);
  return true;
}

}  // namespace qmv::gtk
