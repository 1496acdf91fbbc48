#pragma once
// The navigator of the graphical client: the screen stacks are kept as the headless
// navigator keeps them, and every change is told to the window, which shows the top
// screen of the top layer and drops the pages of screens that left.
#include <functional>

#include "platform/stack_navigator.h"

namespace qmv::gtk {

class PageNavigator : public StackNavigator {
 public:
  ScreenId push(const std::string& name, const Json& payload = nullptr) override;
  bool pop() override;
  void popToRoot() override;
  bool popTo(ScreenId id) override;
  ScreenId present(const std::string& name, const Json& payload = nullptr) override;
  bool dismiss() override;
  ScreenId setRoot(const std::string& name, const Json& payload = nullptr) override;

  // The back action of a page: pops the top layer, or closes it when only its root is
  // left. Returns whether anything changed.
  bool back();

  // After every change. The window's sync runs from an idle turn, since a screen may
  // navigate from inside its own callbacks while it is being drawn.
  std::function<void()> onChange;

 private:
  void changed();
};

}  // namespace qmv::gtk
