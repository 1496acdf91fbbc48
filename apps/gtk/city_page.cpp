#include "apps/gtk/city_page.h"

#include "apps/gtk/list_state_view.h"
#include "apps/gtk/page_context.h"
#include "apps/gtk/page_navigator.h"
#include "apps/gtk/ui.h"
#include "core/session/global_data.h"

namespace qmv::gtk {

namespace {

Gtk::ScrolledWindow* scrolled(Gtk::Widget& child) {
  auto* scroller = Gtk::make_managed<Gtk::ScrolledWindow>();
  scroller->set_policy(Gtk::PolicyType::NEVER, Gtk::PolicyType::AUTOMATIC);
  scroller->set_vexpand(true);
  scroller->set_child(child);
  return scroller;
}

// A heading and the buttons of its cities, each choosing its city (page.choose).
void appendCitySection(Gtk::Box& box, const std::string& letter, const std::vector<std::string>& names) {
  box.append(*ui::label(letter, "heading"));
  auto* flow = Gtk::make_managed<Gtk::FlowBox>();
  flow->set_selection_mode(Gtk::SelectionMode::NONE);
  // One a line at the least: two of the longest names (autonomous prefectures) would
  // not fit a phone's width.
  flow->set_min_children_per_line(1);
  flow->set_max_children_per_line(4);
  for (const std::string& name : names) {
    auto* city = Gtk::make_managed<Gtk::Button>(name);
    city->set_action_name("page.choose");
    city->set_action_target_value(Glib::Variant<Glib::ustring>::create(name));
    flow->append(*city);
  }
  box.append(*flow);
}

}  // namespace

CityPage::CityPage(PageContext& context)
    : ScreenPage(context, GlobalData::sharedInstance().getCurrentCityName(), true),
      rows_([](const AreaModel& city) { return city.areaName; },
            [](const AreaModel& a, const AreaModel& b) { return a.areaName == b.areaName && a.areaPY == b.areaPY; }) {
  addAction("open-row", Glib::VariantType("u"), [this](const Glib::VariantBase& value) {
    const guint32 row = Glib::VariantBase::cast_dynamic<Glib::Variant<guint32>>(value).get();
    if (row < rows_.size()) choose(rows_.at(row).areaName);
  });
  addAction("choose", Glib::VariantType("s"), [this](const Glib::VariantBase& value) {
    choose(Glib::VariantBase::cast_dynamic<Glib::Variant<Glib::ustring>>(value).get());
  });
  // Each face scrolls by itself under the search field.
  fillPage();
  auto* search = Gtk::make_managed<Gtk::SearchEntry>();
  search->set_name("city-key");
  ui::setAccessibleLabel(*search, gtk_texts::kSearch);
  g_object_set(search->gobj(), "placeholder-text", discovery_texts::kCitySearchPlaceholder, nullptr);
  search->set_margin(12);
  search->signal_search_changed().connect([this, search] {
    key_ = search->get_text();
    refresh();
  });
  body().append(*search);
  sections_.set_margin(12);
  faces_.add(*scrolled(sections_), "letters");
  auto* results = listView(rows_.model(), actionRowFactory<AreaModel>([](const AreaModel& city) {
                             return RowTexts{city.areaName, city.areaPY, "", true};
                           }),
                           "cities");
  results->set_margin(12);
  faces_.add(*scrolled(*results), "results");
  auto* noMatch = Gtk::make_managed<ListStateView>();
  noMatch->show({ScreenState::Kind::Empty, AreaSelectView::kNoMatchText, false});
  faces_.add(*noMatch, "no-match");
  faces_.set_vexpand(true);
  body().append(faces_);
  refresh();
}

void CityPage::choose(const std::string& city) {
  if (screen_.selectCity(city)) context_.navigator().back();
}

void CityPage::refresh() {
  if (!key_.empty()) {
    rows_.assign(AreaSelectView::search(key_));
    faces_.set_visible_child(rows_.size() > 0 ? "results" : "no-match");
    return;
  }
  faces_.set_visible_child("letters");
  if (!drawn_) drawSections();
  if (drawnRecent_ != screen_.recentCities()) drawHistory();
}

void CityPage::drawSections() {
  // The letters stay as drawn; only the history above them follows the member's choices.
  drawn_ = true;
  history_.set_visible(false);
  sections_.append(history_);
  for (const auto& [letter, cities] : screen_.sections()) {
    std::vector<std::string> names;
    for (const AreaModel& city : cities) names.push_back(city.areaName);
    appendCitySection(sections_, letter, names);
  }
}

void CityPage::drawHistory() {
  drawnRecent_ = screen_.recentCities();
  while (Gtk::Widget* child = history_.get_first_child()) history_.remove(*child);
  if (!drawnRecent_.empty()) appendCitySection(history_, AreaSelectView::kHistorySection, drawnRecent_);
  history_.set_visible(!drawnRecent_.empty());
}

}  // namespace qmv::gtk
