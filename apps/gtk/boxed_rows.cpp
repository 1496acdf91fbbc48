#include "apps/gtk/boxed_rows.h"

#include <adwaita.h>

#include "apps/gtk/ui.h"

namespace qmv::gtk {

namespace {

constexpr const char* kBoxedActionKey = "qmv-action";
constexpr const char* kBoxedTargetKey = "qmv-target";

bool rowsMatch(const BoxedRow& a, const BoxedRow& b) {
  return a.texts == b.texts && a.action == b.action && a.target == b.target;
}

void setRowString(GtkWidget* row, const char* key, const std::optional<std::string>& value) {
  g_object_set_data_full(G_OBJECT(row), key, value ? g_strdup(value->c_str()) : nullptr, g_free);
}

// The row's action is read at the tap, so a row set again runs its new action.
void boxedRowActivated(AdwActionRow* row, gpointer) {
  const auto* action = static_cast<const char*>(g_object_get_data(G_OBJECT(row), kBoxedActionKey));
  if (action == nullptr) return;
  const auto* target = static_cast<const char*>(g_object_get_data(G_OBJECT(row), kBoxedTargetKey));
  if (target != nullptr) {
    gtk_widget_activate_action(GTK_WIDGET(row), action, "s", target);
  } else {
    gtk_widget_activate_action(GTK_WIDGET(row), action, nullptr);
  }
}

}  // namespace

BoxedRows::BoxedRows(const std::string& name, ImageLoader* pictures) : list_(ui::boxedList()), pictures_(pictures) {
  if (!name.empty()) list_->set_name(name);
}

void BoxedRows::assign(std::vector<BoxedRow> rows) {
  while (rows_.size() > rows.size()) {
    gtk_list_box_remove(list_->gobj(), rows_.back());
    rows_.pop_back();
    shown_.pop_back();
  }
  for (std::size_t i = 0; i < rows.size(); ++i) {
    if (i == rows_.size()) {
      GtkWidget* row = detail::newActionRow(pictures_);
      g_signal_connect(row, "activated", G_CALLBACK(boxedRowActivated), nullptr);
      gtk_list_box_append(list_->gobj(), row);
      rows_.push_back(row);
      shown_.emplace_back();
    } else if (rowsMatch(shown_[i], rows[i])) {
      continue;
    }
    Gtk::Widget* row = Glib::wrap(rows_[i]);
    detail::fillListActionRow(*row, rows[i].texts);
    setRowString(rows_[i], kBoxedActionKey, rows[i].action.empty() ? std::nullopt : std::optional(rows[i].action));
    setRowString(rows_[i], kBoxedTargetKey, rows[i].target);
    shown_[i] = std::move(rows[i]);
  }
}

}  // namespace qmv::gtk
