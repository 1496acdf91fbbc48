#include "platform/linux/headless_app_window.h"

#include "core/common/log.h"

namespace qmv {
namespace {

std::string rgba(const Rgba& c) {
  char text[64];
  std::snprintf(text, sizeof text, "%d,%d,%d,%g", c.r, c.g, c.b, c.a);
  return text;
}

}  // namespace

void HeadlessAppWindow::record(std::string event) {
  logLine("window: " + event);
  events_.push_back(std::move(event));
}

void HeadlessAppWindow::setBackgroundColor(const Rgba& colour) { record("background " + rgba(colour)); }

void HeadlessAppWindow::configureKeyboard(bool automaticToolbar, bool enabled, bool resignOnTouchOutside) {
  record(std::string("keyboard toolbar=") + (automaticToolbar ? "on" : "off") + " enabled=" + (enabled ? "on" : "off") +
         " resignOnTouchOutside=" + (resignOnTouchOutside ? "on" : "off"));
}

void HeadlessAppWindow::setOverlayDefaultStyle(int style) { record("overlayStyle " + std::to_string(style)); }

void HeadlessAppWindow::setStatusBar(bool hidden, int style) {
  record(std::string("statusBar ") + (hidden ? "hidden" : "shown") + " style=" + std::to_string(style));
}

void HeadlessAppWindow::setNavigationBarAppearance(const NavigationBarAppearance& a) {
  char offset[64];
  std::snprintf(offset, sizeof offset, "%g,%g", a.backTitleOffsetX, a.backTitleOffsetY);
  record("navigationBar barTint=" + rgba(a.barTint) + " font=" + std::to_string(static_cast<int>(a.titleFontSize)) +
         " backTitleOffset=" + offset);
}

void HeadlessAppWindow::createWithScreenBounds() { record("create"); }

void HeadlessAppWindow::makeKeyAndVisible() { record("makeKeyAndVisible"); }

void HeadlessAppWindow::showLaunchView(const std::string& placeholderImage, const std::string& imageUrl) {
  launchViewShown_ = true;
  record("launchView placeholder=" + placeholderImage + " url=" + imageUrl);
}

void HeadlessAppWindow::removeLaunchView() {
  launchViewShown_ = false;
  record("launchView removed");
}

void HeadlessAppWindow::removeCachedImage(const std::string& url) { record("imageCache remove " + url); }

void HeadlessAppWindow::setApplicationIconBadgeNumber(int number) {
  badge_ = number;
  record("badge " + std::to_string(number));
}

void HeadlessAppWindow::cancelAllLocalNotifications() { record("cancelAllLocalNotifications"); }

}  // namespace qmv
