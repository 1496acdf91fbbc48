#pragma once
// The window and the application-wide looks that start-up sets: colours, the launch
// view, the icon badge. A headless front end has nothing to draw and records them.
#include <string>

namespace qmv {

struct Rgba {
  int r = 0, g = 0, b = 0;  // 0..255
  double a = 1.0;
};

struct AppLooks {
  Rgba background;
  Rgba barTint;  // the navigation bar's
  Rgba tint;     // its buttons'
  Rgba titleColor;
  double titleFontSize = 18;
};

class AppWindow {
 public:
  virtual ~AppWindow() = default;
  virtual void setLooks(const AppLooks& looks) = 0;
  // A full-screen launch view showing `imageUrl`, with `placeholderImage` until it loads.
  virtual void showLaunchView(const std::string& placeholderImage, const std::string& imageUrl) = 0;
  virtual void removeLaunchView() = 0;
  virtual bool isLaunchViewShown() const = 0;
  virtual void removeCachedImage(const std::string& url) = 0;
  // Clears the icon badge and any local notification still waiting to be shown.
  virtual void clearBadge() = 0;
};

}  // namespace qmv
