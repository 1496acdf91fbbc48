#include "apps/gtk/city_page.h"

#include "apps/gtk/page_context.h"
#include "apps/gtk/page_navigator.h"
#include "apps/gtk/ui.h"
#include "core/session/global_data.h"

namespace qmv::gtk {

CityPage::CityPage(PageContext& context) : ScreenPage(context, GlobalData::sharedInstance().getCurrentCityName(), true) {
  auto* search = Gtk::make_managed<Gtk::SearchEntry>();
  search->set_name("city-key");
  search->signal_search_changed().connect([this, search] {
    key_ = search->get_text();
    refresh();
  });
  body().append(*search);
  body().append(results_);
  refresh();
}

void CityPage::choose(const std::string& city) {
  if (screen_.selectCity(city)) context_.navigator().back();
}

void CityPage::refresh() {
  ui::clear(results_);
  if (!key_.empty()) {
    auto* list = ui::boxedList();
    for (const AreaModel& city : AreaSelectView::search(key_)) {
      const std::string name = city.areaName;
      ui::addRow(*list, name, city.areaPY, "", [this, name] { choose(name); });
    }
    results_.append(*list);
    return;
  }
  const auto section = [this](const std::string& letter, const std::vector<std::string>& names) {
    results_.append(*ui::label(letter, "heading"));
    auto* flow = Gtk::make_managed<Gtk::FlowBox>();
    flow->set_selection_mode(Gtk::SelectionMode::NONE);
    flow->set_min_children_per_line(2);
    flow->set_max_children_per_line(4);
    for (const std::string& name : names) flow->append(*ui::button(name, [this, name] { choose(name); }));
    results_.append(*flow);
  };
  if (!screen_.recentCities().empty()) section(AreaSelectView::kHistorySection, screen_.recentCities());
  for (const auto& [letter, cities] : screen_.sections()) {
    std::vector<std::string> names;
    for (const AreaModel& city : cities) names.push_back(city.areaName);
    section(letter, names);
  }
}

}  // namespace qmv::gtk
