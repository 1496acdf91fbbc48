#pragma once
// Alerts as libadwaita message dialogs over the window: one response per button, in the
// core's order, and an entry per text field. Answered dialogs close; a dialog the
// window drops unanswered never calls back. Tests answer the open dialog by button
// title through answer().
#include <string>
#include <vector>

#include "platform/alerts.h"

typedef struct _GtkWindow GtkWindow;
typedef struct _GtkWidget GtkWidget;

namespace qmv::gtk {

class DialogAlerts : public Alerts {
 public:
  ~DialogAlerts() override;
  void attach(GtkWindow* parent) { parent_ = parent; }
  void show(const AlertSpec& alert, Choice choice) override;

  // The alerts still open, oldest first.
  std::vector<AlertSpec> open() const;
  // Answers the oldest open alert with the button titled `button`; false when there is
  // none or it has no such button.
  bool answer(const std::string& button);

 private:
  struct Open;
  void respond(Open* open, int index);

  GtkWindow* parent_ = nullptr;
  std::vector<Open*> open_;
};

}  // namespace qmv::gtk
