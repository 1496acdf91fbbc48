#include "platform/null_ports.h"

#include "platform/app_window.h"
#include "platform/camera.h"
#include "platform/env.h"
#include "platform/image_decoder.h"
#include "platform/location_source.h"
#include "platform/object_storage.h"
#include "platform/payment_channels.h"
#include "platform/push_service.h"
#include "platform/qr_generator.h"
#include "platform/reachability.h"
#include "platform/reverse_geocoder.h"
#include "platform/text_measurer.h"
#include "platform/url_opener.h"
#include "platform/vendor_sdks.h"
#include "platform/web_view.h"

namespace qmv {
namespace {

class NullPushService : public PushService {
 public:
  void setAlias(const std::string&, const std::string&) override {}
};

// Without a way to ask, the network is taken to be there and a failure is the server's.
class NullReachability : public Reachability {
 public:
  bool isReachable() const override { return true; }
};

class NullLocationSource : public LocationSource {
 public:
  bool locationServicesEnabled() const override { return false; }
  void startUpdatingLocation(UpdateHandler, FailureHandler) override {}
  void stopUpdatingLocation() override {}
};

class NullReverseGeocoder : public ReverseGeocoder {
 public:
  std::optional<Placemark> reverseGeocode(Coordinate) override { return std::nullopt; }
};

// No measured text: the heights it sets stay at zero.
class NullTextMeasurer : public TextMeasurer {
 public:
  double measure(const std::string&, double, double) const override { return 0; }
};

class NullQrGenerator : public QrGenerator {
 public:
  std::optional<QrMatrix> encode(const std::string&) const override { return std::nullopt; }
};

class NullUrlOpener : public UrlOpener {
 public:
  bool canOpenURL(const std::string&) const override { return false; }
  bool openURL(const std::string&) override { return false; }
};

class NullWebViewFactory : public WebViewFactory {
 public:
  std::unique_ptr<WebView> makeWebView() override { return nullptr; }
};

class NullCrashReporter : public CrashReporter {
 public:
  void start(const std::string&) override {}
};

class NullAnalytics : public Analytics {
 public:
  void start(const std::string&, int, const std::string&) override {}
};

class NullSocialSharing : public SocialSharing {
 public:
  void registerApp(const std::string&, const std::vector<std::string>&) override {}
  void share(const std::string&, const std::string&, const std::string&, const std::string&) override {}
};

// Answers at once, before download() returns: a caller that has nothing to wait for
// goes on in the same turn, as it would had it never asked.
class NullObjectStorage : public ObjectStorage {
 public:
  void download(const std::string&, std::function<void(std::optional<Bytes>)> completion) override {
    if (completion) completion(std::nullopt);
  }
  void upload(const std::string&, const Bytes&, std::function<void(bool)> completion) override {
    if (completion) completion(false);
  }
};

class NullCamera : public Camera {
 public:
  bool isAvailable() const override { return false; }
  void scanQrCode(std::function<void(std::optional<std::string>)> completion) override {
    if (completion) completion(std::nullopt);
  }
};

class NullAppWindow : public AppWindow {
 public:
  void setLooks(const AppLooks&) override {}
  void showLaunchView(const std::string&, const std::string&) override {}
  void removeLaunchView() override {}
  bool isLaunchViewShown() const override { return false; }
  void removeCachedImage(const std::string&) override {}
  void clearBadge() override {}
};

// No decoder: every picture is one this platform cannot read.
class NullImageDecoder : public ImageDecoder {
 public:
  Result<ImageSize> readSize(std::string_view, const ImageLimits&) const override { return refusal(); }
  Result<DecodedImage> decode(std::string_view, const ImageLimits&, ImageSize) const override { return refusal(); }
  Result<std::string> encodeJpeg(const DecodedImage&, int) const override {
    return Status::unavailable("no picture encoder on this platform");
  }
  Result<std::string> encodePng(const DecodedImage&) const override {
    return Status::unavailable("no picture encoder on this platform");
  }

 private:
  static Status refusal() { return imageFailure(ImageError::kUnsupported, "no picture decoder on this platform"); }
};

template <typename Null, typename Port>
void fill(std::shared_ptr<Port>& port) {
  if (!port) port = std::make_shared<Null>();
}

}  // namespace

void fillOptionalPorts(Env& env) {
  fill<NullPushService>(env.push);
  fill<NullReachability>(env.reachability);
  fill<NullLocationSource>(env.location);
  fill<NullReverseGeocoder>(env.geocoder);
  fill<NullTextMeasurer>(env.textMeasurer);
  fill<NullQrGenerator>(env.qrGenerator);
  fill<NullUrlOpener>(env.urlOpener);
  fill<NullWebViewFactory>(env.webViews);
  fill<PaymentChannels>(env.payments);  // no channel set: none to pay with
  fill<NullCrashReporter>(env.crashReporter);
  fill<NullAnalytics>(env.analytics);
  fill<NullSocialSharing>(env.sharing);
  fill<NullObjectStorage>(env.objectStorage);
  fill<NullCamera>(env.camera);
  fill<NullAppWindow>(env.window);
  fill<NullImageDecoder>(env.imageDecoder);
}

const char* missingEssentialPort(const Env& env) {
  if (!env.mainLoop) return "mainLoop";
  if (!env.http) return "http";
  if (!env.cookies) return "cookies";
  if (!env.settings) return "settings";
  if (!env.files) return "files";
  if (!env.clock) return "clock";
  if (!env.notifications) return "notifications";
  if (!env.navigator) return "navigator";
  if (!env.alerts) return "alerts";
  if (!env.overlay) return "overlay";
  return nullptr;
}

}  // namespace qmv
