#pragma once
// The one view every page shows in place of its rows when it has none to show: a spinner
// with the loading text, the list's empty sentence, or a failure's reason with a retry
// button. It hides itself while the rows show. Its widget name says which state it is
// in ("loading", "empty", "failed"), so that a page's tests can find it.
#include <gtkmm.h>

#include <functional>
#include <string>

#include "core/session/screen_state.h"

namespace qmv::gtk {

class ListStateView : public Gtk::Box {
 public:
  ListStateView();

  void show(const ScreenState& state);
  // What the retry button runs; without it the button stays hidden.
  void setRetry(std::function<void()> retry) { retryAction_ = std::move(retry); }
  // The retry button's text ("重试" unless told).
  void setRetryLabel(const std::string& label) { retry_->set_label(label); }
  const ScreenState& state() const { return state_; }

 private:
  Gtk::Widget* page_ = nullptr;  // the AdwStatusPage
  Gtk::Spinner* spinner_ = nullptr;
  Gtk::Button* retry_ = nullptr;
  ScreenState state_;
  std::function<void()> retryAction_;
};

}  // namespace qmv::gtk
