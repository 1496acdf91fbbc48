#include "apps/gtk/nearby_page.h"

#include "apps/gtk/page_context.h"
#include "apps/gtk/store_rows.h"
#include "apps/gtk/ui.h"
#include "core/session/global_data.h"
#include "features/discovery/discovery_texts.h"

namespace qmv::gtk {

NearbyPage::NearbyPage(PageContext& context, std::shared_ptr<NearbyViewController> screen)
    : ScreenPage(context, "", false), screen_(std::move(screen)) {
  if (!screen_->isViewLoaded()) screen_->viewDidLoad();
  NearbyView& list = screen_->nearbyView();
  follow(list);
  list.onLoaded = [this](bool) { refreshSoon(); };
  screen_->mapView().onLoaded = [this](bool) { refreshSoon(); };
  screen_->mapView().onChange = [this] { refreshSoon(); };
  // The core wires a chosen keyword to the list; the page only leaves the keyword face.
  coreSearch_ = screen_->searchView().onSearch;
  screen_->searchView().onSearch = [this](const std::string& keyword) {
    searching_ = false;
    if (coreSearch_) coreSearch_(keyword);
    refreshSoon();
  };

  auto* search = Gtk::make_managed<Gtk::Button>();
  search->set_icon_name("system-search-symbolic");
  search->set_name("search");
  search->signal_clicked().connect([this] { showSearch(!searching_); });
  addHeaderButton(*search);
  auto* face = Gtk::make_managed<Gtk::Button>();
  face->set_icon_name("mark-location-symbolic");
  face->set_name("map-switch");
  face->signal_clicked().connect([this] {
    if (screen_->isLeft()) {
      screen_->switchRightWithAnimation();
    } else {
      screen_->switchLeftWithAnimation();
    }
    refreshSoon();
  });
  addHeaderButton(*face);
  pullToRefresh([this] { screen_->nearbyView().headerRefresh(); });
  mapBox_.append(map_.widget());

  // The first list loads when the tab is first drawn.
  signal_map().connect([this] {
    if (screen_->nearbyView().storeList.empty() && !screen_->nearbyView().isSearching()) {
      screen_->nearbyView().startSearchNet();
    }
  });
  refresh();
}

NearbyPage::~NearbyPage() {
  if (!screen_->isViewLoaded()) return;
  screen_->nearbyView().onLoaded = nullptr;
  screen_->mapView().onLoaded = nullptr;
  screen_->mapView().onChange = nullptr;
  screen_->searchView().onSearch = coreSearch_;
}

void NearbyPage::showSearch(bool shown) {
  searching_ = shown;
  if (shown) screen_->searchView().reloadHistory();
  refreshSoon();
}

void NearbyPage::refresh() {
  if (mapBox_.get_parent() != nullptr) body().remove(mapBox_);
  ui::clear(body());
  if (searching_) {
    setTitle(discovery_texts::kHistoryTitle);
    drawSearch();
  } else if (screen_->isLeft()) {
    setTitle(screen_->nearbyView().searchFieldText.empty() || !screen_->nearbyView().isKeySearchModel
                 ? GlobalData::sharedInstance().getCurrentCityName()
                 : screen_->nearbyView().searchFieldText);
    drawList();
  } else {
    setTitle(screen_->mapView().categoryTitle);
    drawMap();
  }
}

void NearbyPage::drawList() {
  NearbyView& view = screen_->nearbyView();
  auto* bar = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::HORIZONTAL, 6);
  bar->set_homogeneous(true);
  bar->add_css_class("linked");
  const auto filterButton = [this, &view](const FilterButton& button, NearbyView::Filter filter, const char* name) {
    auto* b = Gtk::make_managed<Gtk::Button>();
    auto* box = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::HORIZONTAL, 4);
    box->set_halign(Gtk::Align::CENTER);
    auto* title = Gtk::make_managed<Gtk::Label>(button.title);
    title->set_ellipsize(Pango::EllipsizeMode::END);
    box->append(*title);
    auto* arrow = Gtk::make_managed<Gtk::Image>();
    arrow->set_from_icon_name(button.arrowUp ? "pan-up-symbolic" : "pan-down-symbolic");
    box->append(*arrow);
    b->set_child(*box);
    b->set_name(name);
    b->signal_clicked().connect([this, &view, filter] {
      if (view.openFilter == filter) {
        view.cancelFilter();
      } else {
        if (view.openFilter != NearbyView::Filter::None) view.cancelFilter();
        view.tapFilter(filter);
      }
      refreshSoon();
    });
    return b;
  };
  bar->append(*filterButton(view.areaButton, NearbyView::Filter::Area, "filter-area"));
  bar->append(*filterButton(view.categoryButton, NearbyView::Filter::Category, "filter-category"));
  bar->append(*filterButton(view.sortButton, NearbyView::Filter::Sort, "filter-sort"));
  body().append(*bar);

  if (view.openFilter != NearbyView::Filter::None) {
    drawFilterDropDown();
    return;
  }
  auto* list = ui::boxedList();
  list->set_name("stores");
  addStoreRows(*list, view.storeList);
  if (!view.storeList.empty()) body().append(*list);
  if (!view.loadMoreFooterHidden && !view.storeList.empty()) {
    auto* more = Gtk::make_managed<Gtk::Button>();
    more->set_icon_name("view-more-horizontal-symbolic");
    more->set_name("load-more");
    more->add_css_class("flat");
    more->signal_clicked().connect([&view] { view.loadMore(); });
    body().append(*more);
  }
}

void NearbyPage::drawFilterDropDown() {
  NearbyView& view = screen_->nearbyView();
  const auto choose = [this](std::function<void()> chosen) {
    return [this, chosen = std::move(chosen)] {
      chosen();
      refreshSoon();
    };
  };
  if (view.openFilter == NearbyView::Filter::Category) {
    auto* columns = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::HORIZONTAL, 6);
    columns->set_homogeneous(true);
    auto* left = ui::boxedList();
    auto* right = ui::boxedList();
    CategoryScreenView& categories = view.categoryScreen;
    for (std::size_t i = 0; i < categories.categoryList.size(); ++i) {
      const bool selected = static_cast<long>(i) == categories.selectedLeftIndex;
      ui::addRow(*left, categories.categoryList[i].name, "", selected ? "●" : "",
                 choose([&categories, i] { categories.selectLeftRow(static_cast<long>(i)); }));
    }
    if (categories.selectedLeftIndex >= 0 &&
        categories.selectedLeftIndex < static_cast<long>(categories.categoryList.size())) {
      const auto& subs = categories.categoryList[static_cast<std::size_t>(categories.selectedLeftIndex)].list;
      for (std::size_t j = 0; j < subs.size(); ++j) {
        ui::addRow(*right, subs[j].name, "", "",
                   choose([&categories, j] { categories.selectRightRow(static_cast<long>(j)); }));
      }
    }
    columns->append(*left);
    columns->append(*right);
    body().append(*columns);
    return;
  }
  auto* list = ui::boxedList();
  const bool area = view.openFilter == NearbyView::Filter::Area;
  const auto& entries = area ? view.areaList : view.sortList;
  for (std::size_t i = 0; i < entries.size(); ++i) {
    ui::addRow(*list, entries[i], "", "", choose([&view, area, i] {
                 if (area) {
                   view.chooseArea(static_cast<long>(i));
                 } else {
                   view.chooseSort(static_cast<long>(i));
                 }
               }));
  }
  body().append(*list);
}

void NearbyPage::drawSearch() {
  SearchView& search = screen_->searchView();
  auto* field = Gtk::make_managed<Gtk::SearchEntry>();
  field->set_name("keyword");
  field->set_text(screen_->nearbyView().searchFieldText);
  field->signal_activate().connect([&search, field] { search.searchText(field->get_text()); });
  body().append(*field);
  auto* header = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::HORIZONTAL, 6);
  auto* title = ui::label(search.headerText(), "heading");
  title->set_hexpand(true);
  header->append(*title);
  if (!search.clearText().empty()) {
    header->append(*ui::button(search.clearText(), [this, &search] {
      search.clearHistory();
      refreshSoon();
    }, "flat"));
  }
  body().append(*header);
  if (search.history().empty()) {
    body().append(*ui::label(search.emptyText(), "dim-label"));
    return;
  }
  auto* list = ui::boxedList();
  for (std::size_t i = 0; i < search.history().size(); ++i) {
    ui::addRow(*list, search.history()[i], "", "", [&search, i] { search.chooseHistory(i); });
  }
  body().append(*list);
}

void NearbyPage::drawMap() {
  NearByMapView& view = screen_->mapView();
  std::vector<PinMap::Pin> pins;
  for (std::size_t i = 0; i < view.pins.size(); ++i) {
    const auto& pin = view.pins[i];
    pins.push_back({pin.gcj, pin.title, pin.subtitle, [&view, i] { view.selectPin(i); }});
  }
  map_.setPins(std::move(pins));
  body().append(mapBox_);
  auto* list = ui::boxedList();
  addStoreRows(*list, view.storeList);
  if (!view.storeList.empty()) body().append(*list);
}

}  // namespace qmv::gtk
