#include "apps/gtk/home_page.h"

#include <adwaita.h>

#include <chrono>

#include "apps/gtk/gtk_texts.h"
#include "apps/gtk/local_pictures.h"
#include "apps/gtk/page_context.h"
#include "apps/gtk/page_navigator.h"
#include "apps/gtk/picture_view.h"
#include "apps/gtk/screen_names.h"
#include "apps/gtk/store_rows.h"
#include "apps/gtk/ui.h"
#include "core/common/color_contrast.h"
#include "features/discovery/discovery_texts.h"
#include "features/discovery/store_screens.h"
#include "shell/app_delegate.h"

namespace qmv::gtk {

HomePage::HomePage(PageContext& context) : ScreenPage(context, "", false) {
  follow(screen_);
  screen_.onAutoLoginFinished = [&context](bool) { context.signedInAgain(); };
  screen_.onLoaded = [this] { refreshSoon(); };
  screen_.onPopularLoaded = [this](bool) { refreshSoon(); };
  screen_.onLocated = [this](MainViewController::LocateOutcome) { refreshSoon(); };
  // The load's banners and thumbnails are fetched, decoded and drawn after it ends; at a
  // first start the whole area table would compete with them for the two cores.
  screen_.areaRefreshDelay = std::chrono::seconds(1);
  pullToRefresh([this] { screen_.refreshNet(); });
  addAction("open-banner", Glib::VariantType("u"), [this](const Glib::VariantBase& value) {
    screen_.didSelectBanner(Glib::VariantBase::cast_dynamic<Glib::Variant<guint32>>(value).get());
  });
  addAction("open-type", Glib::VariantType("s"), [this](const Glib::VariantBase& value) {
    context_.appDelegate().changeToNearWithType(Glib::VariantBase::cast_dynamic<Glib::Variant<Glib::ustring>>(value).get());
  });
  addAction("open-store", Glib::VariantType("s"), [this](const Glib::VariantBase& value) {
    openStore(Glib::VariantBase::cast_dynamic<Glib::Variant<Glib::ustring>>(value).get());
  });
  addAction("load-more", [this] { screen_.loadMorePopular(); });

  auto* city = Gtk::make_managed<Gtk::Button>();
  city->set_icon_name("mark-location-symbolic");
  city->set_name("city");
  ui::nameIcon(*city, gtk_texts::kChooseCity);
  city->signal_clicked().connect([&context] { context.navigator().push(kCityScreen); });
  addHeaderButton(*city);

  body().append(banners_);
  categories_.set_name("categories");
  categoryPages_ = Gtk::manage(Glib::wrap(adw_carousel_new()));
  categoryPages_->set_name("category-pages");
  Gtk::Widget* dots = Gtk::manage(Glib::wrap(adw_carousel_indicator_dots_new()));
  adw_carousel_indicator_dots_set_carousel(ADW_CAROUSEL_INDICATOR_DOTS(dots->gobj()), ADW_CAROUSEL(categoryPages_->gobj()));
  // Every page's pictures at start cost the first start a transfer and a decode per
  // sub-category; they are asked for as their page comes near.
  g_signal_connect_swapped(categoryPages_->gobj(), "page-changed",
                           G_CALLBACK(+[](HomePage* self, guint index) { self->showCategoryPictures(index); }), this);
  categories_.append(*categoryPages_);
  categories_.append(*dots);
  // A category's own colour may not read on the window of the other style.
  darkChanged_ =
      g_signal_connect_swapped(adw_style_manager_get_default(), "notify::dark",
                               G_CALLBACK(+[](HomePage* self, GParamSpec*) { self->colourCategoryNames(); }), this);
  body().append(categories_);
  recommendHeading_ = ui::label(discovery_texts::kRecommendSection, "heading");
  body().append(*recommendHeading_);
  body().append(recommend_.widget());
  popularHeading_ = ui::label(discovery_texts::kPopularSection, "heading");
  body().append(*popularHeading_);
  body().append(popular_.widget());
  more_ = ui::loadMoreButton();
  body().append(*more_);

  // The content loads once the tab is first drawn, as viewDidLoad runs on the phone.
  signal_map().connect([this] {
    if (std::exchange(started_, true)) return;
    screen_.viewDidLoad();
  });
  refresh();
}

HomePage::~HomePage() { g_signal_handler_disconnect(adw_style_manager_get_default(), darkChanged_); }

void HomePage::refresh() {
  setTitle(screen_.addressButtonTitle());
  setBanners();
  setCategories();
  recommend_.assign(storeBoxedRows(screen_.recommendStores()));
  popular_.assign(storeBoxedRows(screen_.popularStores()));
  const bool anyRecommended = recommend_.size() > 0;
  recommendHeading_->set_visible(anyRecommended);
  recommend_.widget().set_visible(anyRecommended);
  const bool anyPopular = popular_.size() > 0;
  popularHeading_->set_visible(anyPopular);
  popular_.widget().set_visible(anyPopular);
  more_->set_visible(anyPopular &&
                    screen_.popularTotal() > static_cast<long>(screen_.popularStores().size()));
}

void HomePage::setBanners() {
  std::vector<BannerCarousel::Banner> banners;
  for (const auto& banner : screen_.resources()) banners.push_back({banner.title, banner.imgURL});
  banners_.setBanners(std::move(banners));
}

namespace {

constexpr int kCategoryPictureSide = 48;
// Decoded at twice the drawn size, for scaled displays.
constexpr ImageSize kCategoryPictureBox{2 * kCategoryPictureSide, 2 * kCategoryPictureSide};

// A flat button that hands category `typeId` to the nearby tab.
Gtk::Button* categoryButton(const std::string& typeId, Gtk::Widget& content) {
  auto* button = Gtk::make_managed<Gtk::Button>();
  button->add_css_class("flat");
  button->set_child(content);
  button->set_action_target_value(Glib::Variant<Glib::ustring>::create(typeId));
  button->set_action_name("page.open-type");
  return button;
}

// A main category's page: its own picture and name in its colour, then its
// sub-categories, each the server's picture over its name. The pictures are left without
// their address, which goes into `pending` to be set when the page comes near the screen.
Gtk::Widget* categoryPage(const MainViewController::CategoryGroup& group, ImageLoader* pictures,
                          std::vector<std::pair<PictureView*, std::string>>& pending,
                          std::vector<std::pair<Gtk::Label*, Color>>& names) {
  auto* page = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::VERTICAL, 6);
  page->set_hexpand(true);
  auto* heading = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::HORIZONTAL, 8);
  Gtk::Image* icon = ui::icon(iconOfPicture(group.main.imageName));
  icon->set_name("category-icon");
  icon->set_icon_size(Gtk::IconSize::LARGE);
  ui::setAccessibleLabel(*icon, group.main.name);
  heading->append(*icon);
  auto* name = ui::label(group.main.name, "heading", false);
  name->set_name("category-name");
  names.emplace_back(name, group.nameColor);
  heading->append(*name);
  Gtk::Button* main = categoryButton(group.main.typeId, *heading);
  ui::labelledBy(*main, *name);
  // Found by its name, as a tap on its title would.
  main->set_name(group.main.name);
  main->set_halign(Gtk::Align::START);
  page->append(*main);

  auto* subs = Gtk::make_managed<Gtk::FlowBox>();
  subs->set_selection_mode(Gtk::SelectionMode::NONE);
  subs->set_min_children_per_line(4);
  subs->set_max_children_per_line(4);
  subs->set_homogeneous(true);
  for (const auto& sub : group.subs) {
    auto* entry = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::VERTICAL, 4);
    auto* picture = Gtk::make_managed<PictureView>(pictures, kCategoryPictureBox, sub.name);
    picture->set_name("category-picture");
    picture->set_size_request(kCategoryPictureSide, kCategoryPictureSide);
    picture->set_halign(Gtk::Align::CENTER);
    picture->set_hexpand(false);
    picture->set_vexpand(false);
    pending.emplace_back(picture, sub.imageUrl);
    entry->append(*picture);
    auto* name = ui::label(sub.name, "caption", false);
    entry->append(*name);
    Gtk::Button* button = categoryButton(sub.typeId, *entry);
    ui::labelledBy(*button, *name);
    subs->append(*button);
  }
  subs->set_visible(!group.subs.empty());
  page->append(*subs);
  return page;
}

}  // namespace

void HomePage::setCategories() {
  std::vector<MainViewController::CategoryGroup> groups = MainViewController::homeCategoryGroups();
  categories_.set_visible(!groups.empty());
  if (groups == groups_) return;
  AdwCarousel* carousel = ADW_CAROUSEL(categoryPages_->gobj());
  while (adw_carousel_get_n_pages(carousel) > 0) adw_carousel_remove(carousel, adw_carousel_get_nth_page(carousel, 0));
  categoryPictures_.assign(groups.size(), {});
  categoryNames_.clear();
  for (std::size_t i = 0; i < groups.size(); ++i) {
    adw_carousel_append(
        carousel,
        GTK_WIDGET(categoryPage(groups[i], context_.pictures(), categoryPictures_[i], categoryNames_)->gobj()));
  }
  groups_ = std::move(groups);
  colourCategoryNames();
  showCategoryPictures(0);
}

void HomePage::colourCategoryNames() {
  // libadwaita's window background in the light and the dark style.
  const Color window =
      adw_style_manager_get_dark(adw_style_manager_get_default()) ? Color{36, 36, 36} : Color{250, 250, 250};
  for (const auto& [label, colour] : categoryNames_) {
    const Color shown = readableOn(colour, window, kNormalTextContrast);
    Pango::AttrList attributes;
    auto foreground = Pango::Attribute::create_attr_foreground(static_cast<guint16>(shown.red * 257),
                                                               static_cast<guint16>(shown.green * 257),
                                                               static_cast<guint16>(shown.blue * 257));
    attributes.insert(foreground);
    label->set_attributes(attributes);
  }
}

void HomePage::showCategoryPictures(std::size_t page) {
  // The page shown and the next one, so that a swipe lands on pictures already asked for.
  for (std::size_t i = page; i < categoryPictures_.size() && i <= page + 1; ++i) {
    for (auto& [view, url] : categoryPictures_[i]) view->setUrl(url);
  }
}

void HomePage::openStore(const std::string& storeId) {
  for (const auto* stores : {&screen_.recommendStores(), &screen_.popularStores()}) {
    for (const StoreInfoModel& store : *stores) {
      if (store.storeId == storeId && !MainViewController::isPlaceholderRow(store)) return openStoreDetail(store);
    }
  }
}

}  // namespace qmv::gtk
