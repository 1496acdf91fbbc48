#include "apps/gtk/image_browser_page.h"

#include <adwaita.h>

#include <cmath>

#include "apps/gtk/gtk_texts.h"
#include "apps/gtk/page_context.h"
#include "apps/gtk/page_navigator.h"
#include "apps/gtk/ui.h"
#include "apps/gtk/zoomable_picture.h"

namespace qmv::gtk {

ImageBrowserPage::ImageBrowserPage(PageContext& context, std::vector<std::string> urls, std::size_t index)
    : Gtk::Box(Gtk::Orientation::VERTICAL), context_(context) {
  // The theme's own header bar and window background, so the light and dark styles both
  // keep their contrast.
  GtkWidget* header = adw_header_bar_new();
  adw_header_bar_set_show_end_title_buttons(ADW_HEADER_BAR(header), FALSE);
  adw_header_bar_set_show_start_title_buttons(ADW_HEADER_BAR(header), FALSE);
  auto* close = Gtk::make_managed<Gtk::Button>();
  close->set_icon_name("window-close-symbolic");
  ui::nameIcon(*close, gtk_texts::kClose);
  close->set_name("close");
  close->signal_clicked().connect([this] { this->close(); });
  adw_header_bar_pack_start(ADW_HEADER_BAR(header), GTK_WIDGET(close->gobj()));
  zoom_.set_name("zoom");
  zoom_.signal_clicked().connect([this] {
    if (!pictures_.empty()) pictures_[std::min(shownIndex(), pictures_.size() - 1)]->toggleZoom();
  });
  adw_header_bar_pack_end(ADW_HEADER_BAR(header), GTK_WIDGET(zoom_.gobj()));
  title_.add_css_class("title");
  title_.set_name("picture-count");
  adw_header_bar_set_title_widget(ADW_HEADER_BAR(header), GTK_WIDGET(title_.gobj()));
  append(*Gtk::manage(Glib::wrap(header)));

  GtkWidget* carousel = adw_carousel_new();
  carousel_ = Gtk::manage(Glib::wrap(carousel));
  carouselRef_ = G_OBJECT(g_object_ref(carousel));
  carousel_->set_vexpand(true);
  carousel_->set_hexpand(true);
  carousel_->set_name("browser-carousel");
  for (std::size_t i = 0; i < urls.size(); ++i) {
    auto* picture = Gtk::make_managed<ZoomablePicture>(context.pictures(), urls[i], gtk_texts::pictureOf(i + 1, urls.size()));
    picture->onZoomed = [this, carousel](bool zoomed) {
      adw_carousel_set_interactive(ADW_CAROUSEL(carousel), !zoomed);
      showZoom();
    };
    adw_carousel_append(ADW_CAROUSEL(carousel), GTK_WIDGET(picture->gobj()));
    pictures_.push_back(picture);
  }
  append(*carousel_);
  GtkWidget* dots = adw_carousel_indicator_dots_new();
  adw_carousel_indicator_dots_set_carousel(ADW_CAROUSEL_INDICATOR_DOTS(dots), ADW_CAROUSEL(carousel));
  append(*Gtk::manage(Glib::wrap(dots)));

  g_signal_connect_swapped(carousel, "page-changed", G_CALLBACK(+[](ImageBrowserPage* self) {
                             // A picture swiped away is shown fitted when it comes back.
                             for (std::size_t i = 0; i < self->pictures_.size(); ++i) {
                               if (i != self->shownIndex()) self->pictures_[i]->setZoom(1.0);
                             }
                             self->showCount();
                             self->showZoom();
                           }),
                           this);
  // The carousel places its pages only once it has a size: the first picture is turned to
  // on the first frame after that.
  first_ = index < pictures_.size() ? index : 0;
  if (first_ > 0) {
    firstTick_ = gtk_widget_add_tick_callback(
        carousel, +[](GtkWidget* widget, GdkFrameClock*, gpointer data) -> gboolean {
          auto* self = static_cast<ImageBrowserPage*>(data);
          if (gtk_widget_get_width(widget) <= 0) return G_SOURCE_CONTINUE;
          self->firstTick_ = 0;
          adw_carousel_scroll_to(ADW_CAROUSEL(widget), GTK_WIDGET(self->pictures_[self->first_]->gobj()), FALSE);
          self->showCount();
          self->showZoom();
          return G_SOURCE_REMOVE;
        },
        this, nullptr);
  }

  // Escape closes the browser while it is the page shown.
  auto shortcuts = Gtk::ShortcutController::create();
  shortcuts->set_scope(Gtk::ShortcutScope::GLOBAL);
  shortcuts->add_shortcut(Gtk::Shortcut::create(
      Gtk::KeyvalTrigger::create(GDK_KEY_Escape, Gdk::ModifierType(0)),
      Gtk::CallbackAction::create([this](Gtk::Widget&, const Glib::VariantBase&) {
        if (!get_mapped()) return false;
        this->close();
        return true;
      })));
  add_controller(shortcuts);
  showCount();
  showZoom();
}

// The carousel is held until here: when the page goes, its children may be gone first.
ImageBrowserPage::~ImageBrowserPage() {
  if (firstTick_ != 0) gtk_widget_remove_tick_callback(GTK_WIDGET(carouselRef_), firstTick_);
  g_signal_handlers_disconnect_by_data(carouselRef_, this);
  g_object_unref(carouselRef_);
}

std::size_t ImageBrowserPage::shownIndex() const {
  const double position = adw_carousel_get_position(ADW_CAROUSEL(carousel_->gobj()));
  return position < 0 ? 0 : static_cast<std::size_t>(std::lround(position));
}

void ImageBrowserPage::showCount() {
  if (pictures_.empty()) return;
  title_.set_text(gtk_texts::pictureOf(std::min(shownIndex(), pictures_.size() - 1) + 1, pictures_.size()));
}

void ImageBrowserPage::showZoom() {
  zoom_.set_visible(!pictures_.empty());
  if (pictures_.empty()) return;
  ZoomablePicture* shown = pictures_[std::min(shownIndex(), pictures_.size() - 1)];
  const bool zoomed = shown->zoom() > 1.0;
  zoom_.set_icon_name(zoomed ? "zoom-original-symbolic" : "zoom-in-symbolic");
  ui::nameIcon(zoom_, zoomed ? gtk_texts::kFitPicture : gtk_texts::kZoomPicture);
  gtk_accessible_update_relation(GTK_ACCESSIBLE(zoom_.gobj()), GTK_ACCESSIBLE_RELATION_CONTROLS, shown->gobj(), nullptr,
                                 -1);
}

void ImageBrowserPage::close() { context_.navigator().back(); }

}  // namespace qmv::gtk
