#include "apps/gtk/screen_page.h"

#include <adwaita.h>

#include "apps/gtk/gtk_texts.h"
#include "apps/gtk/page_context.h"
#include "apps/gtk/page_navigator.h"
#include "apps/gtk/pull_refresh.h"
#include "apps/gtk/ui.h"
#include "core/session/base_view_controller.h"

namespace qmv::gtk {

namespace {

// The body's reading width, and where the clamp starts narrowing its margins (libadwaita's
// own default).
constexpr int kReadingWidth = 640;
constexpr int kReadingThreshold = 400;

}  // namespace

ScreenPage::ScreenPage(PageContext& context, const std::string& title, bool withBack)
    : Gtk::Box(Gtk::Orientation::VERTICAL), context_(context) {
  GtkWidget* header = adw_header_bar_new();
  title_ = Glib::wrap(adw_window_title_new(title.c_str(), nullptr));
  adw_header_bar_set_title_widget(ADW_HEADER_BAR(header), GTK_WIDGET(title_->gobj()));
  if (withBack) {
    auto* back = Gtk::make_managed<Gtk::Button>();
    back->set_icon_name("go-previous-symbolic");
    ui::nameIcon(*back, gtk_texts::kBack);
    back->set_name("back");
    back->signal_clicked().connect([this] { goBack(); });
    adw_header_bar_pack_start(ADW_HEADER_BAR(header), GTK_WIDGET(back->gobj()));
  }
  header_ = Glib::wrap(header);
  append(*header_);

  body_.set_margin(12);
  auto* clamp = adw_clamp_new();
  adw_clamp_set_maximum_size(ADW_CLAMP(clamp), kReadingWidth);
  adw_clamp_set_tightening_threshold(ADW_CLAMP(clamp), kReadingThreshold);
  adw_clamp_set_child(ADW_CLAMP(clamp), GTK_WIDGET(body_.gobj()));
  clamp_ = Glib::wrap(clamp);
  scroller_.set_child(*clamp_);
  scroller_.set_policy(Gtk::PolicyType::NEVER, Gtk::PolicyType::AUTOMATIC);
  scroller_.set_vexpand(true);
  scroller_.set_name("page-scroller");
  overlay_.set_child(scroller_);

  // A retry is the page's own reload. A page without one (a form) only lets the member
  // read why, then gives him the page back.
  state_.setRetry([this] {
    if (auto refresh = actions_->lookup_action("refresh")) {
      if (refresh->get_enabled()) refresh->activate();
    } else {
      state_.show({});
    }
  });
  overlay_.add_overlay(state_);
  overlay_.set_vexpand(true);
  append(overlay_);
  insert_action_group("page", actions_);

  // Ctrl+R reloads the page the member sees; a page under it lets the key go on.
  auto shortcuts = Gtk::ShortcutController::create();
  shortcuts->set_scope(Gtk::ShortcutScope::GLOBAL);
  shortcuts->add_shortcut(Gtk::Shortcut::create(
      Gtk::KeyvalTrigger::create(GDK_KEY_r, Gdk::ModifierType::CONTROL_MASK),
      Gtk::CallbackAction::create([this](Gtk::Widget&, const Glib::VariantBase&) {
        auto refresh = actions_->lookup_action("refresh");
        if (!get_mapped() || !refresh || !refresh->get_enabled()) return false;
        refresh->activate();
        return true;
      })));
  // Escape and Alt+Left go back as the button does, from the page the member sees. A
  // message dialog is a window of its own and keeps its Escape; the picture browser is no
  // such page and closes on its own.
  if (withBack) {
    for (const auto& [key, modifiers] :
         {std::pair{GDK_KEY_Escape, Gdk::ModifierType(0)}, std::pair{GDK_KEY_Left, Gdk::ModifierType::ALT_MASK}}) {
      shortcuts->add_shortcut(
          Gtk::Shortcut::create(Gtk::KeyvalTrigger::create(key, modifiers),
                                Gtk::CallbackAction::create([this](Gtk::Widget&, const Glib::VariantBase&) {
                                  if (!get_mapped()) return false;
                                  goBack();
                                  return true;
                                })));
    }
  }
  add_controller(shortcuts);
}

// The followed screen is not touched here: a page that owns its screen has destroyed it
// already.
ScreenPage::~ScreenPage() { pendingRefresh_.disconnect(); }

void ScreenPage::moved() {
  // GTK 4.8 leaves the page's buttons and rows looking at its actions as they were before
  // the move, all disabled: the page's group is offered to them again.
  remove_action_group("page");
  insert_action_group("page", actions_);
}

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

Gtk::Button* ScreenPage::submitButton(const std::string& label, std::function<void()> submit) {
  auto* button = Gtk::make_managed<Gtk::Button>(label);
  button->set_name("submit");
  button->add_css_class("suggested-action");
  button->signal_clicked().connect([this, submit = std::move(submit)] {
    submit();
    refreshSoon();
  });
  return button;
}

void ScreenPage::addHeaderButton(Gtk::Widget& widget) {
  adw_header_bar_pack_end(ADW_HEADER_BAR(header_->gobj()), GTK_WIDGET(widget.gobj()));
}

void ScreenPage::goBack() {
  if (backAction_) {
    backAction_();
  } else {
    activate_action("win.back");
  }
}

void ScreenPage::setBackAction(std::function<void()> back) {
  backAction_ = std::move(back);
}

void ScreenPage::fillPage() {
  scroller_.set_policy(Gtk::PolicyType::NEVER, Gtk::PolicyType::NEVER);
  body_.set_margin(0);
  body_.set_vexpand(true);
}

void ScreenPage::fillWidth(bool fill) {
  const int width = fill ? G_MAXINT / 2 : kReadingWidth;
  if (adw_clamp_get_maximum_size(ADW_CLAMP(clamp_->gobj())) == width) return;
  adw_clamp_set_maximum_size(ADW_CLAMP(clamp_->gobj()), width);
  adw_clamp_set_tightening_threshold(ADW_CLAMP(clamp_->gobj()), fill ? width : kReadingThreshold);
}

void ScreenPage::pullToRefresh(std::function<void()> refresh) {
  addAction("refresh", std::move(refresh));
  addPullToRefresh(scroller_, [this] { activate_action("page.refresh"); });
}

void ScreenPage::addAction(const std::string& name, std::function<void()> activated) {
  actions_->add_action(name, [activated = std::move(activated)] { activated(); });
}

void ScreenPage::addAction(const std::string& name, const Glib::VariantType& type,
                           std::function<void(const Glib::VariantBase&)> activated) {
  actions_->add_action_with_parameter(name, type, [activated = std::move(activated)](const Glib::VariantBase& v) {
    activated(v);
  });
}

void ScreenPage::setActionEnabled(const std::string& name, bool enabled) {
  if (auto action = std::dynamic_pointer_cast<Gio::SimpleAction>(actions_->lookup_action(name))) {
    action->set_enabled(enabled);
  }
}

void ScreenPage::setList(Gtk::ListView& list) {
  // The body's clamp moves above the scroller; it must survive leaving it.
  g_object_ref(clamp_->gobj());
  GtkWidget* viewport = gtk_widget_get_parent(clamp_->gobj());
  if (GTK_IS_VIEWPORT(viewport)) gtk_viewport_set_child(GTK_VIEWPORT(viewport), nullptr);
  scroller_.unset_child();
  overlay_.unset_child();
  // The state view moves with the rows: the body above them (tabs, a filter) stays usable.
  overlay_.remove_overlay(state_);
  auto* column = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::VERTICAL);
  column->append(*clamp_);
  g_object_unref(clamp_->gobj());
  body_.set_margin_bottom(0);
  GtkWidget* listClamp = adw_clamp_scrollable_new();
  adw_clamp_scrollable_set_maximum_size(ADW_CLAMP_SCROLLABLE(listClamp), 640);
  adw_clamp_scrollable_set_child(ADW_CLAMP_SCROLLABLE(listClamp), GTK_WIDGET(list.gobj()));
  list.set_margin_start(12);
  list.set_margin_end(12);
  scroller_.set_child(*Gtk::manage(Glib::wrap(listClamp)));
  auto* rowsArea = Gtk::make_managed<Gtk::Overlay>();
  rowsArea->set_child(scroller_);
  rowsArea->add_overlay(state_);
  rowsArea->set_vexpand(true);
  column->append(*rowsArea);
  auto* footerClamp = adw_clamp_new();
  adw_clamp_set_maximum_size(ADW_CLAMP(footerClamp), 640);
  adw_clamp_set_child(ADW_CLAMP(footerClamp), GTK_WIDGET(footer_.gobj()));
  column->append(*Gtk::manage(Glib::wrap(footerClamp)));
  overlay_.set_child(*column);
}

void ScreenPage::follow(BaseViewController& screen) {
  screen_ = &screen;
  screen.onChange = [this, alive = std::weak_ptr<bool>(alive_)] {
    if (!alive.expired()) coverChanged();
  };
}

void ScreenPage::coverChanged() {
  drawState();
  // Loading starts and ends inside taps and request callbacks alike.
  refreshSoon();
}

void ScreenPage::showListState(bool hasRows, bool ended, const std::string& emptyText) {
  list_ = ListFacts{hasRows, ended, emptyText};
  drawState();
}

void ScreenPage::drawState() {
  if (screen_ == nullptr) return;
  state_.setRetryLabel(actions_->lookup_action("refresh") ? gtk_texts::kRetry : gtk_texts::kUnderstood);
  state_.show(list_ ? screenStateOf(*screen_, list_->hasRows, list_->ended, list_->emptyText)
                    : screenStateOf(*screen_, screen_->hasData(), false, ""));
}

}  // namespace qmv::gtk
