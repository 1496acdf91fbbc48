#include "apps/gtk/toast_status_overlay.h"

#include <adwaita.h>

#include <algorithm>

namespace qmv::gtk {

namespace {

// Seconds a note stays: two for a short one, as the phone's overlay, and longer for a
// long one, which takes longer to read.
guint secondsFor(const std::string& status) {
  const glong characters = g_utf8_strlen(status.c_str(), static_cast<gssize>(status.size()));
  return static_cast<guint>(std::clamp<glong>(2 + characters / 10, 2, 6));
}

}  // namespace

void ToastStatusOverlay::showImage(const std::string&, const std::string& status) {
  if (status.empty()) return;
  shown_.push_back(status);
  if (shown_.size() > 50) shown_.erase(shown_.begin());
  if (overlay_ == nullptr) return;
  AdwToast* toast = adw_toast_new("");
  // A toast's own title is one line, cut short on a phone's width; the note is read
  // whole, wrapped over as many lines as it needs. Not markup: a server's text is shown
  // as it came.
  GtkWidget* title = gtk_label_new(status.c_str());
  gtk_label_set_wrap(GTK_LABEL(title), TRUE);
  gtk_label_set_wrap_mode(GTK_LABEL(title), PANGO_WRAP_WORD_CHAR);
  gtk_label_set_max_width_chars(GTK_LABEL(title), 24);
  gtk_label_set_justify(GTK_LABEL(title), GTK_JUSTIFY_CENTER);
  gtk_widget_add_css_class(title, "heading");
  gtk_widget_set_name(title, "toast-text");
  adw_toast_set_custom_title(toast, title);
  adw_toast_set_timeout(toast, secondsFor(status));
  adw_toast_overlay_add_toast(overlay_, toast);
}

}  // namespace qmv::gtk
