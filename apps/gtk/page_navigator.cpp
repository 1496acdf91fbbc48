#include "apps/gtk/page_navigator.h"

namespace qmv::gtk {

void PageNavigator::changed() {
  if (onChange) onChange();
}

ScreenId PageNavigator::push(const std::string& name, const Json& payload) {
  const ScreenId id = StackNavigator::push(name, payload);
  changed();
  return id;
}

bool PageNavigator::pop() {
  const bool popped = StackNavigator::pop();
  if (popped) changed();
  return popped;
}

void PageNavigator::popToRoot() {
  StackNavigator::popToRoot();
  changed();
}

bool PageNavigator::popTo(ScreenId id) {
  const bool popped = StackNavigator::popTo(id);
  if (popped) changed();
  return popped;
}

ScreenId PageNavigator::present(const std::string& name, const Json& payload) {
  const ScreenId id = StackNavigator::present(name, payload);
  changed();
  return id;
}

bool PageNavigator::dismiss() {
  const bool closed = StackNavigator::dismiss();
  if (closed) changed();
  return closed;
}

ScreenId PageNavigator::setRoot(const std::string& name, const Json& payload) {
  const ScreenId id = StackNavigator::setRoot(name, payload);
  changed();
  return id;
}

bool PageNavigator::back() { return pop() || dismiss(); }

}  // namespace qmv::gtk
