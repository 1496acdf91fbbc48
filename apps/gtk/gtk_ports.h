#pragma once
// The smaller ports of the graphical client: the window's launch view, the URL opener
// (the desktop's handlers; the application's own scheme comes back in through the
// running instance), and the camera that reads a QR code from a picture the member
// chooses.
#include <glibmm/refptr.h>

#include <functional>
#include <string>
#include <vector>

#include "platform/camera.h"
#include "platform/linux/headless_app_window.h"
#include "platform/url_opener.h"

namespace Gtk {
class FileChooserNative;
class Window;
}  // namespace Gtk

namespace qmv::gtk {

class GtkAppWindow : public HeadlessAppWindow {
 public:
  void showLaunchView(const std::string& placeholderImage, const std::string& imageUrl) override;
  void removeLaunchView() override;
  void removeCachedImage(const std::string& url) override;
  // Shows (true, with the picture's address) or hides (false) the launch view.
  std::function<void(bool shown, const std::string& imageUrl)> onLaunchView;
  std::function<void(const std::string& url)> onRemoveCachedImage;
};

class LauncherUrlOpener : public UrlOpener {
 public:
  bool canOpenURL(const std::string& url) const override;
  bool openURL(const std::string& url) override;
  // What was handed over, newest last.
  const std::vector<std::string>& opened() const { return opened_; }

 private:
  std::vector<std::string> opened_;
};

class FileChooserCamera : public Camera {
 public:
  // `window` is where the chooser opens; null picks none.
  explicit FileChooserCamera(std::function<Gtk::Window*()> window) : window_(std::move(window)) {}
  bool isAvailable() const override { return true; }
  // Lets the member choose a picture and reads the QR code in it; a cancelled choice
  // reports nothing.
  void scanQrCode(std::function<void(std::optional<std::string>)> completion) override;
  // Reads the code in the picture at `path`. A picture that cannot be read (missing, not a
  // PNG, too large) is named in an alert instead of being reported as an invalid code,
  // and nothing is reported to `completion`.
  static void scanChosenPicture(const std::string& path, std::function<void(std::optional<std::string>)> completion);

 private:
  std::function<Gtk::Window*()> window_;
  Glib::RefPtr<Gtk::FileChooserNative> chooser_;  // the open chooser, if any
};

}  // namespace qmv::gtk
