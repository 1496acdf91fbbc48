#pragma once
// Every port of the platform edge, behind one object. The core reaches the platform only
// through Env::current(); a front end installs real adapters at start, and a test
// installs fakes (or forwards to the real ones to inject a single fault) with ScopedEnv.
// Installing refuses a null essential port and gives a null optional one its null object.
#include <memory>

namespace qmv {

class MainLoop;
class HttpTransport;
class CookieStore;
class SettingsStore;
class FileLocations;
class Clock;
class NotificationCenter;
class StatusOverlay;
class Navigator;
class Alerts;
class PushService;
class Reachability;
class LocationSource;
class ReverseGeocoder;
class TextMeasurer;
class QrGenerator;
class UrlOpener;
class WebViewFactory;
struct PaymentChannels;
class CrashReporter;
class Analytics;
class SocialSharing;
class ObjectStorage;
class Camera;
class AppWindow;
class ImageDecoder;

struct Env {
  std::shared_ptr<MainLoop> mainLoop;
  std::shared_ptr<HttpTransport> http;
  std::shared_ptr<CookieStore> cookies;
  std::shared_ptr<SettingsStore> settings;
  std::shared_ptr<FileLocations> files;
  std::shared_ptr<Clock> clock;
  std::shared_ptr<NotificationCenter> notifications;
  std::shared_ptr<StatusOverlay> overlay;
  std::shared_ptr<Navigator> navigator;
  std::shared_ptr<Alerts> alerts;
  std::shared_ptr<PushService> push;
  std::shared_ptr<Reachability> reachability;
  std::shared_ptr<LocationSource> location;
  std::shared_ptr<ReverseGeocoder> geocoder;
  std::shared_ptr<TextMeasurer> textMeasurer;
  std::shared_ptr<QrGenerator> qrGenerator;
  std::shared_ptr<UrlOpener> urlOpener;
  std::shared_ptr<WebViewFactory> webViews;  // one web view per screen
  std::shared_ptr<PaymentChannels> payments;
  std::shared_ptr<CrashReporter> crashReporter;
  std::shared_ptr<Analytics> analytics;
  std::shared_ptr<SocialSharing> sharing;
  std::shared_ptr<ObjectStorage> objectStorage;
  std::shared_ptr<Camera> camera;
  std::shared_ptr<AppWindow> window;
  std::shared_ptr<ImageDecoder> imageDecoder;

  // The installed environment. REQUIRES: called on the interface thread, or after
  // installation has finished when called from a worker.
  static Env& current();
  static void install(Env env);
};

// Installs `env` for its lifetime and restores the previous one afterwards.
class ScopedEnv {
 public:
  explicit ScopedEnv(Env env);
  ~ScopedEnv();
  ScopedEnv(const ScopedEnv&) = delete;
  ScopedEnv& operator=(const ScopedEnv&) = delete;

 private:
  Env previous_;
};

}  // namespace qmv
