#pragma once
// The window of a headless front end: nothing is drawn, every call is recorded as one
// event line (also written to the debug log) so tests and the CLI can see start-up.
#include <string>
#include <vector>

#include "platform/app_window.h"

namespace qmv {

class HeadlessAppWindow : public AppWindow {
 public:
  void setLooks(const AppLooks& looks) override;
  void showLaunchView(const std::string& placeholderImage, const std::string& imageUrl) override;
  void removeLaunchView() override;
  bool isLaunchViewShown() const override { return launchViewShown_; }
  void removeCachedImage(const std::string& url) override;
  void clearBadge() override;

  const std::vector<std::string>& events() const { return events_; }

 private:
  void record(std::string event);

  std::vector<std::string> events_;
  bool launchViewShown_ = false;
};

}  // namespace qmv
