#include "apps/gtk/gtk_ports.h"

#include <gtkmm.h>

#include "apps/gtk/chinese_locale.h"
#include "apps/gtk/gtk_texts.h"
#include "platform/alerts.h"
#include "platform/env.h"
#include "platform/linux/image_file_camera.h"
#include "platform/linux/qr_png.h"

namespace qmv::gtk {
namespace {

using gtk_texts::kUnderstood;
using gtk_texts::kUnreadablePicture;

}  // namespace

void GtkAppWindow::showLaunchView(const std::string& placeholderImage, const std::string& imageUrl) {
  HeadlessAppWindow::showLaunchView(placeholderImage, imageUrl);
  if (onLaunchView) onLaunchView(true, imageUrl);
}

void GtkAppWindow::removeLaunchView() {
  HeadlessAppWindow::removeLaunchView();
  if (onLaunchView) onLaunchView(false, {});
}

void GtkAppWindow::removeCachedImage(const std::string& url) {
  HeadlessAppWindow::removeCachedImage(url);
  if (onRemoveCachedImage) onRemoveCachedImage(url);
}

bool LauncherUrlOpener::canOpenURL(const std::string& url) const {
  const auto colon = url.find(':');
  if (colon == std::string::npos || colon == 0) return false;
  GAppInfo* info = g_app_info_get_default_for_uri_scheme(url.substr(0, colon).c_str());
  if (info == nullptr) return false;
  g_object_unref(info);
  return true;
}

bool LauncherUrlOpener::openURL(const std::string& url) {
  opened_.push_back(url);
  GError* error = nullptr;
  // The program opened speaks the member's language, not the client's.
  GAppLaunchContext* context = g_app_launch_context_new();
  restoreMemberLocale(context);
  const bool opened = g_app_info_launch_default_for_uri(url.c_str(), context, &error) != FALSE;
  g_object_unref(context);
  if (error != nullptr) g_error_free(error);
  return opened;
}

void FileChooserCamera::scanQrCode(std::function<void(std::optional<std::string>)> completion) {
  chooser_ = Gtk::FileChooserNative::create(gtk_texts::kChooseQrPicture, Gtk::FileChooser::Action::OPEN);
  Gtk::FileChooserNative* chooser = chooser_.get();
  if (Gtk::Window* parent = window_ ? window_() : nullptr) chooser->set_transient_for(*parent);
  auto filter = Gtk::FileFilter::create();
  filter->add_pixbuf_formats();
  chooser->add_filter(filter);
  chooser->signal_response().connect([chooser, completion = std::move(completion)](int response) mutable {
    if (response != Gtk::ResponseType::ACCEPT || !chooser->get_file()) return;
    scanChosenPicture(chooser->get_file()->get_path(), completion);
  });
  chooser->show();
}

void FileChooserCamera::scanChosenPicture(const std::string& path,
                                          std::function<void(std::optional<std::string>)> completion) {
  if (std::string problem = qrImageProblem(path); !problem.empty()) {
    Env::current().alerts->show(AlertSpec{kUnreadablePicture, problem, {kUnderstood}, {}}, nullptr);
    return;
  }
  ImageFileCamera(path).scanQrCode(std::move(completion));
}

}  // namespace qmv::gtk
