#include "apps/gtk/screen_page.h"

#include <adwaita.h>

#include "apps/gtk/gtk_texts.h"
#include "apps/gtk/page_context.h"
#include "apps/gtk/page_navigator.h"
#include "apps/gtk/pull_refresh.h"
#include "core/session/base_view_controller.h"

namespace qmv::gtk {

ScreenPage::ScreenPage(PageContext& context, const std::string& title, bool withBack)
    : Gtk::Box(Gtk::Orientation::VERTICAL), context_(context) {
  GtkWidget* header = adw_header_bar_new();
  title_ = Glib::wrap(adw_window_title_new(title.c_str(), nullptr));
  adw_header_bar_set_title_widget(ADW_HEADER_BAR(header), GTK_WIDGET(title_->gobj()));
  if (withBack) {
    auto* back = Gtk::make_managed<Gtk::Button>();
    back->set_icon_name("go-previous-symbolic");
    back->set_tooltip_text(gtk_texts::kBack);
    back->set_name("back");
    back->signal_clicked().connect([this] {
      if (backAction_) {
        backAction_();
      } else {
        activate_action("win.back");
      }
    });
    adw_header_bar_pack_start(ADW_HEADER_BAR(header), GTK_WIDGET(back->gobj()));
  }
  header_ = Glib::wrap(header);
  append(*header_);

  body_.set_margin(12);
  auto* clamp = adw_clamp_new();
  adw_clamp_set_maximum_size(ADW_CLAMP(clamp), 640);
  adw_clamp_set_child(ADW_CLAMP(clamp), GTK_WIDGET(body_.gobj()));
  scroller_.set_child(*Glib::wrap(clamp));
  scroller_.set_policy(Gtk::PolicyType::NEVER, Gtk::PolicyType::AUTOMATIC);
  scroller_.set_vexpand(true);
  scroller_.set_name("page-scroller");
  overlay_.set_child(scroller_);

  // The loading view: a spinner and the loading text on the page's background.
  cover_.set_valign(Gtk::Align::CENTER);
  cover_.set_halign(Gtk::Align::CENTER);
  auto* spinner = Gtk::make_managed<Gtk::Spinner>();
  spinner->set_size_request(32, 32);
  spinner->start();
  cover_.append(*spinner);
  auto* loading = Gtk::make_managed<Gtk::Label>(BaseViewController::kLoadingText);
  loading->add_css_class("dim-label");
  cover_.append(*loading);
  cover_.set_name("loading");
  cover_.set_visible(false);
  overlay_.add_overlay(cover_);
  overlay_.set_vexpand(true);
  append(overlay_);
}

// The followed screen is not touched here: a page that owns its screen has destroyed it
// already.
ScreenPage::~ScreenPage() { pendingRefresh_.disconnect(); }

void ScreenPage::setTitle(const std::string& title) {
  adw_window_title_set_title(ADW_WINDOW_TITLE(title_->gobj()), title.c_str());
}

void ScreenPage::refreshSoon() {
  if (pendingRefresh_.connected()) return;
  pendingRefresh_ = Glib::signal_idle().connect([this] {
    refresh();
    return false;
  });
}

void ScreenPage::addHeaderButton(Gtk::Widget& widget) {
  adw_header_bar_pack_end(ADW_HEADER_BAR(header_->gobj()), GTK_WIDGET(widget.gobj()));
}

void ScreenPage::setBackAction(std::function<void()> back) {
  backAction_ = std::move(back);
}

void ScreenPage::fillPage() {
  scroller_.set_policy(Gtk::PolicyType::NEVER, Gtk::PolicyType::NEVER);
  body_.set_margin(0);
  body_.set_vexpand(true);
}

void ScreenPage::pullToRefresh(std::function<void()> refresh) { addPullToRefresh(scroller_, std::move(refresh)); }

void ScreenPage::follow(BaseViewController& screen) {
  screen_ = &screen;
  screen.onChange = [this, alive = std::weak_ptr<bool>(alive_)] {
    if (!alive.expired()) coverChanged();
  };
}

void ScreenPage::coverChanged() {
  cover_.set_visible(screen_->isLoadingShown());
  if (warning_ != nullptr) {
    overlay_.remove_overlay(*warning_);
    warning_ = nullptr;
  }
  const auto warning = screen_->warning();
  if (warning != BaseViewController::Warning::None) {
    GtkWidget* status = adw_status_page_new();
    const bool noNetwork = warning == BaseViewController::Warning::NoNetwork;
    adw_status_page_set_icon_name(ADW_STATUS_PAGE(status),
                                  noNetwork ? "network-offline-symbolic" : "edit-find-symbolic");
    // Pictures only: the core shows no text with either view.
    gtk_widget_set_name(status, noNetwork ? BaseViewController::kNoNetworkImage : "no-data");
    warning_ = Gtk::manage(Glib::wrap(status));
    overlay_.add_overlay(*warning_);
  }
  // Loading starts and ends inside taps and request callbacks alike.
  refreshSoon();
}

}  // namespace qmv::gtk

