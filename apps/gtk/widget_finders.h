#pragma once
// Reading and tapping what a page shows, as the tests and the screenshot tool do. Texts,
// buttons and rows count only when shown (not hidden, not on a stack page out of
// sight); findNamed finds any widget by its name. Only realised widgets are seen: a list
// view draws the rows in sight, so a row further down is reached through the page's
// actions (page.open-row) or its model instead.
#include <gtkmm.h>

#include <string>
#include <vector>

namespace qmv::gtk::finders {

// The texts of every label (and button) below `root`, in tree order.
std::vector<std::string> texts(Gtk::Widget& root);
// Whether some label or button below `root` shows exactly `text`.
bool shows(Gtk::Widget& root, const std::string& text);
// The first button below `root` whose label is `text`; null when none.
Gtk::Button* findButton(Gtk::Widget& root, const std::string& text);
// Taps the first tappable row below `root` titled `title`; false when there is none.
bool activateRow(Gtk::Widget& root, const std::string& title);
// The first widget below `root` with that widget name; null when none.
Gtk::Widget* findNamed(Gtk::Widget& root, const std::string& name);

}  // namespace qmv::gtk::finders
