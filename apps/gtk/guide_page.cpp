#include "apps/gtk/guide_page.h"

#include "apps/gtk/page_context.h"
#include "apps/gtk/ui.h"
#include "shell/shell_texts.h"

namespace qmv::gtk {

namespace {

// A guide page: its picture, title and sentence, then `extra` (a button, a status line).
Gtk::Box* guidePage(const LaunchViewController::Page& page, Gtk::Widget* extra) {
  auto* box = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::VERTICAL, 12);
  box->set_hexpand(true);
  box->set_valign(Gtk::Align::CENTER);
  box->set_margin(24);
  Gtk::Image* icon = ui::icon(page.icon);
  icon->set_pixel_size(96);
  icon->add_css_class("accent");
  box->append(*icon);
  Gtk::Label* title = ui::label(page.title, "title-1");
  title->set_justify(Gtk::Justification::CENTER);
  box->append(*title);
  Gtk::Label* text = ui::label(page.text, "body");
  text->set_justify(Gtk::Justification::CENTER);
  text->set_max_width_chars(28);
  box->append(*text);
  if (extra != nullptr) box->append(*extra);
  return box;
}

}  // namespace

GuidePage::GuidePage(PageContext& context) : ScreenPage(context, "", false) {
  screen_.onChanged = [this] { refreshSoon(); };
  pages_ = ADW_CAROUSEL(adw_carousel_new());
  Gtk::Widget* carousel = Gtk::manage(Glib::wrap(GTK_WIDGET(pages_)));
  carousel->set_name("guide-pages");
  carousel->set_vexpand(true);

  adw_carousel_append(pages_, GTK_WIDGET(guidePage(LaunchViewController::page(0), nullptr)->gobj()));

  auto* location = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::VERTICAL, 8);
  Gtk::Button* ask = ui::button(
      shell_texts::kGuideAskLocation, [this] { screen_.askForLocation(); }, "pill");
  ask->set_name("guide-locate");
  ask->set_halign(Gtk::Align::CENTER);
  location->append(*ask);
  locationText_ = ui::label("", "dim-label");
  locationText_->set_name("guide-location-text");
  locationText_->set_justify(Gtk::Justification::CENTER);
  location->append(*locationText_);
  adw_carousel_append(
      pages_, GTK_WIDGET(guidePage(LaunchViewController::page(LaunchViewController::kLocationPage), location)->gobj()));

  auto* city = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::VERTICAL, 8);
  city_ = ui::label("", "heading");
  city_->set_name("guide-city");
  city->append(*city_);
  Gtk::Button* choose = ui::button(
      shell_texts::kGuideChooseCity, [] { LaunchViewController::chooseCity(); }, "pill");
  choose->set_name("guide-choose-city");
  choose->set_halign(Gtk::Align::CENTER);
  city->append(*choose);
  adw_carousel_append(pages_,
                      GTK_WIDGET(guidePage(LaunchViewController::page(LaunchViewController::kCityPage), city)->gobj()));

  body().append(*carousel);
  Gtk::Widget* dots = Gtk::manage(Glib::wrap(adw_carousel_indicator_dots_new()));
  adw_carousel_indicator_dots_set_carousel(ADW_CAROUSEL_INDICATOR_DOTS(dots->gobj()), pages_);
  body().append(*dots);
  next_ = ui::button(
      shell_texts::kGuideNext, [this] { next(); }, "suggested-action");
  next_->add_css_class("pill");
  next_->set_name("guide-next");
  next_->set_halign(Gtk::Align::CENTER);
  next_->set_margin_bottom(24);
  body().append(*next_);
  // A swipe changes the page as the button does; the button's words follow.
  g_signal_connect_swapped(pages_, "page-changed", G_CALLBACK(+[](GuidePage* self, guint index) {
                             self->shown_ = index;
                             self->refresh();
                           }),
                           this);
  refresh();
}

GuidePage::~GuidePage() {
  screen_.onChanged = nullptr;
  g_signal_handlers_disconnect_by_data(pages_, this);
}

void GuidePage::next() {
  if (onLastPage()) return screen_.finish(context_.appDelegate());
  adw_carousel_scroll_to(pages_, adw_carousel_get_nth_page(pages_, static_cast<guint>(shown_ + 1)), TRUE);
}

void GuidePage::refresh() {
  const std::string located = screen_.locationText();
  locationText_->set_text(located);
  locationText_->set_visible(!located.empty());
  city_->set_text(LaunchViewController::cityText());
  next_->set_label(onLastPage() ? shell_texts::kGuideStart : shell_texts::kGuideNext);
  // The tests' and the screenshots' way past the guide; found by name on the last page.
  next_->set_name(onLastPage() ? "guide-done" : "guide-next");
}

}  // namespace qmv::gtk
