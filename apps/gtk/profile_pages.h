#pragma once
// The member's own record: the profile (one row per field, each edited in a dialog, and
// the portrait, chosen from a file), the phone change (number, code with its countdown,
// submit) and the invitation (code, link, QR code, copying the link, saving the QR code as
// a PNG). Refusals and results are the screens' own toasts.
#include <filesystem>
#include <string>
#include <vector>

#include "apps/gtk/screen_page.h"
#include "features/member/change_phone_view_controller.h"
#include "features/member/invite_view_controller.h"
#include "features/member/portrait_view_controller.h"
#include "features/member/profile_view_controller.h"

namespace qmv::gtk {

// Each appearance redraws the record (the phone page changes it).
class ProfilePage : public ScreenPage {
 public:
  explicit ProfilePage(PageContext& context);
  ~ProfilePage() override;
  void refresh() override;
  void appeared() override { refreshSoon(); }

  // Sends the picture at `path` as the portrait (what the file chooser's answer does).
  // A file that cannot be read, or is larger than a portrait may be, is refused as not a
  // picture or too large before anything is read into memory.
  void uploadPortrait(const std::filesystem::path& path);
  // The open edit dialog, if any.
  GtkWidget* editor() const { return editor_; }

 private:
  void edit(const std::string& key, const std::string& label);
  void closeEditor();

  ProfileViewController screen_;
  PortraitViewController portrait_;
  std::vector<Gtk::Widget*> rows_;  // one per field, in the screen's order
  GtkWidget* editor_ = nullptr;     // an AdwMessageDialog
  Glib::RefPtr<Gtk::FileChooserNative> chooser_;
};

class ChangePhonePage : public ScreenPage {
 public:
  explicit ChangePhonePage(PageContext& context);
  void refresh() override;

 private:
  ChangePhoneViewController screen_;
  Gtk::Button* codeButton_ = nullptr;
  Gtk::Button* submit_ = nullptr;
};

class InvitePage : public ScreenPage {
 public:
  explicit InvitePage(PageContext& context);
  void refresh() override {}

  // Writes the QR code as a PNG at `path` and says whether it was written.
  bool saveQrCode(const std::filesystem::path& path);

 private:
  InviteViewController screen_;
  Glib::RefPtr<Gtk::FileChooserNative> chooser_;
};

}  // namespace qmv::gtk
