#include "apps/gtk/contact_pages.h"

#include "apps/gtk/ui.h"

namespace qmv::gtk {

namespace {

// The rows of `list` as `cellAt` draws them; `selected` (when given) makes them tappable.
template <typename Screen>
void appendContacts(Gtk::Box& body, Screen& screen, std::function<void(std::size_t)> selected) {
  if (screen.contactList.empty()) return;
  auto* list = ui::boxedList();
  list->set_name("contacts");
  for (std::size_t i = 0; i < screen.contactList.size(); ++i) {
    const ContactCell cell = screen.cellAt(i);
    std::function<void()> tap;
    if (selected) tap = [selected, i] { selected(i); };
    ui::addRow(*list, cell.name, cell.phoneText + "\n" + cell.timeText, cell.invitedText, std::move(tap));
  }
  body.append(*list);
  if (!screen.loadMoreFooterHidden) {
    auto* more = Gtk::make_managed<Gtk::Button>();
    more->set_icon_name("view-more-horizontal-symbolic");
    more->set_name("load-more");
    more->add_css_class("flat");
    more->set_sensitive(!screen.isLoading());
    more->signal_clicked().connect([&screen] { screen.loadMore(); });
    body.append(*more);
  }
}

Gtk::Button* reloadButton(std::function<void()> tapped) {
  auto* reload = Gtk::make_managed<Gtk::Button>();
  reload->set_icon_name("view-refresh-symbolic");
  reload->set_name("reload");
  reload->signal_clicked().connect(std::move(tapped));
  return reload;
}

}  // namespace

ContactsPage::ContactsPage(PageContext& context) : ScreenPage(context, "", true) {
  setTitle(screen_.title());
  follow(screen_);
  screen_.onLoaded = [this](bool) { refreshSoon(); };
  addHeaderButton(*reloadButton([this] { screen_.refresh(); }));
  screen_.refresh();
}

void ContactsPage::refresh() {
  ui::clear(body());
  // The two counts, first level then second, as the server gave them.
  auto* counts = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::HORIZONTAL, 24);
  counts->set_halign(Gtk::Align::CENTER);
  const std::pair<const char*, const std::string*> shown[] = {{"num", &screen_.num()}, {"sub-num", &screen_.subNum()}};
  for (const auto& [name, text] : shown) {
    auto* count = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::HORIZONTAL, 6);
    count->append(*ui::icon(name == std::string("num") ? "avatar-default-symbolic" : "system-users-symbolic"));
    auto* label = ui::label(*text, "title-2", false);
    label->set_name(name);
    count->append(*label);
    counts->append(*count);
  }
  body().append(*counts);
  appendContacts(body(), screen_, [this](std::size_t i) { screen_.selectRow(i); });
}

SecondContactsPage::SecondContactsPage(PageContext& context, const Json& payload)
    : ScreenPage(context, "", true), screen_(UserInfoModel(payload)) {
  setTitle(screen_.title());
  follow(screen_);
  screen_.onLoaded = [this](bool) { refreshSoon(); };
  addHeaderButton(*reloadButton([this] { screen_.refresh(); }));
  screen_.refresh();
}

void SecondContactsPage::refresh() {
  ui::clear(body());
  appendContacts(body(), screen_, nullptr);
}

}  // namespace qmv::gtk
