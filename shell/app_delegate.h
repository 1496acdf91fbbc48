#pragma once
// The application delegate: runs once at process start (crash reporter, push, keyboard,
// the "changeBaseUrl" observer, base URL, overlay style, reachability, analytics,
// sharing, messaging-app registration, looks, then the first-run guide or the main tabs
// and the 3-second launch image), and is the one entry for inbound URLs from payment
// applications and for the home screen's jumps to other tabs. Interface thread only.
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "core/common/json.h"
#include "features/discovery/nearby_handoff.h"
#include "platform/main_loop.h"
#include "platform/notification_center.h"
#include "shell/app_config.h"
#include "shell/tab_bar_view_controller.h"

namespace qmv {

class MainViewController;

class AppDelegate {
 public:
  static constexpr MainLoop::Duration kLaunchImageDuration{3000};
  static constexpr MainLoop::Duration kNearbyHandoffDelay{100};
  // How long postPaySuccessLater waits, so the payment library's own screen has
  // closed before the pay-now screen reacts.
  static constexpr MainLoop::Duration kPaySuccessDelay{500};

  explicit AppDelegate(AppConfig config);
  ~AppDelegate();
  AppDelegate(const AppDelegate&) = delete;
  AppDelegate& operator=(const AppDelegate&) = delete;

  // application:didFinishLaunchingWithOptions:
  bool didFinishLaunchingWithOptions(const Json& launchOptions = nullptr);
  void showMainTabs();       // the system's jump2MainViewCtrl
  void showLaunchImage();    // the system's setLunchImage
  void removeLaunchImage();  // the system's removeLun
  // The "changeBaseUrl" handler: the user info's "type" becomes the base URL.
  void changeBaseUrl(const Json& userInfo);
  void applicationWillEnterForeground();

  // Inbound URL, first match wins: the messaging application's source (whose library
  // reads the URL itself), then the application's own scheme with exactly the host
  // "safepay" (payment result), "platformapi" (authorisation result) or "uppayresult"
  // (bank-card result): no user information, port or fragment. Returns whether a
  // handler took it.
  bool openURL(const std::string& url, const std::string& sourceApplication);
  // The messaging application's payment response: 0 posts "pay_success_noti" and shows
  // "支付成功" (unless a pay-now screen waits for the payment and says it), else
  // "支付失败".
  void onResp(int errCode);
  void postPaySuccessLater();  // the system's postPaySuccessNotiDelay

  // Jumps requested by the home screen. A jump to a nearby screen whose view does not
  // exist yet is delivered 0.1 s later, unless the delegate has gone by then.
  void changeToCircles();  // the system's changeToCirecles
  void changeToNearWithType(const std::string& typeId);
  void changeToNearWithKey(const std::string& keyword);
  void deliverNearbyCategory();  // the system's jump2nearByTypeThread
  void deliverNearbyKeyword();   // the system's jump2nearByKeyThread

  // The nearby screen the home's jumps reach: the one a front end draws (handed in before
  // the start, which then keeps it) or a test's fake (handed in after it, replacing the
  // one showMainTabs built when none was given).
  void setNearbyCtrl(std::shared_ptr<NearbyHandoff> nearby) { nearbyCtrl_ = std::move(nearby); }

  const AppConfig& config() const { return config_; }
  // Null until the main tabs are shown.
  TabBarViewController* tabBarViewCtrl() { return tabBarViewCtrl_ ? &*tabBarViewCtrl_ : nullptr; }
  // The home and nearby screens of the main tabs; null until the tabs are shown. A front
  // end loads a screen's view when it shows its tab.
  MainViewController* mainCtrl() { return mainCtrl_.get(); }
  NearbyHandoff* nearbyCtrl() { return nearbyCtrl_.get(); }
  // The order whose payment just succeeded.
  std::string successOrderID;

 private:
  void initPush(const Json& launchOptions);
  void initShare();

  // Runs `jump` after the hand-off delay; the timer dies with the delegate.
  void handOffLater(void (AppDelegate::*jump)());

  AppConfig config_;
  std::optional<TabBarViewController> tabBarViewCtrl_;
  std::unique_ptr<MainViewController> mainCtrl_;
  std::shared_ptr<NearbyHandoff> nearbyCtrl_;
  std::string currentType_;
  std::string currentKey_;
  NotificationCenter::ObserverToken changeBaseUrlToken_ = 0;
  MainLoop::TimerId launchTimer_ = 0;
  std::vector<MainLoop::TimerId> handOffTimers_;
};

}  // namespace qmv
