#pragma once
// Small builders the pages share, so that every page looks alike: labels with a style
// class, buttons that run a callback, list rows.
#include <gtkmm.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace qmv {
struct DecodedImage;
struct QrMatrix;
}

namespace qmv::gtk::ui {

Gtk::Label* label(const std::string& text, const std::string& cssClass = "", bool wrap = true);
Gtk::Button* button(const std::string& text, std::function<void()> clicked, const std::string& cssClass = "");
// The flat button under a list that asks for its next page (the page's "page.load-more").
Gtk::Button* loadMoreButton();
// A password field has an eye at its end that shows and hides the typed text.
Gtk::Entry* entry(const std::string& placeholder, const std::string& text, std::function<void(const std::string&)> changed,
                  bool password = false);
// A linked row of toggle buttons, one per label, named `namePrefix` and the index; a tap
// runs the page action `action` with the index (an "i" parameter). The buttons go into
// `buttons`, for the redraw to set which one is active.
Gtk::Box* filterBar(const std::vector<std::string>& labels, const std::string& action, const std::string& namePrefix,
                    std::vector<Gtk::ToggleButton*>& buttons);
// Makes the button at `active` the only one pressed.
void setActiveFilter(const std::vector<Gtk::ToggleButton*>& buttons, long active);
// A boxed list (libadwaita's look) to put rows in.
Gtk::ListBox* boxedList();
// Appends a row with a title, a subtitle and an optional trailing text; `activated`
// makes it tappable. Returns the row.
Gtk::Widget* addRow(Gtk::ListBox& list, const std::string& title, const std::string& subtitle, const std::string& trailing = "",
            std::function<void()> activated = nullptr);
// Sets the title and subtitle of a row addRow made.
void setRowTexts(Gtk::Widget& row, const std::string& title, const std::string& subtitle);
// A count on a row addRow made, before its chevron (the unread messages); hidden until
// given a text.
Gtk::Label* addBadge(Gtk::Widget& row);
// Appends a tappable row with a check mark in front, ticked when `checked` (a choice
// among rows, like the pay-now screen's channels).
void addCheckRow(Gtk::ListBox& list, const std::string& title, bool checked, std::function<void()> tapped);
// A QR code drawn module by module, black on white with its quiet zone, at a size a
// phone's camera reads from the screen.
Gtk::Picture* qrPicture(const QrMatrix& code);
// Shows `image` (premultiplied RGBA as the decoder hands it over) in `picture`; null
// clears it.
void setPicture(Gtk::Picture& picture, const DecodedImage* image);
// The same without copying the pixels: the picture keeps `image` alive while it shows it.
void setPicture(Gtk::Picture& picture, std::shared_ptr<const DecodedImage> image);
// A texture over `image`'s pixels, keeping it alive; null when it has nothing to draw.
// The caller owns the reference.
GdkTexture* newTexture(std::shared_ptr<const DecodedImage> image);
// What a screen reader says for `widget` (a field without a visible label, a bar).
void setAccessibleLabel(Gtk::Widget& widget, const std::string& label);
// Names `widget` by what `label` shows, so that the name follows the text.
void labelledBy(Gtk::Widget& widget, Gtk::Widget& label);
// Names an icon-only control for a screen reader, and shows the name as its tooltip.
void nameIcon(Gtk::Widget& control, const std::string& name);
// An icon of the theme by its name.
Gtk::Image* icon(const std::string& name);

}  // namespace qmv::gtk::ui
