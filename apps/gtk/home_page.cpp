#include "apps/gtk/home_page.h"

#include <adwaita.h>

#include "apps/gtk/page_context.h"
#include "apps/gtk/page_navigator.h"
#include "apps/gtk/screen_names.h"
#include "apps/gtk/store_rows.h"
#include "apps/gtk/ui.h"
#include "features/discovery/discovery_texts.h"
#include "shell/app_delegate.h"

namespace qmv::gtk {

HomePage::HomePage(PageContext& context) : ScreenPage(context, "", false) {
  follow(screen_);
  screen_.onAutoLoginFinished = [&context](bool) { context.signedInAgain(); };
  screen_.onLoaded = [this] { refreshSoon(); };
  screen_.onPopularLoaded = [this](bool) { refreshSoon(); };
  screen_.onLocated = [this](MainViewController::LocateOutcome) { refreshSoon(); };
  pullToRefresh([this] { screen_.refreshNet(); });
  auto* city = Gtk::make_managed<Gtk::Button>();
  city->set_icon_name("mark-location-symbolic");
  city->set_name("city");
  city->signal_clicked().connect([&context] { context.navigator().push(kCityScreen); });
  addHeaderButton(*city);
  // The content loads once the tab is first drawn, as viewDidLoad runs on the phone.
  signal_map().connect([this] {
    if (std::exchange(started_, true)) return;
    screen_.viewDidLoad();
  });
  refresh();
}

void HomePage::refresh() {
  namespace texts = discovery_texts;
  setTitle(screen_.addressButtonTitle());
  ui::clear(body());

  if (!screen_.resources().empty()) {
    GtkWidget* carousel = adw_carousel_new();
    for (std::size_t i = 0; i < screen_.resources().size(); ++i) {
      auto* card = Gtk::make_managed<Gtk::Button>();
      card->add_css_class("banner");
      card->set_name("banner" + std::to_string(i));
      card->set_hexpand(true);
      card->set_child(*ui::label(screen_.resources()[i].title, "title-2"));
      card->signal_clicked().connect([this, i] { screen_.didSelectBanner(i); });
      adw_carousel_append(ADW_CAROUSEL(carousel), GTK_WIDGET(card->gobj()));
    }
    GtkWidget* dots = adw_carousel_indicator_dots_new();
    adw_carousel_indicator_dots_set_carousel(ADW_CAROUSEL_INDICATOR_DOTS(dots), ADW_CAROUSEL(carousel));
    body().append(*Gtk::manage(Glib::wrap(carousel)));
    body().append(*Gtk::manage(Glib::wrap(dots)));
  }

  if (!screen_.templates().empty()) {
    auto* grid = Gtk::make_managed<Gtk::FlowBox>();
    grid->set_selection_mode(Gtk::SelectionMode::NONE);
    grid->set_min_children_per_line(2);
    grid->set_max_children_per_line(4);
    grid->set_homogeneous(true);
    for (const SearchTypeModel& type : screen_.templates()) {
      if (type.name.empty()) continue;
      const std::string id = type.typeId;
      grid->append(*ui::button(type.name, [this, id] { context_.appDelegate().changeToNearWithType(id); }, "flat"));
    }
    body().append(*grid);
  }

  if (!screen_.recommendStores().empty()) {
    body().append(*ui::label(texts::kRecommendSection, "heading"));
    auto* list = ui::boxedList();
    addStoreRows(*list, screen_.recommendStores());
    body().append(*list);
  }
  if (!screen_.popularStores().empty()) {
    body().append(*ui::label(texts::kPopularSection, "heading"));
    auto* list = ui::boxedList();
    list->set_name("popular");
    addStoreRows(*list, screen_.popularStores());
    body().append(*list);
    if (screen_.popularTotal() > static_cast<long>(screen_.popularStores().size())) {
      auto* more = Gtk::make_managed<Gtk::Button>();
      more->set_icon_name("view-more-horizontal-symbolic");
      more->set_name("load-more");
      more->add_css_class("flat");
      more->signal_clicked().connect([this] { screen_.loadMorePopular(); });
      body().append(*more);
    }
  }
}

}  // namespace qmv::gtk
