#pragma once
// Pull to refresh for any scrolled page: dragging (or flinging) the content down past its
// top runs the screen's own pull-down refresh. One pull refreshes once, however many
// overshoot events the drag sends.
#include <gtkmm.h>

#include <functional>

namespace qmv::gtk {

void addPullToRefresh(Gtk::ScrolledWindow& scroller, std::function<void()> refresh);

}  // namespace qmv::gtk
