#include "apps/gtk/home_page.h"

#include <adwaita.h>

#include "apps/gtk/page_context.h"
#include "apps/gtk/page_navigator.h"
#include "apps/gtk/screen_names.h"
#include "apps/gtk/store_rows.h"
#include "apps/gtk/ui.h"
#include "features/discovery/discovery_texts.h"
#include "features/discovery/search_type_net_api.h"
#include "features/discovery/store_screens.h"
#include "shell/app_delegate.h"

namespace qmv::gtk {

HomePage::HomePage(PageContext& context) : ScreenPage(context, "", false) {
  follow(screen_);
  screen_.onAutoLoginFinished = [&context](bool) { context.signedInAgain(); };
  screen_.onLoaded = [this] { refreshSoon(); };
  screen_.onPopularLoaded = [this](bool) { refreshSoon(); };
  screen_.onLocated = [this](MainViewController::LocateOutcome) { refreshSoon(); };
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
  city->signal_clicked().connect([&context] { context.navigator().push(kCityScreen); });
  addHeaderButton(*city);

  body().append(banners_);
  grid_.set_selection_mode(Gtk::SelectionMode::NONE);
  grid_.set_min_children_per_line(2);
  grid_.set_max_children_per_line(4);
  grid_.set_homogeneous(true);
  body().append(grid_);
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

void HomePage::refresh() {
  setTitle(screen_.addressButtonTitle());
  setBanners();
  setTemplates();
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

void HomePage::setTemplates() {
  std::vector<std::pair<std::string, std::string>> types;
  const std::vector<SearchTypeModel> catalogue = SearchTypeNetApi::getSearchTypes();
  for (const SearchTypeModel& type : screen_.templates()) {
    if (!type.name.empty()) types.emplace_back(type.name, MainViewController::handoverTypeId(type, catalogue));
  }
  grid_.set_visible(!types.empty());
  if (types == templates_) return;
  while (Gtk::Widget* child = grid_.get_first_child()) grid_.remove(*child);
  for (const auto& [name, id] : types) {
    auto* button = Gtk::make_managed<Gtk::Button>(name);
    button->add_css_class("flat");
    button->set_action_target_value(Glib::Variant<Glib::ustring>::create(id));
    button->set_action_name("page.open-type");
    grid_.append(*button);
  }
  templates_ = std::move(types);
}

void HomePage::openStore(const std::string& storeId) {
  for (const auto* stores : {&screen_.recommendStores(), &screen_.popularStores()}) {
    for (const StoreInfoModel& store : *stores) {
      if (store.storeId == storeId && !MainViewController::isPlaceholderRow(store)) return openStoreDetail(store);
    }
  }
}

}  // namespace qmv::gtk
