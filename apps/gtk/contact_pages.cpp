#include "apps/gtk/contact_pages.h"

#include <adwaita.h>

#include "apps/gtk/gtk_texts.h"
#include "apps/gtk/local_pictures.h"
#include "apps/gtk/picture_view.h"
#include "apps/gtk/ui.h"

namespace qmv::gtk {

namespace {

std::string contactKey(const ContactCell& cell) { return cell.name + '\n' + cell.phoneText + '\n' + cell.timeText; }

bool contactDrawsAlike(const ContactCell& a, const ContactCell& b) {
  return contactKey(a) == contactKey(b) && a.invitedText == b.invitedText && a.arrowImage == b.arrowImage &&
         a.portraitUrl == b.portraitUrl && a.placeholderImage == b.placeholderImage;
}

constexpr const char* kPortraitKey = "qmv-portrait";
constexpr int kPortraitSide = 40;
// Decoded at twice the drawn size, for scaled displays.
constexpr ImageSize kPortraitBox{2 * kPortraitSide, 2 * kPortraitSide};

// The rows of a contacts screen, each with the contact's round portrait in front: a
// first-level contact opens his own list; a second-level one ends the tree.
Gtk::ListView* contactList(RowList<ContactCell>& rows, bool opens, ImageLoader* pictures) {
  auto factory = rowFactory<ContactCell>(
      [pictures](const Glib::RefPtr<Gtk::ListItem>& item) {
        Gtk::Widget* row = detail::newListActionRow(item, nullptr);
        auto* portrait = Gtk::make_managed<PictureView>(pictures, kPortraitBox, "");
        portrait->set_size_request(kPortraitSide, kPortraitSide);
        portrait->set_valign(Gtk::Align::CENTER);
        portrait->set_vexpand(false);
        portrait->set_hexpand(false);
        portrait->add_css_class("portrait");
        portrait->set_name("portrait");
        adw_action_row_add_prefix(ADW_ACTION_ROW(row->gobj()), GTK_WIDGET(portrait->gobj()));
        g_object_set_data(G_OBJECT(row->gobj()), kPortraitKey, portrait);
        return row;
      },
      [opens](Gtk::Widget& row, const ContactCell& cell) {
        detail::fillListActionRow(row, RowTexts{cell.name, cell.phoneText + "\n" + cell.timeText, cell.invitedText, opens});
        auto* portrait = static_cast<PictureView*>(g_object_get_data(G_OBJECT(row.gobj()), kPortraitKey));
        portrait->setPlaceholderIcon(iconOfPicture(cell.placeholderImage, "avatar-default-symbolic"));
        portrait->setUrl(cell.portraitUrl);
        ui::setAccessibleLabel(*portrait, gtk_texts::portraitOf(cell.name));
      });
  return listView(rows.model(), factory, "contacts");
}

template <typename Screen>
void showContacts(Screen& screen, RowList<ContactCell>& rows, Gtk::Button& more) {
  std::vector<ContactCell> cells;
  for (std::size_t i = 0; i < screen.contactList.size(); ++i) cells.push_back(screen.cellAt(i));
  rows.assign(std::move(cells));
  const bool shown = !screen.contactList.empty() && !screen.loadMoreFooterHidden;
  more.set_visible(shown);
}

Gtk::Button* reloadButton() {
  auto* reload = Gtk::make_managed<Gtk::Button>();
  reload->set_icon_name("view-refresh-symbolic");
  reload->set_name("reload");
  ui::nameIcon(*reload, gtk_texts::kRefresh);
  reload->set_action_name("page.refresh");
  return reload;
}

}  // namespace

ContactsPage::ContactsPage(PageContext& context)
    : ScreenPage(context, "", true), rows_(&contactKey, &contactDrawsAlike) {
  setTitle(screen_.title());
  follow(screen_);
  screen_.onLoaded = [this](bool) { refreshSoon(); };
  pullToRefresh([this] { screen_.refresh(); });
  addAction("load-more", [this] { screen_.loadMore(); });
  addAction("open-row", Glib::VariantType("u"), [this](const Glib::VariantBase& value) {
    // The contact drawn at that position, found again in the screen's list, which may
    // have changed since the last redraw.
    const guint32 row = Glib::VariantBase::cast_dynamic<Glib::Variant<guint32>>(value).get();
    if (row >= rows_.size()) return;
    const std::string key = contactKey(rows_.at(row));
    for (std::size_t i = 0; i < screen_.contactList.size(); ++i) {
      if (contactKey(screen_.cellAt(i)) == key) return screen_.selectRow(i);
    }
  });
  addHeaderButton(*reloadButton());

  // The two counts, first level then second, as the server gave them.
  auto* counts = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::HORIZONTAL, 24);
  counts->set_halign(Gtk::Align::CENTER);
  for (const char* name : {"num", "sub-num"}) {
    auto* count = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::HORIZONTAL, 6);
    count->append(*ui::icon(name == std::string("num") ? "avatar-default-symbolic" : "system-users-symbolic"));
    auto* label = ui::label("", "title-2", false);
    label->set_name(name);
    count->append(*label);
    counts->append(*count);
    (name == std::string("num") ? num_ : subNum_) = label;
  }
  body().append(*counts);
  setList(*contactList(rows_, true, context.pictures()));
  more_ = ui::loadMoreButton();
  footer().append(*more_);
  screen_.refresh();
  refresh();
}

void ContactsPage::refresh() {
  num_->set_text(screen_.num());
  subNum_->set_text(screen_.subNum());
  showContacts(screen_, rows_, *more_);
  showListState(!screen_.contactList.empty(), screen_.loadMoreFooterHidden, ContactListController::kEmptyText);
  setActionEnabled("load-more", !screen_.isLoading());
}

SecondContactsPage::SecondContactsPage(PageContext& context, const Json& payload)
    : ScreenPage(context, "", true), screen_(UserInfoModel(payload)), rows_(&contactKey, &contactDrawsAlike) {
  setTitle(screen_.title());
  follow(screen_);
  screen_.onLoaded = [this](bool) { refreshSoon(); };
  pullToRefresh([this] { screen_.refresh(); });
  addAction("load-more", [this] { screen_.loadMore(); });
  addHeaderButton(*reloadButton());
  setList(*contactList(rows_, false, context.pictures()));
  more_ = ui::loadMoreButton();
  footer().append(*more_);
  screen_.refresh();
  refresh();
}

void SecondContactsPage::refresh() {
  showContacts(screen_, rows_, *more_);
  showListState(!screen_.contactList.empty(), screen_.loadMoreFooterHidden, ContactListController::kEmptyText);
  setActionEnabled("load-more", !screen_.isLoading());
}

}  // namespace qmv::gtk
