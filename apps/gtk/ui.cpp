#include "apps/gtk/ui.h"

#include <adwaita.h>

#include "apps/gtk/gtk_texts.h"
#include "core/common/decoded_image.h"
#include "platform/qr_generator.h"

namespace qmv::gtk::ui {

Gtk::Label* label(const std::string& text, const std::string& cssClass, bool wrap) {
  auto* l = Gtk::make_managed<Gtk::Label>(text);
  l->set_xalign(0);
  l->set_wrap(wrap);
  l->set_wrap_mode(Pango::WrapMode::WORD_CHAR);
  if (!cssClass.empty()) l->add_css_class(cssClass);
  return l;
}

Gtk::Button* button(const std::string& text, std::function<void()> clicked, const std::string& cssClass) {
  auto* b = Gtk::make_managed<Gtk::Button>(text);
  if (!cssClass.empty()) b->add_css_class(cssClass);
  b->signal_clicked().connect(std::move(clicked));
  return b;
}

Gtk::Button* loadMoreButton() {
  auto* more = Gtk::make_managed<Gtk::Button>();
  more->set_icon_name("view-more-horizontal-symbolic");
  more->set_name("load-more");
  more->add_css_class("flat");
  more->set_action_name("page.load-more");
  nameIcon(*more, gtk_texts::kLoadMore);
  return more;
}

Gtk::Entry* entry(const std::string& placeholder, const std::string& text, std::function<void(const std::string&)> changed,
                  bool password) {
  auto* e = Gtk::make_managed<Gtk::Entry>();
  e->set_placeholder_text(placeholder);
  // GTK does not name a field by its placeholder.
  if (!placeholder.empty()) setAccessibleLabel(*e, placeholder);
  e->set_text(text);
  if (password) {
    e->set_visibility(false);
    e->set_input_purpose(Gtk::InputPurpose::PASSWORD);
    // The eye at the end shows what was typed, and hides it again.
    const auto showEye = [e] {
      const bool shown = e->get_visibility();
      e->set_icon_from_icon_name(shown ? "view-conceal-symbolic" : "view-reveal-symbolic",
                                 Gtk::Entry::IconPosition::SECONDARY);
      e->set_icon_tooltip_text(shown ? gtk_texts::kHidePassword : gtk_texts::kShowPassword,
                               Gtk::Entry::IconPosition::SECONDARY);
    };
    showEye();
    e->signal_icon_release().connect([e, showEye](Gtk::Entry::IconPosition position) {
      if (position != Gtk::Entry::IconPosition::SECONDARY) return;
      e->set_visibility(!e->get_visibility());
      showEye();
    });
  }
  e->signal_changed().connect([e, changed = std::move(changed)] { changed(e->get_text()); });
  return e;
}

Gtk::Box* filterBar(const std::vector<std::string>& labels, const std::string& action, const std::string& namePrefix,
                    std::vector<Gtk::ToggleButton*>& buttons) {
  auto* bar = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::HORIZONTAL, 0);
  bar->add_css_class("linked");
  bar->set_halign(Gtk::Align::CENTER);
  buttons.clear();
  for (std::size_t i = 0; i < labels.size(); ++i) {
    auto* button = Gtk::make_managed<Gtk::ToggleButton>(labels[i]);
    button->set_name(namePrefix + std::to_string(i));
    // The target first: the button must never name the action without its parameter.
    button->set_action_target_value(Glib::Variant<gint32>::create(static_cast<gint32>(i)));
    button->set_action_name(action);
    bar->append(*button);
    buttons.push_back(button);
  }
  return bar;
}

void setActiveFilter(const std::vector<Gtk::ToggleButton*>& buttons, long active) {
  for (std::size_t i = 0; i < buttons.size(); ++i) buttons[i]->set_active(static_cast<long>(i) == active);
}

Gtk::ListBox* boxedList() {
  auto* list = Gtk::make_managed<Gtk::ListBox>();
  list->set_selection_mode(Gtk::SelectionMode::NONE);
  list->add_css_class("boxed-list");
  return list;
}

namespace {

GtkWidget* newRow(const std::string& title, const std::string& subtitle, const std::string& trailing,
                  std::function<void()> activated, bool chevron) {
  GtkWidget* r = adw_action_row_new();
  // Row texts are data from the server: never markup.
  adw_preferences_row_set_use_markup(ADW_PREFERENCES_ROW(r), FALSE);
  adw_preferences_row_set_title(ADW_PREFERENCES_ROW(r), title.c_str());
  if (!subtitle.empty()) adw_action_row_set_subtitle(ADW_ACTION_ROW(r), subtitle.c_str());
  adw_action_row_set_subtitle_lines(ADW_ACTION_ROW(r), 2);
  if (!trailing.empty()) {
    GtkWidget* suffix = gtk_label_new(trailing.c_str());
    gtk_widget_add_css_class(suffix, "accent");
    adw_action_row_add_suffix(ADW_ACTION_ROW(r), suffix);
  }
  if (activated) {
    gtk_list_box_row_set_activatable(GTK_LIST_BOX_ROW(r), TRUE);
    if (chevron) adw_action_row_add_suffix(ADW_ACTION_ROW(r), gtk_image_new_from_icon_name("go-next-symbolic"));
    auto* callback = new std::function<void()>(std::move(activated));
    g_signal_connect_data(r, "activated", G_CALLBACK(+[](AdwActionRow*, gpointer data) {
                            (*static_cast<std::function<void()>*>(data))();
                          }),
                          callback, [](gpointer data, GClosure*) { delete static_cast<std::function<void()>*>(data); },
                          GConnectFlags(0));
  }
  return r;
}

}  // namespace

Gtk::Widget* addRow(Gtk::ListBox& list, const std::string& title, const std::string& subtitle,
                    const std::string& trailing, std::function<void()> activated) {
  GtkWidget* row = newRow(title, subtitle, trailing, std::move(activated), true);
  gtk_list_box_append(list.gobj(), row);
  return Glib::wrap(row);
}

void setRowTexts(Gtk::Widget& row, const std::string& title, const std::string& subtitle) {
  adw_preferences_row_set_title(ADW_PREFERENCES_ROW(row.gobj()), title.c_str());
  adw_action_row_set_subtitle(ADW_ACTION_ROW(row.gobj()), subtitle.c_str());
}

Gtk::Label* addBadge(Gtk::Widget& row) {
  auto* badge = Gtk::make_managed<Gtk::Label>();
  // The theme's accent colour: readable in light and dark alike.
  badge->add_css_class("accent");
  badge->add_css_class("numeric");
  badge->add_css_class("heading");
  badge->set_valign(Gtk::Align::CENTER);
  badge->set_visible(false);
  adw_action_row_add_suffix(ADW_ACTION_ROW(row.gobj()), GTK_WIDGET(badge->gobj()));
  // Before the chevron, where a count reads as the row's.
  GtkWidget* suffixes = gtk_widget_get_parent(GTK_WIDGET(badge->gobj()));
  if (GTK_IS_BOX(suffixes)) gtk_box_reorder_child_after(GTK_BOX(suffixes), GTK_WIDGET(badge->gobj()), nullptr);
  return badge;
}

void addCheckRow(Gtk::ListBox& list, const std::string& title, bool checked, std::function<void()> tapped) {
  GtkWidget* row = newRow(title, "", "", std::move(tapped), false);
  GtkWidget* check = gtk_check_button_new();
  gtk_check_button_set_active(GTK_CHECK_BUTTON(check), checked);
  // The row takes the tap; the check only shows the state.
  gtk_widget_set_can_target(check, FALSE);
  gtk_widget_set_focusable(check, FALSE);
  // Kept out of the focus chain as a whole: a check button claims Tab even when it
  // cannot take the focus, which held the focus on its row.
  gtk_widget_set_can_focus(check, FALSE);
  gtk_accessible_update_property(GTK_ACCESSIBLE(check), GTK_ACCESSIBLE_PROPERTY_LABEL, title.c_str(), -1);
  adw_action_row_add_prefix(ADW_ACTION_ROW(row), check);
  gtk_list_box_append(list.gobj(), row);
}

Gtk::Picture* qrPicture(const QrMatrix& code) {
  constexpr int kScale = 6;  // pixels per module
  const int modules = code.width + 2 * QrGenerator::kQuietZone;
  const int side = modules * kScale;
  std::vector<guint8> pixels(static_cast<std::size_t>(side) * side * 3, 0xff);
  for (int y = 0; y < side; ++y) {
    for (int x = 0; x < side; ++x) {
      if (!code.dark(x / kScale - QrGenerator::kQuietZone, y / kScale - QrGenerator::kQuietZone)) continue;
      guint8* pixel = &pixels[(static_cast<std::size_t>(y) * side + x) * 3];
      pixel[0] = pixel[1] = pixel[2] = 0;
    }
  }
  GBytes* bytes = g_bytes_new(pixels.data(), pixels.size());
  GdkTexture* texture = gdk_memory_texture_new(side, side, GDK_MEMORY_R8G8B8, bytes, static_cast<gsize>(side) * 3);
  g_bytes_unref(bytes);
  auto* picture = Gtk::make_managed<Gtk::Picture>();
  gtk_picture_set_paintable(picture->gobj(), GDK_PAINTABLE(texture));
  g_object_unref(texture);
  picture->set_can_shrink(false);
  picture->set_halign(Gtk::Align::CENTER);
  return picture;
}

namespace {

bool drawable(const DecodedImage* image) {
  return image != nullptr && !image->size().empty() &&
         image->pixels.size() >= image->stride * static_cast<std::size_t>(image->height);
}

// Takes `bytes`.
GdkTexture* textureOver(const DecodedImage& image, GBytes* bytes) {
  GdkTexture* texture =
      gdk_memory_texture_new(image.width, image.height, GDK_MEMORY_R8G8B8A8_PREMULTIPLIED, bytes, image.stride);
  g_bytes_unref(bytes);
  return texture;
}

// Shows `texture` (null clears the picture) and gives up the reference.
void show(Gtk::Picture& picture, GdkTexture* texture) {
  gtk_picture_set_paintable(picture.gobj(), texture != nullptr ? GDK_PAINTABLE(texture) : nullptr);
  if (texture != nullptr) g_object_unref(texture);
}

}  // namespace

void setPicture(Gtk::Picture& picture, const DecodedImage* image) {
  show(picture, drawable(image) ? textureOver(*image, g_bytes_new(image->pixels.data(), image->pixels.size()))
                                : nullptr);
}

GdkTexture* newTexture(std::shared_ptr<const DecodedImage> image) {
  if (!drawable(image.get())) return nullptr;
  // The texture holds the cache's pixels instead of a copy: a screen of pictures would
  // otherwise keep every one twice.
  const DecodedImage& shown = *image;
  auto* owner = new std::shared_ptr<const DecodedImage>(std::move(image));
  return textureOver(shown, g_bytes_new_with_free_func(
                                shown.pixels.data(), shown.pixels.size(),
                                [](gpointer data) { delete static_cast<std::shared_ptr<const DecodedImage>*>(data); },
                                owner));
}

void setPicture(Gtk::Picture& picture, std::shared_ptr<const DecodedImage> image) {
  show(picture, newTexture(std::move(image)));
}

void setAccessibleLabel(Gtk::Widget& widget, const std::string& label) {
  gtk_accessible_update_property(GTK_ACCESSIBLE(widget.gobj()), GTK_ACCESSIBLE_PROPERTY_LABEL, label.c_str(), -1);
}

void labelledBy(Gtk::Widget& widget, Gtk::Widget& label) {
  gtk_accessible_update_relation(GTK_ACCESSIBLE(widget.gobj()), GTK_ACCESSIBLE_RELATION_LABELLED_BY, label.gobj(),
                                 nullptr, -1);
}

void nameIcon(Gtk::Widget& control, const std::string& name) {
  setAccessibleLabel(control, name);
  control.set_tooltip_text(name);
}

Gtk::Image* icon(const std::string& name) {
  auto* image = Gtk::make_managed<Gtk::Image>();
  image->set_from_icon_name(name);
  return image;
}

}  // namespace qmv::gtk::ui
