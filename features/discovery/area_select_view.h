#pragma once
// The city picker, headless: the cities of the area database grouped by the initial
// letter of their pinyin, the recently chosen ones under "历", and the cities matching a
// typed key (name or pinyin). Choosing a city makes it the browsed and displayed city,
// puts it first among the recent ones and posts "city_changed_noti", which the nearby
// list follows.
#include <map>
#include <string>
#include <vector>

#include "core/common/area_model.h"
#include "features/discovery/discovery_texts.h"

namespace qmv {

class AreaSelectView {
 public:
  static constexpr const char* kHistorySection = discovery_texts::kHistorySection;
  static constexpr std::size_t kMaxRecent = 6;
  // What the picker says when search() matches no city.
  static constexpr const char* kNoMatchText = discovery_texts::kNoCityMatch;

  // Reads the cities and the recent list.
  AreaSelectView();

  // Cities by initial letter, letters in order.
  const std::map<std::string, std::vector<AreaModel>>& sections() const { return sections_; }
  // Recently chosen city names, newest first.
  const std::vector<std::string>& recentCities() const { return recent_; }

  // Cities whose name or pinyin matches `key`; an empty key gives none.
  static std::vector<AreaModel> search(const std::string& key);

  // Chooses a city by name. False (nothing changes) when the area database does not
  // know it. REQUIRES: interface thread.
  bool selectCity(const std::string& name);

 private:
  std::map<std::string, std::vector<AreaModel>> sections_;
  std::vector<std::string> recent_;
};

}  // namespace qmv
