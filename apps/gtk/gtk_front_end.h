#pragma once
// One start of the graphical client: the shared launch (home, configuration, server or
// embedded sandbox, Linux ports) on GTK's own main context, the client's drawing ports
// (toasts, message dialogs, the page navigator, the window, GeoClue, the file-chooser
// camera), the application delegate, and the main view that draws the navigator's
// screens. The CLI and this client start the same application the same way.
#include <memory>
#include <string>

#include "apps/gtk/page_context.h"
#include "apps/launch/app_launch.h"
#include "platform/env.h"

namespace qmv {
class GLibMainLoop;
class ImageLoader;
class NearbyViewController;
}  // namespace qmv

namespace qmv::gtk {

class DialogAlerts;
class GtkAppWindow;
class LauncherUrlOpener;
class MainView;
class PageNavigator;
class ToastStatusOverlay;

struct FrontEndOptions {
  LaunchOptions launch;
  // Ask GeoClue for the position when no --at position is given.
  bool geoClue = true;
};

class GtkFrontEnd : public PageContext {
 public:
  explicit GtkFrontEnd(FrontEndOptions options);
  ~GtkFrontEnd() override;
  GtkFrontEnd(const GtkFrontEnd&) = delete;
  GtkFrontEnd& operator=(const GtkFrontEnd&) = delete;

  // Prepares the launch, installs the Env and runs start-up.
  // REQUIRES: GTK initialised, called on its thread.
  Status start();
  // Puts the main view into `window` (an AdwApplicationWindow or a plain window) and
  // ties dialogs and the file chooser to it.
  void attach(Gtk::Window& window);
  MainView& view() { return *view_; }

  // An inbound URL (the desktop hands qqqmmmvvv:// URLs to the running instance).
  bool openURL(const std::string& url, const std::string& sourceApplication = "");

  PageNavigator& navigator() override { return *navigator_; }
  AppDelegate& appDelegate() override { return *appDelegate_; }
  Gtk::Window* window() override { return window_; }
  void signedInAgain() override;
  ImageLoader* pictures() override { return pictures_.get(); }
  MapTiles mapTiles() override { return launch_.config().mapTiles(); }

  ToastStatusOverlay& overlay() { return *overlay_; }
  DialogAlerts& alerts() { return *alerts_; }
  LauncherUrlOpener& urlOpener() { return *urlOpener_; }
  const AppLaunch& launch() const { return launch_; }
  GLibMainLoop& loop() { return *loop_; }

 private:
  FrontEndOptions options_;
  AppLaunch launch_;
  std::shared_ptr<GLibMainLoop> loop_;
  Env env_;
  std::unique_ptr<ScopedEnv> installed_;
  std::unique_ptr<ImageLoader> pictures_;
  std::shared_ptr<PageNavigator> navigator_;
  std::shared_ptr<ToastStatusOverlay> overlay_;
  std::shared_ptr<DialogAlerts> alerts_;
  std::shared_ptr<GtkAppWindow> appWindow_;
  std::shared_ptr<LauncherUrlOpener> urlOpener_;
  std::shared_ptr<NearbyViewController> nearby_;
  std::unique_ptr<AppDelegate> appDelegate_;
  std::unique_ptr<MainView> view_;
  Gtk::Window* window_ = nullptr;
};

}  // namespace qmv::gtk
