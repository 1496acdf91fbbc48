#pragma once
// The main tab bar: home, nearby, wealth, the community page and the member screen,
// in that order. Headless: it holds the tabs and which one is selected. The community tab
// is the page host showing the community page, made and loaded the first time the tab is
// chosen.
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "shell/shell_texts.h"

namespace qmv {

class QXH5ViewController;

class TabBarViewController {
 public:
  static constexpr int kHomeTab = 0;
  static constexpr int kNearbyTab = 1;
  static constexpr int kCirclesTab = 3;
  // What the bar shows under each tab's icon, in the tabs' order.
  static constexpr const auto& kTabTitles = shell_texts::kTabTitles;

  explicit TabBarViewController(std::vector<std::string> viewControllers);
  ~TabBarViewController();

  const std::vector<std::string>& viewControllers() const { return viewControllers_; }
  int selectedIndex() const { return selectedIndex_; }
  // Out-of-range indexes are ignored.
  void selectItem(int index);
  // Null until the community tab was first chosen.
  QXH5ViewController* communityViewController() const { return community_.get(); }

  // After each selection, with the selected index (a front end follows it).
  std::function<void(int index)> onSelect;

 private:
  std::vector<std::string> viewControllers_;
  int selectedIndex_ = 0;
  std::unique_ptr<QXH5ViewController> community_;
};

}  // namespace qmv
