#include "shell/tab_bar_view_controller.h"

#include "core/common/log.h"

namespace qmv {

TabBarViewController::TabBarViewController(std::vector<std::string> viewControllers)
    : viewControllers_(std::move(viewControllers)) {}

void TabBarViewController::selectItem(int index) {
  if (index < 0 || index >= static_cast<int>(viewControllers_.size())) return;
  selectedIndex_ = index;
  logLine("tabbar: select " + std::to_string(index) + " " + viewControllers_[index]);
  if (onSelect) onSelect(index);
}

}  // namespace qmv
