#include "platform/stack_navigator.h"

#include <algorithm>

#include "core/common/log.h"

namespace qmv {

StackNavigator::StackNavigator() : layers_(1) {}

void StackNavigator::record(const std::string& event) {
  history_.push_back(event);
  std::string stack;
  for (const auto& layer : layers_) {
    stack += " [";
    for (std::size_t i = 0; i < layer.size(); ++i) stack += (i ? " > " : "") + layer[i].name;
    stack += "]";
  }
  logLine("navigator: " + event + " ->" + stack);
}

ScreenId StackNavigator::push(const std::string& name, const Json& payload) {
  const ScreenId id = nextId_++;
  layers_.back().push_back(Screen{id, name, payload});
  record("push " + name);
  return id;
}

bool StackNavigator::pop() {
  auto& layer = layers_.back();
  // A layer's root stays: only dismiss closes a presented layer.
  if (layer.size() <= 1) return false;
  const std::string name = layer.back().name;
  layer.pop_back();
  record("pop " + name);
  return true;
}

void StackNavigator::popToRoot() {
  auto& layer = layers_.back();
  if (layer.size() <= 1) return;
  layer.resize(1);
  record("popToRoot " + layer.front().name);
}

bool StackNavigator::popTo(ScreenId id) {
  auto& layer = layers_.back();
  const auto it = std::find_if(layer.begin(), layer.end(), [id](const Screen& s) { return s.id == id; });
  if (it == layer.end()) return false;
  layer.erase(it + 1, layer.end());
  record("popTo " + it->name);
  return true;
}

ScreenId StackNavigator::present(const std::string& name, const Json& payload) {
  const ScreenId id = nextId_++;
  layers_.push_back({Screen{id, name, payload}});
  record("present " + name);
  return id;
}

bool StackNavigator::dismiss() {
  if (layers_.size() <= 1) return false;
  const std::string name = layers_.back().empty() ? std::string() : layers_.back().front().name;
  layers_.pop_back();
  record("dismiss " + name);
  return true;
}

ScreenId StackNavigator::setRoot(const std::string& name, const Json& payload) {
  const ScreenId id = nextId_++;
  layers_.assign(1, {Screen{id, name, payload}});
  record("setRoot " + name);
  return id;
}

}  // namespace qmv
