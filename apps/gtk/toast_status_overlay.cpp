#include "apps/gtk/toast_status_overlay.h"

#include <adwaita.h>

namespace qmv::gtk {

void ToastStatusOverlay::showImage(const std::string&, const std::string& status) {
  if (status.empty()) return;
  shown_.push_back(status);
  if (shown_.size() > 50) shown_.erase(shown_.begin());
  if (overlay_ == nullptr) return;
  AdwToast* toast = adw_toast_new(status.c_str());
  adw_toast_set_timeout(toast, 2);
  adw_toast_overlay_add_toast(overlay_, toast);
}

}  // namespace qmv::gtk
