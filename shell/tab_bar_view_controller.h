#pragma once
// The main tab bar: home, nearby, wealth, the community page and the member screen,
// in that order. Headless: it holds the tabs and which one is selected.
#include <functional>
#include <string>
#include <vector>

namespace qmv {

class TabBarViewController {
 public:
  static constexpr int kHomeTab = 0;
  static constexpr int kNearbyTab = 1;
  static constexpr int kCirclesTab = 3;
  // What the bar shows under each tab's icon, in the tabs' order.
  static constexpr const char* kTabTitles[] = {"首页", "附近", "财富", "社区", "我的"};

  explicit TabBarViewController(std::vector<std::string> viewControllers);

  const std::vector<std::string>& viewControllers() const { return viewControllers_; }
  int selectedIndex() const { return selectedIndex_; }
  // Out-of-range indexes are ignored.
  void selectItem(int index);

  // After each selection, with the selected index (a front end follows it).
  std::function<void(int index)> onSelect;

 private:
  std::vector<std::string> viewControllers_;
  int selectedIndex_ = 0;
};

}  // namespace qmv
