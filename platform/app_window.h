#pragma once
// The window and the application-wide looks that start-up configures: background,
// keyboard handling, overlay style, status bar, navigation-bar appearance, the launch
// view, the icon badge. A headless front end has nothing to draw and records them.
#include <string>

namespace qmv {

struct Rgba {
  int r = 0, g = 0, b = 0;  // 0..255
  double a = 1.0;
};

struct NavigationBarAppearance {
  Rgba barTint;
  Rgba tint;
  Rgba titleColor;
  double titleFontSize = 18;
  double backTitleOffsetX = 0;
  double backTitleOffsetY = 0;
};

class AppWindow {
 public:
  virtual ~AppWindow() = default;
  virtual void setBackgroundColor(const Rgba& colour) = 0;
  virtual void configureKeyboard(bool automaticToolbar, bool enabled, bool resignOnTouchOutside) = 0;
  virtual void setOverlayDefaultStyle(int style) = 0;
  virtual void setStatusBar(bool hidden, int style) = 0;
  virtual void setNavigationBarAppearance(const NavigationBarAppearance& appearance) = 0;
  virtual void createWithScreenBounds() = 0;
  virtual void makeKeyAndVisible() = 0;
  // A full-screen launch view showing `imageUrl`, with `placeholderImage` until it loads.
  virtual void showLaunchView(const std::string& placeholderImage, const std::string& imageUrl) = 0;
  virtual void removeLaunchView() = 0;
  virtual bool isLaunchViewShown() const = 0;
  virtual void removeCachedImage(const std::string& url) = 0;
  virtual void setApplicationIconBadgeNumber(int number) = 0;
  virtual void cancelAllLocalNotifications() = 0;
};

}  // namespace qmv
