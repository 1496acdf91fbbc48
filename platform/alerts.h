#pragma once
// Alerts and action sheets with buttons and optional text fields. The answer comes back
// later through the choice callback, never from inside show().
#include <functional>
#include <string>
#include <vector>

namespace qmv {

struct AlertSpec {
  std::string title;
  std::string message;
  std::vector<std::string> buttons;
  // Placeholders of the text fields, in order; empty for a plain alert.
  std::vector<std::string> textFields;
};

struct AlertAnswer {
  int buttonIndex = 0;                  // index into AlertSpec::buttons
  std::vector<std::string> fieldTexts;  // one text per text field
};

class Alerts {
 public:
  using Choice = std::function<void(const AlertAnswer& answer)>;

  virtual ~Alerts() = default;

  // Shows the alert; `choice` is called once on the interface thread when the user
  // answers, or never when the alert is dropped unanswered. REQUIRES: interface thread.
  virtual void show(const AlertSpec& alert, Choice choice) = 0;
};

}  // namespace qmv
