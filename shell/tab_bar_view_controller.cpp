#include "shell/tab_bar_view_controller.h"

#include "core/common/log.h"
#include "shell/h5_texts.h"
#include "shell/qx_h5_view_controller.h"

namespace qmv {

TabBarViewController::TabBarViewController(std::vector<std::string> viewControllers)
    : viewControllers_(std::move(viewControllers)) {}

TabBarViewController::~TabBarViewController() = default;

void TabBarViewController::selectItem(int index) {
  if (index < 0 || index >= static_cast<int>(viewControllers_.size())) return;
  selectedIndex_ = index;
  logLine("tabbar: select " + std::to_string(index) + " " + viewControllers_[index]);
  if (index == kCirclesTab && !community_) {
    community_ = std::make_unique<QXH5ViewController>(h5_texts::kCommunityType);
    community_->viewDidLoad();
  }
  if (onSelect) onSelect(index);
}

}  // namespace qmv
