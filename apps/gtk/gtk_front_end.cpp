#include "apps/gtk/gtk_front_end.h"

#include <adwaita.h>

#include "apps/gtk/dialog_alerts.h"
#include "apps/gtk/geoclue_location_source.h"
#include "apps/gtk/gtk_ports.h"
#include "apps/gtk/main_view.h"
#include "apps/gtk/page_navigator.h"
#include "apps/gtk/tab_bar_page.h"
#include "apps/gtk/toast_status_overlay.h"
#include "apps/gtk/web_view_module.h"
#include "core/images/image_loader.h"
#include "features/discovery/nearby_view_controller.h"
#include "platform/linux/glib_main_loop.h"
#include "platform/linux/thread_work_queue.h"
#include "shell/app_delegate.h"

namespace qmv::gtk {

namespace {
// Decoded pictures kept for the pages: a screenful of thumbnails, the banners and a
// browsed picture or two at full size.
constexpr std::size_t kPictureMemoryBytes = std::size_t{32} << 20;
}  // namespace

GtkFrontEnd::GtkFrontEnd(FrontEndOptions options)
    : options_(std::move(options)), launch_([this] {
        LaunchOptions launch = options_.launch;
        // The sandbox's payment applications return to this instance.
        launch.openURL = [this](const std::string& url, const std::string& source) { openURL(url, source); };
        return launch;
      }()) {}

GtkFrontEnd::~GtkFrontEnd() {
  // Pages hold screens whose requests and observers go through the installed ports: the
  // view goes first (its pictures' tickets with it), then the delegate, the picture
  // loader, the ports, then (in launch_) the sandbox.
  if (window_ != nullptr) window_->unset_child();
  view_.reset();
  appDelegate_.reset();
  nearby_.reset();
  pictures_.reset();
  installed_.reset();
  env_ = Env{};
}

Status GtkFrontEnd::start() {
  if (Status prepared = launch_.prepare(); !prepared.ok()) return prepared;
  loop_ = std::make_shared<GLibMainLoop>();
  if (Status built = launch_.buildEnv(loop_, env_); !built.ok()) return built;
  navigator_ = std::make_shared<PageNavigator>();
  overlay_ = std::make_shared<ToastStatusOverlay>();
  alerts_ = std::make_shared<DialogAlerts>();
  appWindow_ = std::make_shared<GtkAppWindow>();
  urlOpener_ = std::make_shared<LauncherUrlOpener>();
  env_.navigator = navigator_;
  env_.overlay = overlay_;
  env_.alerts = alerts_;
  env_.window = appWindow_;
  env_.urlOpener = urlOpener_;
#ifdef QMV_WEBKIT_MODULE
  env_.webViews = std::make_shared<ModuleWebViewFactory>(ModuleWebViewFactory::besideExecutable(QMV_WEBKIT_MODULE),
                                                         env_.cookies, env_.webViews);
#endif
  env_.camera = std::make_shared<FileChooserCamera>([this] { return window_; });
  if (options_.geoClue && !launch_.fixedPosition()) {
    env_.location = std::make_shared<GeoClueLocationSource>(env_.location);
  }
  installed_ = std::make_unique<ScopedEnv>(env_);
  ImageLoaderOptions pictureOptions;
  pictureOptions.memoryBytes = kPictureMemoryBytes;
  pictureOptions.objectStoreBase = launch_.config().objectStorageHost;
  pictures_ = std::make_unique<ImageLoader>(env_, std::make_shared<ThreadWorkQueue>(2), pictureOptions);

  nearby_ = std::make_shared<NearbyViewController>();
  view_ = std::make_unique<MainView>(*this, nearby_);
  overlay_->attach(view_->toastOverlay());
  navigator_->onChange = [this] { view_->queueSync(); };
  appWindow_->onLaunchView = [this](bool shown, const std::string& url) { view_->showLaunchView(shown, url); };
  appWindow_->onRemoveCachedImage = [this](const std::string& url) {
    if (pictures_) pictures_->forget(url);
  };

  auto actions = Gio::SimpleActionGroup::create();
  actions->add_action("back", [this] { navigator_->back(); });
  view_->insert_action_group("win", actions);

  appDelegate_ = std::make_unique<AppDelegate>(launch_.config());
  appDelegate_->setNearbyCtrl(nearby_);
  appDelegate_->didFinishLaunchingWithOptions();
  view_->sync();
  return {};
}

void GtkFrontEnd::attach(Gtk::Window& window) {
  window_ = &window;
  alerts_->attach(window.gobj());
  if (ADW_IS_APPLICATION_WINDOW(window.gobj())) {
    adw_application_window_set_content(ADW_APPLICATION_WINDOW(window.gobj()), GTK_WIDGET(view_->gobj()));
  } else {
    window.set_child(*view_);
  }
}

bool GtkFrontEnd::openURL(const std::string& url, const std::string& sourceApplication) {
  return appDelegate_ && appDelegate_->openURL(url, sourceApplication);
}

void GtkFrontEnd::signedInAgain() {
  if (view_ && view_->tabBar()) view_->tabBar()->appeared();
}

}  // namespace qmv::gtk
