#include "apps/gtk/profile_pages.h"

#include <adwaita.h>

#include <fstream>

#include "apps/gtk/gtk_texts.h"
#include "apps/gtk/page_context.h"
#include "apps/gtk/ui.h"
#include "core/session/account_texts.h"
#include "platform/env.h"
#include "platform/linux/qr_png.h"
#include "platform/status_overlay.h"

namespace qmv::gtk {

namespace {

constexpr const char* kSexKey = "sex";
constexpr int kQrPngScale = 8;  // pixels per module in the saved picture

void toast(const std::string& text) {
  if (const auto& overlay = Env::current().overlay) overlay->showImage("", text);
}

// At most one byte more than `limit`: enough for the screen to tell a picture that is too
// large, without reading all of it. Empty when the file cannot be read.
std::string readCapped(const std::filesystem::path& path, std::size_t limit) {
  std::ifstream in(path, std::ios::binary);
  if (!in) return {};
  std::string bytes(limit + 1, '\0');
  in.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  bytes.resize(static_cast<std::size_t>(in.gcount()));
  return bytes;
}

Glib::RefPtr<Gtk::FileChooserNative> chooser(PageContext& context, Gtk::FileChooser::Action action, const char* title) {
  auto made = Gtk::FileChooserNative::create(title, action);
  if (Gtk::Window* parent = context.window()) made->set_transient_for(*parent);
  made->set_modal(true);
  return made;
}

}  // namespace

ProfilePage::ProfilePage(PageContext& context) : ScreenPage(context, ProfileViewController::kTitle, true) {
  follow(screen_);
  screen_.onFinished = [this](bool) { refreshSoon(); };
  portrait_.onFinished = [this](bool) { refreshSoon(); };
  auto* picture = ui::boxedList();
  picture->set_name("portrait-entry");
  ui::addRow(*picture, PortraitViewController::kTitle, gtk_texts::kChoosePortrait, "", [this] {
    if (portrait_.isSending()) return;
    chooser_ = chooser(context_, Gtk::FileChooser::Action::OPEN, gtk_texts::kChoosePortrait);
    auto filter = Gtk::FileFilter::create();
    filter->set_name(gtk_texts::kPictureFiles);
    filter->add_pixbuf_formats();
    chooser_->add_filter(filter);
    Gtk::FileChooserNative* open = chooser_.get();
    open->signal_response().connect([this, open](int response) {
      if (response == Gtk::ResponseType::ACCEPT && open->get_file()) uploadPortrait(open->get_file()->get_path());
    });
    open->show();
  });
  body().append(*picture);
  auto* fields = ui::boxedList();
  fields->set_name("profile-fields");
  for (const auto& field : ProfileViewController::fields()) {
    const std::string key = field.key;
    const std::string label = field.label;
    Gtk::Widget* row = ui::addRow(*fields, label, "", "", [this, key, label] { edit(key, label); });
    row->set_name(key);
    rows_.push_back(row);
  }
  body().append(*fields);
  refresh();
}

ProfilePage::~ProfilePage() { closeEditor(); }

void ProfilePage::refresh() {
  const auto& fields = ProfileViewController::fields();
  for (std::size_t i = 0; i < rows_.size() && i < fields.size(); ++i) {
    ui::setRowTexts(*rows_[i], fields[i].label, screen_.displayValue(fields[i].key));
  }
}

void ProfilePage::uploadPortrait(const std::filesystem::path& path) {
  portrait_.upload(readCapped(path, PortraitViewController::kMaxPictureBytes));
  refreshSoon();
}

void ProfilePage::edit(const std::string& key, const std::string& label) {
  closeEditor();
  Gtk::Window* parent = context_.window();
  GtkWidget* dialog = adw_message_dialog_new(parent != nullptr ? parent->gobj() : nullptr, label.c_str(), nullptr);
  gtk_widget_set_name(dialog, "profile-editor");
  auto* box = ADW_MESSAGE_DIALOG(dialog);
  adw_message_dialog_add_response(box, "cancel", gtk_texts::kCancel);
  if (key == kSexKey) {
    // Two answers, not a text: the sex is a choice.
    adw_message_dialog_add_response(box, "1", account_centre_texts::kMale);
    adw_message_dialog_add_response(box, "2", account_centre_texts::kFemale);
  } else {
    adw_message_dialog_add_response(box, "save", gtk_texts::kSave);
    adw_message_dialog_set_response_appearance(box, "save", ADW_RESPONSE_SUGGESTED);
    adw_message_dialog_set_default_response(box, "save");
    auto* entry = Gtk::make_managed<Gtk::Entry>();
    entry->set_name("profile-value");
    entry->set_text(screen_.valueOf(key));
    entry->set_activates_default(true);
    ui::setAccessibleLabel(*entry, label);
    adw_message_dialog_set_extra_child(box, GTK_WIDGET(entry->gobj()));
  }
  g_object_set_data_full(G_OBJECT(dialog), "key", g_strdup(key.c_str()), g_free);
  g_signal_connect(dialog, "response", G_CALLBACK(+[](AdwMessageDialog* dialog, const char* response, gpointer data) {
                     auto* page = static_cast<ProfilePage*>(data);
                     const std::string answer = response != nullptr ? response : "";
                     const std::string key = static_cast<const char*>(g_object_get_data(G_OBJECT(dialog), "key"));
                     std::string value;
                     if (answer == "save") {
                       GtkWidget* entry = adw_message_dialog_get_extra_child(dialog);
                       value = gtk_editable_get_text(GTK_EDITABLE(entry));
                     } else if (answer == "1" || answer == "2") {
                       value = answer;
                     }
                     page->closeEditor();
                     if (!value.empty() || answer == "save") page->screen_.change(key, value);
                     page->refreshSoon();
                   }),
                   this);
  editor_ = dialog;
  gtk_window_present(GTK_WINDOW(dialog));
}

void ProfilePage::closeEditor() {
  if (editor_ == nullptr) return;
  GtkWidget* dialog = editor_;
  editor_ = nullptr;
  g_signal_handlers_disconnect_by_data(dialog, this);
  gtk_window_destroy(GTK_WINDOW(dialog));
}

ChangePhonePage::ChangePhonePage(PageContext& context) : ScreenPage(context, ChangePhoneViewController::kTitle, true) {
  follow(screen_);
  screen_.onCodeFinished = [this](bool) { refreshSoon(); };
  screen_.onFinished = [this](bool) { refreshSoon(); };
  auto* form = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::VERTICAL, 8);
  auto* phone = ui::entry(account_centre_texts::kNewPhonePlaceholder, screen_.phoneText,
                          [this](const std::string& t) { screen_.phoneText = t; });
  phone->set_name("new-phone");
  phone->set_input_purpose(Gtk::InputPurpose::PHONE);
  ui::setAccessibleLabel(*phone, account_centre_texts::kNewPhonePlaceholder);
  form->append(*phone);
  auto* codeRow = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::HORIZONTAL, 6);
  auto* code = ui::entry(account_texts::kCodePlaceholder, screen_.codeText,
                         [this](const std::string& t) { screen_.codeText = t; });
  code->set_name("code");
  code->set_hexpand(true);
  code->set_input_purpose(Gtk::InputPurpose::DIGITS);
  ui::setAccessibleLabel(*code, account_texts::kCodePlaceholder);
  codeRow->append(*code);
  codeButton_ = ui::button(screen_.countdown().title(), [this] {
    screen_.getCodeAction();
    refresh();
  });
  codeButton_->set_name("get-code");
  codeRow->append(*codeButton_);
  form->append(*codeRow);
  submit_ = submitButton(account_texts::kSubmitButton, [this] { screen_.submitAction(); });
  form->append(*submit_);
  body().append(*form);
  screen_.viewDidLoad();
  refresh();
}

void ChangePhonePage::refresh() {
  if (submit_ == nullptr) return;  // still being built
  codeButton_->set_label(screen_.countdown().title());
  codeButton_->set_sensitive(screen_.countdown().buttonEnabled() && !screen_.isSending());
  submit_->set_sensitive(!screen_.isSending());
}

InvitePage::InvitePage(PageContext& context) : ScreenPage(context, InviteViewController::kTitle, true) {
  follow(screen_);
  const std::string code = screen_.inviteCode();
  const std::string link = screen_.inviteLink();
  auto* panel = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::VERTICAL, 8);
  auto* codeLabel = ui::label(code.empty() ? account_centre_texts::kNoInviteCode : code, "title-1");
  codeLabel->set_name("invite-code");
  codeLabel->set_xalign(0.5);
  codeLabel->set_selectable(true);
  panel->append(*codeLabel);
  if (const auto qr = screen_.qrCode()) {
    // qrPicture draws its own white quiet zone, which a camera needs on a dark theme too.
    Gtk::Picture* picture = ui::qrPicture(*qr);
    picture->set_name("invite-qr");
    ui::setAccessibleLabel(*picture, link);
    panel->append(*picture);
  }
  if (!link.empty()) {
    auto* linkLabel = ui::label(link, "dim-label");
    linkLabel->set_name("invite-link");
    linkLabel->set_selectable(true);
    linkLabel->set_xalign(0.5);
    panel->append(*linkLabel);
    auto* buttons = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::HORIZONTAL, 6);
    buttons->set_halign(Gtk::Align::CENTER);
    auto* copy = ui::button(gtk_texts::kCopyLink, [this, link] {
      get_clipboard()->set_text(link);
      toast(account_centre_texts::kLinkCopied);
    });
    copy->set_name("copy-link");
    buttons->append(*copy);
    auto* save = ui::button(gtk_texts::kSaveQrCode, [this] {
      chooser_ = chooser(context_, Gtk::FileChooser::Action::SAVE, gtk_texts::kSaveQrCode);
      chooser_->set_current_name("qmv-invite.png");
      Gtk::FileChooserNative* open = chooser_.get();
      open->signal_response().connect([this, open](int response) {
        if (response == Gtk::ResponseType::ACCEPT && open->get_file()) saveQrCode(open->get_file()->get_path());
      });
      open->show();
    });
    save->set_name("save-qr");
    buttons->append(*save);
    panel->append(*buttons);
  }
  body().append(*panel);
}

bool InvitePage::saveQrCode(const std::filesystem::path& path) {
  const auto qr = screen_.qrCode();
  const bool saved = qr && writeQrPng(*qr, path, kQrPngScale);
  toast(saved ? gtk_texts::kQrSaved : gtk_texts::kQrNotSaved);
  return saved;
}

}  // namespace qmv::gtk
