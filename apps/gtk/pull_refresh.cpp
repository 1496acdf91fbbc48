#include "apps/gtk/pull_refresh.h"

#include <memory>

namespace qmv::gtk {

namespace {

// A drag sends overshoot events for as long as it is held past the edge; these count as
// the same pull.
constexpr gint64 kSamePullMicroseconds = 800'000;

}  // namespace

void addPullToRefresh(Gtk::ScrolledWindow& scroller, std::function<void()> refresh) {
  auto last = std::make_shared<gint64>(0);
  scroller.signal_edge_overshot().connect([refresh = std::move(refresh), last](Gtk::PositionType position) {
    if (position != Gtk::PositionType::TOP) return;
    const gint64 now = g_get_monotonic_time();
    const bool samePull = *last != 0 && now - *last < kSamePullMicroseconds;
    *last = now;
    if (!samePull) refresh();
  });
}

}  // namespace qmv::gtk
