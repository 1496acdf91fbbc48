#include "apps/gtk/dialog_alerts.h"

#include <adwaita.h>

#include <algorithm>
#include <string>

namespace qmv::gtk {

struct DialogAlerts::Open {
  DialogAlerts* owner;
  AlertSpec shown;
  Choice choice;
  GtkWidget* dialog;
  std::vector<GtkWidget*> entries;
};

DialogAlerts::~DialogAlerts() {
  for (Open* open : open_) {
    g_signal_handlers_disconnect_by_data(open->dialog, open);
    gtk_window_destroy(GTK_WINDOW(open->dialog));
    delete open;
  }
}

void DialogAlerts::show(const AlertSpec& alert, Choice choice) {
  GtkWidget* dialog = adw_message_dialog_new(parent_, alert.title.empty() ? nullptr : alert.title.c_str(),
                                             alert.message.empty() ? nullptr : alert.message.c_str());
  auto* open = new Open{this, alert, std::move(choice), dialog, {}};
  for (std::size_t i = 0; i < alert.buttons.size(); ++i) {
    const std::string id = std::to_string(i);
    adw_message_dialog_add_response(ADW_MESSAGE_DIALOG(dialog), id.c_str(), alert.buttons[i].c_str());
  }
  if (alert.buttons.size() > 1) {
    // The last button is the one that goes on, as on the phone.
    const std::string last = std::to_string(alert.buttons.size() - 1);
    adw_message_dialog_set_response_appearance(ADW_MESSAGE_DIALOG(dialog), last.c_str(), ADW_RESPONSE_SUGGESTED);
    adw_message_dialog_set_default_response(ADW_MESSAGE_DIALOG(dialog), last.c_str());
  }
  if (!alert.textFields.empty()) {
    GtkWidget* box = gtk_box_new(GTK_ORIENTATION_VERTICAL, 6);
    for (const std::string& placeholder : alert.textFields) {
      GtkWidget* entry = gtk_entry_new();
      gtk_entry_set_placeholder_text(GTK_ENTRY(entry), placeholder.c_str());
      gtk_box_append(GTK_BOX(box), entry);
      open->entries.push_back(entry);
    }
    adw_message_dialog_set_extra_child(ADW_MESSAGE_DIALOG(dialog), box);
  }
  g_signal_connect(dialog, "response", G_CALLBACK(+[](AdwMessageDialog*, const char* response, gpointer data) {
                     auto* open = static_cast<Open*>(data);
                     const std::string text = response != nullptr ? response : "";
                     const bool digits = !text.empty() && text.size() < 4 &&
                                         text.find_first_not_of("0123456789") == std::string::npos;
                     const int index = digits ? std::stoi(text) : -1;
                     open->owner->respond(open, index);
                   }),
                   open);
  open_.push_back(open);
  gtk_window_present(GTK_WINDOW(dialog));
}

void DialogAlerts::respond(Open* open, int index) {
  auto it = std::find(open_.begin(), open_.end(), open);
  if (it == open_.end()) return;
  open_.erase(it);
  AlertAnswer answer{index, {}};
  for (GtkWidget* entry : open->entries) answer.fieldTexts.emplace_back(gtk_editable_get_text(GTK_EDITABLE(entry)));
  // "close" (Escape) is not one of the core's buttons: the alert is dropped unanswered.
  const bool known = index >= 0 && index < static_cast<int>(open->shown.buttons.size());
  Choice choice = std::move(open->choice);
  g_signal_handlers_disconnect_by_data(open->dialog, open);
  gtk_window_destroy(GTK_WINDOW(open->dialog));
  delete open;
  if (known && choice) choice(answer);
}

std::vector<AlertSpec> DialogAlerts::open() const {
  std::vector<AlertSpec> alerts;
  for (const Open* open : open_) alerts.push_back(open->shown);
  return alerts;
}

bool DialogAlerts::answer(const std::string& button) {
  if (open_.empty()) return false;
  Open* open = open_.front();
  const auto& buttons = open->shown.buttons;
  const auto it = std::find(buttons.begin(), buttons.end(), button);
  if (it == buttons.end()) return false;
  respond(open, static_cast<int>(it - buttons.begin()));
  return true;
}

}  // namespace qmv::gtk
