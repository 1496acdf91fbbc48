#pragma once
// The window of a headless front end: nothing is drawn, every call is recorded as one
// event line (also written to the debug log) so tests and the CLI can see start-up.
#include <string>
#include <vector>

#include "platform/app_window.h"

namespace qmv {

class HeadlessAppWindow : public AppWindow {
 public:
  void setBackgroundColor(const Rgba& colour) override;
  void configureKeyboard(bool automaticToolbar, bool enabled, bool resignOnTouchOutside) override;
  void setOverlayDefaultStyle(int style) override;
  void setStatusBar(bool hidden, int style) override;
  void setNavigationBarAppearance(const NavigationBarAppearance& appearance) override;
  void createWithScreenBounds() override;
  void makeKeyAndVisible() override;
  void showLaunchView(const std::string& placeholderImage, const std::string& imageUrl) override;
  void removeLaunchView() override;
  bool isLaunchViewShown() const override { return launchViewShown_; }
  void removeCachedImage(const std::string& url) override;
  void setApplicationIconBadgeNumber(int number) override;
  void cancelAllLocalNotifications() override;

  const std::vector<std::string>& events() const { return events_; }
  int badgeNumber() const { return badge_; }

 private:
  void record(std::string event);

  std::vector<std::string> events_;
  bool launchViewShown_ = false;
  int badge_ = 0;
};

}  // namespace qmv
