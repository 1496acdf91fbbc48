#include "apps/gtk/widget_finders.h"

#include <adwaita.h>

namespace qmv::gtk::finders {

namespace {

// Hidden widgets and the stack pages not on show.
bool drawn(Gtk::Widget& widget) { return widget.get_visible() && widget.get_child_visible(); }

void collect(Gtk::Widget& widget, std::vector<std::string>& out) {
  if (!drawn(widget)) return;
  if (auto* l = dynamic_cast<Gtk::Label*>(&widget)) {
    if (!l->get_text().empty()) out.push_back(l->get_text());
  }
  GtkWidget* w = widget.gobj();
  if (ADW_IS_PREFERENCES_ROW(w)) {
    const char* title = adw_preferences_row_get_title(ADW_PREFERENCES_ROW(w));
    if (title != nullptr && *title != '\0') out.emplace_back(title);
  }
  if (ADW_IS_ACTION_ROW(w)) {
    const char* subtitle = adw_action_row_get_subtitle(ADW_ACTION_ROW(w));
    if (subtitle != nullptr && *subtitle != '\0') out.emplace_back(subtitle);
  }
  for (Gtk::Widget* child = widget.get_first_child(); child != nullptr; child = child->get_next_sibling()) {
    collect(*child, out);
  }
}

template <typename Match>
Gtk::Widget* find(Gtk::Widget& widget, const Match& match) {
  if (match(widget)) return &widget;
  for (Gtk::Widget* child = widget.get_first_child(); child != nullptr; child = child->get_next_sibling()) {
    if (Gtk::Widget* found = find(*child, match)) return found;
  }
  return nullptr;
}

// Drawn, and so is every widget above it.
bool shown(Gtk::Widget& widget) {
  for (Gtk::Widget* w = &widget; w != nullptr; w = w->get_parent()) {
    if (!drawn(*w)) return false;
  }
  return true;
}

}  // namespace

std::vector<std::string> texts(Gtk::Widget& root) {
  std::vector<std::string> out;
  collect(root, out);
  return out;
}

bool shows(Gtk::Widget& root, const std::string& text) {
  for (const auto& t : texts(root)) {
    if (t == text) return true;
  }
  return false;
}

Gtk::Button* findButton(Gtk::Widget& root, const std::string& text) {
  return static_cast<Gtk::Button*>(find(root, [&text](Gtk::Widget& w) {
    auto* b = dynamic_cast<Gtk::Button*>(&w);
    if (b == nullptr || !shown(w)) return false;
    // A button with an icon beside its words carries them in its content.
    GtkWidget* child = gtk_button_get_child(b->gobj());
    if (child != nullptr && ADW_IS_BUTTON_CONTENT(child)) {
      const char* words = adw_button_content_get_label(ADW_BUTTON_CONTENT(child));
      return words != nullptr && text == words;
    }
    return b->get_label().raw() == text;
  }));
}

bool activateRow(Gtk::Widget& root, const std::string& title) {
  Gtk::Widget* found = find(root, [&title](Gtk::Widget& w) {
    GtkWidget* raw = w.gobj();
    if (!ADW_IS_ACTION_ROW(raw) || !gtk_list_box_row_get_activatable(GTK_LIST_BOX_ROW(raw)) || !shown(w)) return false;
    const char* t = adw_preferences_row_get_title(ADW_PREFERENCES_ROW(raw));
    return t != nullptr && title == t;
  });
  if (found == nullptr) return false;
  adw_action_row_activate(ADW_ACTION_ROW(found->gobj()));
  return true;
}

Gtk::Widget* findNamed(Gtk::Widget& root, const std::string& name) {
  return find(root, [&name](Gtk::Widget& w) { return w.get_name().raw() == name; });
}

}  // namespace qmv::gtk::finders
