#include "apps/gtk/row_list.h"

#include <adwaita.h>

#include "apps/gtk/picture_view.h"
#include "apps/gtk/ui.h"

namespace qmv::gtk {

namespace detail {

namespace {

constexpr const char* kTrailingKey = "qmv-trailing";
constexpr const char* kChevronKey = "qmv-chevron";
constexpr const char* kThumbnailKey = "qmv-thumbnail";
constexpr const char* kCheckKey = "qmv-check";
constexpr int kThumbnailSide = 56;
// Decoded at twice the drawn size, for scaled displays.
constexpr ImageSize kThumbnailBox{2 * kThumbnailSide, 2 * kThumbnailSide};

// The row's own title and subtitle labels (found by their style classes) on single lines,
// cut with an ellipsis. A wrapping label is measured at several widths whenever its text
// changes, and a list view binds its rows some twenty at a time while scrolling: with
// wrapping, such a frame took about twice its budget.
void keepLabelsOnOneLine(GtkWidget* widget) {
  for (GtkWidget* child = gtk_widget_get_first_child(widget); child != nullptr;
       child = gtk_widget_get_next_sibling(child)) {
    if (GTK_IS_LABEL(child) && (gtk_widget_has_css_class(child, "title") || gtk_widget_has_css_class(child, "subtitle"))) {
      gtk_label_set_wrap(GTK_LABEL(child), FALSE);
      gtk_label_set_ellipsize(GTK_LABEL(child), PANGO_ELLIPSIZE_END);
    }
    keepLabelsOnOneLine(child);
  }
}

}  // namespace

GtkWidget* newActionRow(ImageLoader* pictures) {
  GtkWidget* row = adw_action_row_new();
  // Row texts are data from the server: never markup.
  adw_preferences_row_set_use_markup(ADW_PREFERENCES_ROW(row), FALSE);
  adw_action_row_set_subtitle_lines(ADW_ACTION_ROW(row), 2);
  GtkWidget* trailing = gtk_label_new("");
  gtk_widget_add_css_class(trailing, "accent");
  adw_action_row_add_suffix(ADW_ACTION_ROW(row), trailing);
  // The mark of a menu's current choice, in the theme's accent colour (light and dark).
  GtkWidget* check = gtk_image_new_from_icon_name("object-select-symbolic");
  gtk_widget_add_css_class(check, "accent");
  gtk_widget_set_visible(check, FALSE);
  adw_action_row_add_suffix(ADW_ACTION_ROW(row), check);
  g_object_set_data(G_OBJECT(row), kCheckKey, check);
  GtkWidget* chevron = gtk_image_new_from_icon_name("go-next-symbolic");
  adw_action_row_add_suffix(ADW_ACTION_ROW(row), chevron);
  g_object_set_data(G_OBJECT(row), kTrailingKey, trailing);
  g_object_set_data(G_OBJECT(row), kChevronKey, chevron);
  if (pictures != nullptr) {
    auto* thumbnail = Gtk::make_managed<PictureView>(pictures, kThumbnailBox, "");
    thumbnail->set_size_request(kThumbnailSide, kThumbnailSide);
    thumbnail->set_valign(Gtk::Align::CENTER);
    thumbnail->set_vexpand(false);
    thumbnail->set_hexpand(false);
    thumbnail->add_css_class("thumbnail");
    thumbnail->set_name("thumbnail");
    adw_action_row_add_prefix(ADW_ACTION_ROW(row), GTK_WIDGET(thumbnail->gobj()));
    g_object_set_data(G_OBJECT(row), kThumbnailKey, thumbnail);
    // Rows with pictures make the long lists (stores, offers).
    keepLabelsOnOneLine(row);
  }
  return row;
}

Gtk::Widget* newListActionRow(const Glib::RefPtr<Gtk::ListItem>& item, ImageLoader* pictures) {
  GtkWidget* row = newActionRow(pictures);
  // The list's item takes the focus and Enter: a list box's row outside a list box
  // cannot hold the focus.
  gtk_widget_set_can_focus(row, FALSE);
  // The item outlives its child, and its position follows splices.
  g_signal_connect(row, "activated", G_CALLBACK(+[](AdwActionRow* self, gpointer data) {
                     const guint position = gtk_list_item_get_position(GTK_LIST_ITEM(data));
                     if (position != GTK_INVALID_LIST_POSITION) {
                       gtk_widget_activate_action(GTK_WIDGET(self), "list.activate-item", "u", position);
                     }
                   }),
                   item->gobj());
  return Gtk::manage(Glib::wrap(row));
}

void fillListActionRow(Gtk::Widget& row, const RowTexts& texts) {
  GtkWidget* raw = row.gobj();
  adw_preferences_row_set_title(ADW_PREFERENCES_ROW(raw), texts.title.c_str());
  adw_action_row_set_subtitle(ADW_ACTION_ROW(raw), texts.subtitle.c_str());
  auto* trailing = static_cast<GtkWidget*>(g_object_get_data(G_OBJECT(raw), kTrailingKey));
  gtk_label_set_text(GTK_LABEL(trailing), texts.trailing.c_str());
  gtk_widget_set_visible(trailing, !texts.trailing.empty());
  gtk_widget_set_visible(static_cast<GtkWidget*>(g_object_get_data(G_OBJECT(raw), kChevronKey)), texts.activatable);
  gtk_list_box_row_set_activatable(GTK_LIST_BOX_ROW(raw), texts.activatable);
  gtk_widget_set_visible(static_cast<GtkWidget*>(g_object_get_data(G_OBJECT(raw), kCheckKey)), texts.current);
  // A screen reader hears the mark too.
  gtk_accessible_update_state(GTK_ACCESSIBLE(raw), GTK_ACCESSIBLE_STATE_SELECTED, texts.current, -1);
  if (auto* thumbnail = static_cast<PictureView*>(g_object_get_data(G_OBJECT(raw), kThumbnailKey))) {
    thumbnail->setUrl(texts.picture);
    thumbnail->set_visible(!texts.picture.empty());  // choice rows among store rows have none
    ui::setAccessibleLabel(*thumbnail, texts.title);
  }
}

void nameListItem(Gtk::Widget& child) {
  GtkWidget* item = gtk_widget_get_parent(child.gobj());
  if (item == nullptr) return;
  std::string name;
  const auto add = [&name](const char* text) {
    if (text == nullptr || *text == '\0') return;
    if (!name.empty()) name += ' ';
    name += text;
  };
  GtkWidget* raw = child.gobj();
  if (ADW_IS_ACTION_ROW(raw)) {
    add(adw_preferences_row_get_title(ADW_PREFERENCES_ROW(raw)));
    add(adw_action_row_get_subtitle(ADW_ACTION_ROW(raw)));
  } else {
    const std::function<void(GtkWidget*)> labels = [&](GtkWidget* widget) {
      for (GtkWidget* c = gtk_widget_get_first_child(widget); c != nullptr; c = gtk_widget_get_next_sibling(c)) {
        if (!gtk_widget_get_visible(c)) continue;
        if (GTK_IS_LABEL(c)) add(gtk_label_get_text(GTK_LABEL(c)));
        labels(c);
      }
    };
    labels(raw);
  }
  gtk_accessible_update_property(GTK_ACCESSIBLE(item), GTK_ACCESSIBLE_PROPERTY_LABEL, name.c_str(), -1);
}

}  // namespace detail

Gtk::ListView* listView(const Glib::RefPtr<Gio::ListModel>& model, const Glib::RefPtr<Gtk::ListItemFactory>& factory,
                        const std::string& name) {
  auto* list = Gtk::make_managed<Gtk::ListView>(Gtk::NoSelection::create(model), factory);
  list->set_name(name);
  list->set_single_click_activate(true);
  list->add_css_class("qmv-rows");
  list->signal_activate().connect([list](guint position) {
    list->activate_action("page.open-row", Glib::Variant<guint32>::create(position));
  });
  return list;
}

}  // namespace qmv::gtk
