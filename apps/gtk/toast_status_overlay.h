#pragma once
// The status overlay as libadwaita toasts: each note the core shows becomes a toast of
// the window's toast overlay, for about as long as the phone's overlay showed it (longer
// when it is long), its text wrapped rather than cut. The last texts are kept so that
// tests can read what was said.
#include <string>
#include <vector>

#include "platform/status_overlay.h"

typedef struct _AdwToastOverlay AdwToastOverlay;

namespace qmv::gtk {

class ToastStatusOverlay : public StatusOverlay {
 public:
  // `overlay` may be null until the window exists; notes are then only kept.
  void attach(AdwToastOverlay* overlay) { overlay_ = overlay; }
  void showImage(const std::string& image, const std::string& status) override;

  const std::vector<std::string>& shown() const { return shown_; }

 private:
  AdwToastOverlay* overlay_ = nullptr;
  std::vector<std::string> shown_;
};

}  // namespace qmv::gtk
