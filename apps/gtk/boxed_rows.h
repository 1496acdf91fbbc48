#pragma once
// A short boxed list of action rows that a page builds once and sets again on every
// redraw: rows keep their widgets by position and a row whose texts and action stay is
// not touched, so a redraw with the same data leaves the list, its focus and a row the
// member is about to tap as they were. For lists too short to need a list view's
// recycling (a store's offers, the home sections).
#include <gtkmm.h>

#include <optional>
#include <string>
#include <vector>

#include "apps/gtk/row_list.h"

namespace qmv::gtk {

// One row: what it shows and, when activatable, the page action a tap runs (with its
// string target when given).
struct BoxedRow {
  RowTexts texts;
  std::string action;
  std::optional<std::string> target;
};

class BoxedRows {
 public:
  // With `pictures`, each row shows its texts' thumbnail in front.
  explicit BoxedRows(const std::string& name = "", ImageLoader* pictures = nullptr);
  Gtk::ListBox& widget() { return *list_; }
  std::size_t size() const { return shown_.size(); }

  void assign(std::vector<BoxedRow> rows);

 private:
  Gtk::ListBox* list_;
  ImageLoader* pictures_;
  std::vector<BoxedRow> shown_;
  std::vector<GtkWidget*> rows_;  // owned by list_
};

}  // namespace qmv::gtk
