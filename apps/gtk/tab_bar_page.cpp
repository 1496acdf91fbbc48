#include "apps/gtk/tab_bar_page.h"

#include <adwaita.h>

#include "apps/gtk/gtk_texts.h"
#include "apps/gtk/home_page.h"
#include "apps/gtk/member_pages.h"
#include "apps/gtk/nearby_page.h"
#include "apps/gtk/ui.h"
#include "apps/gtk/web_page_view.h"
#include "shell/qx_h5_view_controller.h"
#include "shell/tab_bar_view_controller.h"

namespace qmv::gtk {

namespace {

// The community page: the tab bar's own page host, made when the tab is first chosen.
class CommunityPage : public ScreenPage {
 public:
  CommunityPage(PageContext& context, TabBarViewController& tabBar) : ScreenPage(context, "", false), tabBar_(tabBar) {
    fillPage();
    body().append(view_);
    // The page scrolls inside the web view, where no pull reaches this page: its
    // pull-down refresh is a button.
    auto* reload = Gtk::make_managed<Gtk::Button>();
    reload->set_icon_name("view-refresh-symbolic");
    reload->set_name("reload");
    ui::nameIcon(*reload, gtk_texts::kRefresh);
    reload->signal_clicked().connect([this] {
      if (QXH5ViewController* community = tabBar_.communityViewController()) community->refreshAction();
    });
    addHeaderButton(*reload);
    signal_map().connect([this] { refreshSoon(); });
  }
  void refresh() override {
    QXH5ViewController* community = tabBar_.communityViewController();
    if (community == nullptr) return;
    if (!view_.attached()) {
      follow(*community);
      view_.attach(*community);
    }
    // Shown again after a sign-in or sign-out elsewhere: the page must not greet the
    // member before.
    community->followSession();
    view_.refresh();
  }

 private:
  TabBarViewController& tabBar_;
  WebPageView view_;
};

constexpr const char* kTabIcons[] = {"go-home-symbolic", "mark-location-symbolic", "qmv-wallet-symbolic",
                                     "system-users-symbolic", "avatar-default-symbolic"};

}  // namespace

TabBarPage::TabBarPage(PageContext& context, TabBarViewController& tabBar, std::shared_ptr<NearbyViewController> nearby)
    : Gtk::Box(Gtk::Orientation::VERTICAL), context_(context), tabBar_(tabBar), nearby_(std::move(nearby)),
      stack_(ADW_VIEW_STACK(adw_view_stack_new())) {
  // Held until the handler below is gone: the stack may be disposed with the window
  // before this page's destructor runs.
  g_object_ref_sink(stack_);
  for (std::size_t i = 0; i < kTabCount; ++i) {
    const std::string name = "tab" + std::to_string(i);
    slots_[i] = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::VERTICAL);
    AdwViewStackPage* page = adw_view_stack_add_titled(stack_, GTK_WIDGET(slots_[i]->gobj()), name.c_str(),
                                                       TabBarViewController::kTabTitles[i]);
    adw_view_stack_page_set_icon_name(page, kTabIcons[i]);
  }
  gtk_widget_set_vexpand(GTK_WIDGET(stack_), TRUE);
  append(*Glib::wrap(GTK_WIDGET(stack_)));
  GtkWidget* bar = adw_view_switcher_bar_new();
  adw_view_switcher_bar_set_stack(ADW_VIEW_SWITCHER_BAR(bar), stack_);
  adw_view_switcher_bar_set_reveal(ADW_VIEW_SWITCHER_BAR(bar), TRUE);
  append(*Glib::wrap(bar));

  g_signal_connect(stack_, "notify::visible-child-name", G_CALLBACK(+[](GObject*, GParamSpec*, gpointer data) {
                     auto* self = static_cast<TabBarPage*>(data);
                     const int index = self->selected();
                     if (index < 0) return;
                     self->tab(index);
                     if (self->onTabShown) self->onTabShown();
                     if (index != self->tabBar_.selectedIndex()) self->tabBar_.selectItem(index);
                   }),
                   this);
  tabBar_.onSelect = [this](int index) { select(index); };
  select(tabBar_.selectedIndex());
}

ScreenPage& TabBarPage::tab(int index) {
  const auto i = static_cast<std::size_t>(index);
  if (tabs_.at(i) != nullptr) return *tabs_[i];
  ScreenPage* page = nullptr;
  switch (i) {
    case 0: page = Gtk::make_managed<HomePage>(context_); break;
    case 1: page = Gtk::make_managed<NearbyPage>(context_, nearby_); break;
    case 2: page = Gtk::make_managed<WealthPage>(context_); break;
    case 3: page = Gtk::make_managed<CommunityPage>(context_, tabBar_); break;
    default: page = Gtk::make_managed<MinePage>(context_); break;
  }
  page->setTitle(TabBarViewController::kTabTitles[i]);
  page->set_vexpand(true);
  slots_[i]->append(*page);
  tabs_[i] = page;
  return *page;
}

TabBarPage::~TabBarPage() {
  tabBar_.onSelect = nullptr;
  g_signal_handlers_disconnect_by_data(stack_, this);
  g_object_unref(stack_);
}

void TabBarPage::select(int index) {
  if (index < 0 || index >= static_cast<int>(kTabCount)) return;
  tab(index);
  const std::string name = "tab" + std::to_string(index);
  adw_view_stack_set_visible_child_name(stack_, name.c_str());
}

int TabBarPage::selected() const {
  const char* name = adw_view_stack_get_visible_child_name(stack_);
  if (name == nullptr || std::string_view(name).substr(0, 3) != "tab") return -1;
  return std::atoi(name + 3);
}

void TabBarPage::appeared() {
  const int index = selected();
  if (index >= 0) tab(index).refresh();
}

}  // namespace qmv::gtk
