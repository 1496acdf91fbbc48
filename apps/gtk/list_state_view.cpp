#include "apps/gtk/list_state_view.h"

#include <adwaita.h>

#include "apps/gtk/gtk_texts.h"

namespace qmv::gtk {

ListStateView::ListStateView() : Gtk::Box(Gtk::Orientation::VERTICAL) {
  GtkWidget* page = adw_status_page_new();
  // Sized for a phone: the smaller icon and title.
  gtk_widget_add_css_class(page, "compact");
  page_ = Gtk::manage(Glib::wrap(page));
  page_->set_vexpand(true);
  auto* extras = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::VERTICAL, 12);
  extras->set_halign(Gtk::Align::CENTER);
  spinner_ = Gtk::make_managed<Gtk::Spinner>();
  spinner_->set_size_request(32, 32);
  extras->append(*spinner_);
  retry_ = Gtk::make_managed<Gtk::Button>(gtk_texts::kRetry);
  retry_->set_name("retry");
  retry_->add_css_class("pill");
  retry_->add_css_class("suggested-action");
  retry_->signal_clicked().connect([this] {
    if (retryAction_) retryAction_();
  });
  extras->append(*retry_);
  adw_status_page_set_child(ADW_STATUS_PAGE(page), GTK_WIDGET(extras->gobj()));
  append(*page_);
  set_vexpand(true);
  show(ScreenState{});
}

void ListStateView::show(const ScreenState& state) {
  using Kind = ScreenState::Kind;
  state_ = state;
  set_visible(state.kind != Kind::Content);
  auto* page = ADW_STATUS_PAGE(page_->gobj());
  adw_status_page_set_title(page, state.text.c_str());
  const char* icon = nullptr;
  const char* name = "content";
  switch (state.kind) {
    case Kind::Content:
      break;
    case Kind::Loading:
      name = "loading";
      break;
    case Kind::Empty:
      icon = "edit-find-symbolic";
      name = "empty";
      break;
    case Kind::Failed:
      icon = "network-offline-symbolic";
      name = "failed";
      break;
  }
  adw_status_page_set_icon_name(page, icon);
  set_name(name);
  const bool loading = state.kind == Kind::Loading;
  // A failure or an empty list hides what is behind it; loading lets the page show
  // through, as a form being sent stays in sight.
  if (loading) {
    remove_css_class("background");
  } else {
    add_css_class("background");
  }
  spinner_->set_visible(loading);
  // A spinning spinner costs frames even when hidden.
  if (loading) {
    spinner_->start();
  } else {
    spinner_->stop();
  }
  retry_->set_visible(state.retry && retryAction_ != nullptr);
}

}  // namespace qmv::gtk
