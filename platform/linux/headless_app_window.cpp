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

void HeadlessAppWindow::setLooks(const AppLooks& looks) {
  record("looks background=" + rgba(looks.background) + " barTint=" + rgba(looks.barTint) +
         " font=" + std::to_string(static_cast<int>(looks.titleFontSize)));
}

void HeadlessAppWindow::showLaunchView(const std::string& placeholderImage, const std::string& imageUrl) {
  launchViewShown_ = true;
  record("launchView placeholder=" + placeholderImage + " url=" + imageUrl);
}

void HeadlessAppWindow::removeLaunchView() {
  launchViewShown_ = false;
  record("launchView removed");
}

void HeadlessAppWindow::removeCachedImage(const std::string& url) { record("imageCache remove " + url); }

void HeadlessAppWindow::clearBadge() { record("badge cleared"); }

}  // namespace qmv
