#include "apps/gtk/nearby_page.h"

#include <adwaita.h>

#include "apps/gtk/gtk_texts.h"
#include "apps/gtk/page_context.h"
#include "apps/gtk/store_rows.h"
#include "apps/gtk/ui.h"
#include "core/session/global_data.h"
#include "features/discovery/discovery_texts.h"
#include "features/discovery/main_view_controller.h"
#include "features/discovery/store_screens.h"

namespace qmv::gtk {

namespace {

constexpr NearbyView::Filter kFilters[] = {NearbyView::Filter::Area, NearbyView::Filter::Category,
                                           NearbyView::Filter::Sort};
// The map's share of the page's height, on a tall and on a wide window.
constexpr double kMapShare = 0.5;
constexpr double kWideMapShare = 0.65;
constexpr const char* kFilterNames[] = {"filter-area", "filter-category", "filter-sort"};

std::string nearbyKey(const NearbyRow& row) {
  const std::string id = row.kind == NearbyRow::Kind::Store ? row.store.storeId : std::to_string(row.index);
  return std::to_string(static_cast<int>(row.kind)) + ':' + id + ':' + row.texts.title;
}

bool nearbyDrawsAlike(const NearbyRow& a, const NearbyRow& b) {
  return a.texts == b.texts;
}

NearbyRow nearbyChoice(NearbyRow::Kind kind, std::size_t index, const std::string& title, bool current = false) {
  RowTexts texts{title, "", "", true};
  texts.current = current;
  return {kind, index, texts, {}};
}

std::vector<NearbyRow> storeRows(const std::vector<StoreInfoModel>& stores) {
  std::vector<NearbyRow> rows;
  for (std::size_t i = 0; i < stores.size(); ++i) {
    if (MainViewController::isPlaceholderRow(stores[i])) continue;
    rows.push_back({NearbyRow::Kind::Store, i, storeRowTexts(stores[i]), stores[i]});
  }
  return rows;
}

}  // namespace

NearbyPage::NearbyPage(PageContext& context, std::shared_ptr<NearbyViewController> screen)
    : ScreenPage(context, "", false),
      screen_(std::move(screen)),
      rows_(&nearbyKey, &nearbyDrawsAlike),
      map_(context.mapTiles()) {
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
  coreClear_ = screen_->searchView().onClear;
  screen_->searchView().onClear = [this] {
    searching_ = false;
    if (coreClear_) coreClear_();
    refreshSoon();
  };

  addAction("search", [this] { showSearch(!searching_); });
  addAction("switch-face", [this] {
    if (screen_->isLeft()) {
      screen_->switchRightWithAnimation();
    } else {
      screen_->switchLeftWithAnimation();
    }
    refreshSoon();
  });
  addAction("filter", Glib::VariantType("i"), [this](const Glib::VariantBase& value) {
    const gint32 i = Glib::VariantBase::cast_dynamic<Glib::Variant<gint32>>(value).get();
    if (i < 0 || i >= static_cast<gint32>(std::size(kFilters))) return;
    NearbyView& view = screen_->nearbyView();
    if (view.openFilter == kFilters[i]) {
      view.cancelFilter();
    } else {
      if (view.openFilter != NearbyView::Filter::None) view.cancelFilter();
      view.tapFilter(kFilters[i]);
    }
    refreshSoon();
  });
  addAction("clear-keyword", [this] {
    screen_->nearbyView().clearKeyword();
    refreshSoon();
  });
  addAction("clear-history", [this] {
    screen_->searchView().clearHistory();
    refreshSoon();
  });
  addAction("load-more", [this] { screen_->nearbyView().loadMore(); });
  addAction("open-row", Glib::VariantType("u"), [this](const Glib::VariantBase& value) {
    openRow(Glib::VariantBase::cast_dynamic<Glib::Variant<guint32>>(value).get());
  });
  pullToRefresh([this] { screen_->nearbyView().headerRefresh(); });

  auto* search = Gtk::make_managed<Gtk::Button>();
  search->set_icon_name("system-search-symbolic");
  search->set_name("search");
  ui::nameIcon(*search, gtk_texts::kSearch);
  search->set_action_name("page.search");
  addHeaderButton(*search);
  faceSwitch_ = Gtk::make_managed<Gtk::Button>();
  faceSwitch_->set_icon_name("mark-location-symbolic");
  faceSwitch_->set_name("map-switch");
  faceSwitch_->set_action_name("page.switch-face");
  ui::nameIcon(*faceSwitch_, gtk_texts::kShowMap);
  addHeaderButton(*faceSwitch_);

  buildSearchFace();
  buildListFace();
  // The map takes a share of the page's height (see fitMap), the stores the rest.
  map_.widget().set_vexpand(false);
  mapHeight_ = adw_clamp_new();
  gtk_orientable_set_orientation(GTK_ORIENTABLE(mapHeight_), GTK_ORIENTATION_VERTICAL);
  adw_clamp_set_child(ADW_CLAMP(mapHeight_), GTK_WIDGET(map_.widget().gobj()));
  faces_.add(*Gtk::manage(Glib::wrap(mapHeight_)), "map");
  // A box has no signal for its size changing; the map's own frame callback already keeps
  // the frames coming while the map is on screen, so this one costs a comparison a frame.
  fitTick_ = add_tick_callback([this](const Glib::RefPtr<Gdk::FrameClock>&) { return fitMap(); });
  faces_.set_vhomogeneous(false);
  faces_.set_hhomogeneous(false);
  body().append(faces_);
  setList(*listView(rows_.model(), actionRowFactory<NearbyRow>([](const NearbyRow& row) { return row.texts; }, context.pictures()),
                    "stores"));
  more_ = ui::loadMoreButton();
  footer().append(*more_);

  // The first list loads when the tab is first drawn.
  signal_map().connect([this] {
    if (screen_->nearbyView().storeList.empty() && !screen_->nearbyView().isSearching()) {
      screen_->nearbyView().startSearchNet();
    }
  });
  refresh();
}

NearbyPage::~NearbyPage() {
  remove_tick_callback(fitTick_);
  if (!screen_->isViewLoaded()) return;
  screen_->nearbyView().onLoaded = nullptr;
  screen_->mapView().onLoaded = nullptr;
  screen_->mapView().onChange = nullptr;
  screen_->searchView().onSearch = coreSearch_;
  screen_->searchView().onClear = coreClear_;
}

int NearbyPage::mapHeightFor(int width, int height) {
  // A wide window gives the map more of its height: the stores fit in fewer rows there.
  // The map's own least height holds on small windows.
  return static_cast<int>(height * (width > height ? kWideMapShare : kMapShare));
}

bool NearbyPage::fitMap() {
  const int wanted = mapHeightFor(get_width(), get_height());
  if (get_height() > 0 && wanted != adw_clamp_get_maximum_size(ADW_CLAMP(mapHeight_))) {
    adw_clamp_set_maximum_size(ADW_CLAMP(mapHeight_), wanted);
    adw_clamp_set_tightening_threshold(ADW_CLAMP(mapHeight_), wanted);
  }
  return true;
}

void NearbyPage::buildSearchFace() {
  auto* face = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::VERTICAL, 12);
  keyword_ = Gtk::make_managed<Gtk::SearchEntry>();
  keyword_->set_name("keyword");
  ui::setAccessibleLabel(*keyword_, gtk_texts::kSearch);
  // A property: a search entry is not a GtkEntry.
  g_object_set(keyword_->gobj(), "placeholder-text", discovery_texts::kSearchPlaceholder, nullptr);
  keyword_->signal_activate().connect([this] { screen_->searchView().searchText(keyword_->get_text()); });
  face->append(*keyword_);
  auto* header = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::HORIZONTAL, 6);
  historyTitle_ = ui::label("", "heading");
  historyTitle_->set_hexpand(true);
  header->append(*historyTitle_);
  clear_ = Gtk::make_managed<Gtk::Button>();
  clear_->add_css_class("flat");
  clear_->set_action_name("page.clear-history");
  header->append(*clear_);
  face->append(*header);
  empty_ = ui::label("", "dim-label");
  face->append(*empty_);
  faces_.add(*face, "search");
}

void NearbyPage::buildListFace() {
  auto* face = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::VERTICAL, 6);
  // The keyword that names the list, with the way back to the filters.
  clearKeyword_ = Gtk::make_managed<Gtk::Button>();
  clearKeyword_->set_name("clear-keyword");
  clearKeyword_->set_action_name("page.clear-keyword");
  clearKeyword_->set_halign(Gtk::Align::START);
  clearKeyword_->add_css_class("pill");
  auto* keyword = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::HORIZONTAL, 4);
  keywordShown_ = Gtk::make_managed<Gtk::Label>();
  keyword->append(*keywordShown_);
  keyword->append(*Gtk::make_managed<Gtk::Image>(Glib::ustring("edit-clear-symbolic")));
  clearKeyword_->set_child(*keyword);
  ui::setAccessibleLabel(*clearKeyword_, gtk_texts::kClearKeyword);
  face->append(*clearKeyword_);
  auto* bar = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::HORIZONTAL, 6);
  bar->set_homogeneous(true);
  bar->add_css_class("linked");
  for (std::size_t i = 0; i < filters_.size(); ++i) {
    auto* b = Gtk::make_managed<Gtk::Button>();
    auto* box = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::HORIZONTAL, 4);
    box->set_halign(Gtk::Align::CENTER);
    filters_[i].title = Gtk::make_managed<Gtk::Label>();
    filters_[i].title->set_ellipsize(Pango::EllipsizeMode::END);
    box->append(*filters_[i].title);
    filters_[i].arrow = Gtk::make_managed<Gtk::Image>();
    box->append(*filters_[i].arrow);
    b->set_child(*box);
    ui::labelledBy(*b, *filters_[i].title);
    b->set_name(kFilterNames[i]);
    b->set_action_name("page.filter");
    b->set_action_target_value(Glib::Variant<gint32>::create(static_cast<gint32>(i)));
    bar->append(*b);
  }
  face->append(*bar);
  faces_.add(*face, "list");
}

void NearbyPage::showSearch(bool shown) {
  searching_ = shown;
  if (shown) {
    screen_->searchView().reloadHistory();
    keyword_->set_text(screen_->nearbyView().searchFieldText);
  }
  refreshSoon();
}

void NearbyPage::refresh() {
  NearbyView& view = screen_->nearbyView();
  bool more = false;
  // The map face takes the page's whole width; the others keep a reading width.
  fillWidth(!searching_ && !screen_->isLeft());
  if (searching_) {
    setTitle(discovery_texts::kHistoryTitle);
    faces_.set_visible_child("search");
    SearchView& search = screen_->searchView();
    historyTitle_->set_text(search.headerText());
    clear_->set_label(search.clearText());
    clear_->set_visible(!search.clearText().empty());
    empty_->set_text(search.emptyText());
    empty_->set_visible(search.history().empty());
    rows_.assign(searchRows());
    showListState(true, false, "");  // the history says itself when it is empty
  } else if (screen_->isLeft()) {
    setTitle(view.keywordActive() ? view.searchFieldText : GlobalData::sharedInstance().getCurrentCityName());
    faces_.set_visible_child("list");
    faceSwitch_->set_icon_name("mark-location-symbolic");
    ui::nameIcon(*faceSwitch_, gtk_texts::kShowMap);
    clearKeyword_->set_visible(view.keywordActive());
    keywordShown_->set_text(view.searchFieldText);
    const FilterButton* shown[] = {&view.areaButton, &view.categoryButton, &view.sortButton};
    for (std::size_t i = 0; i < filters_.size(); ++i) {
      filters_[i].title->set_text(shown[i]->title);
      filters_[i].arrow->set_from_icon_name(shown[i]->arrowUp ? "pan-up-symbolic" : "pan-down-symbolic");
    }
    if (view.openFilter != NearbyView::Filter::None) {
      rows_.assign(filterRows());
      showListState(true, false, "");  // the drop-down's entries are rows too
    } else {
      rows_.assign(storeRows(view.storeList));
      more = !view.loadMoreFooterHidden && !view.storeList.empty();
      showListState(!view.storeList.empty(), view.loadMoreFooterHidden, view.emptyText());
    }
  } else {
    setTitle(screen_->mapView().categoryTitle);
    faces_.set_visible_child("map");
    faceSwitch_->set_icon_name("view-list-symbolic");
    ui::nameIcon(*faceSwitch_, gtk_texts::kShowList);
    showPins();
    rows_.assign(storeRows(screen_->mapView().storeList));
    showListState(true, false, "");  // the map's pins are its content
  }
  more_->set_visible(more);
}

std::vector<NearbyRow> NearbyPage::searchRows() {
  std::vector<NearbyRow> rows;
  const auto& history = screen_->searchView().history();
  for (std::size_t i = 0; i < history.size(); ++i) rows.push_back(nearbyChoice(NearbyRow::Kind::History, i, history[i]));
  return rows;
}

// The open drop-down's choices; the category one lists the sub-categories of the chosen
// category right under it.
std::vector<NearbyRow> NearbyPage::filterRows() {
  NearbyView& view = screen_->nearbyView();
  std::vector<NearbyRow> rows;
  if (view.openFilter == NearbyView::Filter::Category) {
    const CategoryScreenView& categories = view.categoryScreen;
    for (std::size_t i = 0; i < categories.categoryList.size(); ++i) {
      const bool selected = static_cast<long>(i) == categories.selectedLeftIndex;
      rows.push_back(nearbyChoice(NearbyRow::Kind::Category, i, categories.categoryList[i].name, selected));
      if (!selected) continue;
      const auto& subs = categories.categoryList[i].list;
      for (std::size_t j = 0; j < subs.size(); ++j) {
        const bool current = static_cast<long>(j) == categories.selectedRightIndex;
        rows.push_back(nearbyChoice(NearbyRow::Kind::SubCategory, j, "    " + subs[j].name, current));
      }
    }
    return rows;
  }
  const bool area = view.openFilter == NearbyView::Filter::Area;
  const auto& entries = area ? view.areaList : view.sortList;
  const long current = area ? view.areaSelectedIndex : view.sortSelectedIndex;
  for (std::size_t i = 0; i < entries.size(); ++i) {
    rows.push_back(nearbyChoice(area ? NearbyRow::Kind::Area : NearbyRow::Kind::Sort, i, entries[i],
                                static_cast<long>(i) == current));
  }
  return rows;
}

void NearbyPage::showPins() {
  map_.setMyLocation(GlobalData::sharedInstance().userLocation());
  NearByMapView& view = screen_->mapView();
  std::string shown;
  std::vector<PinMap::Pin> pins;
  for (std::size_t i = 0; i < view.pins.size(); ++i) {
    const auto& pin = view.pins[i];
    shown += std::to_string(pin.gcj.latitude) + ',' + std::to_string(pin.gcj.longitude) + pin.title + '\n';
    pins.push_back({pin.gcj, pin.title, pin.subtitle, [&view, i] { view.selectPin(i); }});
  }
  if (shown == shownPins_ && map_.pinCount() == pins.size()) return;
  shownPins_ = std::move(shown);
  map_.setPins(std::move(pins));
}

void NearbyPage::openRow(guint position) {
  if (position >= rows_.size()) return;
  const NearbyRow row = rows_.at(position);
  NearbyView& view = screen_->nearbyView();
  const auto index = static_cast<long>(row.index);
  switch (row.kind) {
    case NearbyRow::Kind::Store:
      openStoreDetail(row.store);
      return;
    case NearbyRow::Kind::History:
      screen_->searchView().chooseHistory(row.index);
      return;
    case NearbyRow::Kind::Category:
      view.categoryScreen.selectLeftRow(index);
      break;
    case NearbyRow::Kind::SubCategory:
      view.categoryScreen.selectRightRow(index);
      break;
    case NearbyRow::Kind::Area:
      view.chooseArea(index);
      break;
    case NearbyRow::Kind::Sort:
      view.chooseSort(index);
      break;
  }
  refreshSoon();
}

}  // namespace qmv::gtk
