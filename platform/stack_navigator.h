#pragma once
// Navigator that keeps the screen stacks in memory (a headless front end draws from
// them) and logs every change as one debug line. It also keeps the history of changes,
// which lets tests and the command line see what was opened and closed.
#include <string>
#include <vector>

#include "platform/navigator.h"

namespace qmv {

class StackNavigator : public Navigator {
 public:
  // Starts with one empty bottom layer.
  StackNavigator();

  ScreenId push(const std::string& name, const Json& payload = nullptr) override;
  bool pop() override;
  void popToRoot() override;
  bool popTo(ScreenId id) override;
  ScreenId present(const std::string& name, const Json& payload = nullptr) override;
  bool dismiss() override;
  ScreenId setRoot(const std::string& name, const Json& payload = nullptr) override;
  std::vector<std::vector<Screen>> layers() const override { return layers_; }

  // One entry per change, e.g. "push MainViewController", "present LoginViewController",
  // "dismiss LoginViewController", "pop QXPayNowViewController".
  const std::vector<std::string>& history() const { return history_; }

 private:
  void record(const std::string& event);

  std::vector<std::vector<Screen>> layers_;
  std::vector<std::string> history_;
  ScreenId nextId_ = 1;
};

}  // namespace qmv
