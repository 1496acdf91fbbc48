#pragma once
// The web view port on WebKitGTK. The shared cookie store's cookies go into the view's
// network session before each load the core asks for; WebKit's navigation decisions go
// to the delegate (so "qmv://" links reach the screens instead of WebKit), and its load
// events, progress and the page's title, links and text come back the port's way.
// Built as a module of its own (see web_view_module.h): nothing here may need the core's
// library, only its headers' inline parts.
#include <memory>
#include <string>

#include "apps/gtk/drawn_web_view.h"
#include "platform/web_view.h"

typedef struct _WebKitWebView WebKitWebView;
typedef struct _WebKitNetworkSession WebKitNetworkSession;
typedef struct _WebKitPolicyDecision WebKitPolicyDecision;
typedef struct _GCancellable GCancellable;

namespace qmv {
class CookieStore;
}

namespace qmv::gtk {

class WebKitPageView : public WebView, public DrawnWebView {
 public:
  WebKitPageView(WebKitNetworkSession* session, std::shared_ptr<CookieStore> cookies);
  ~WebKitPageView() override;
  WebKitPageView(const WebKitPageView&) = delete;
  WebKitPageView& operator=(const WebKitPageView&) = delete;

  void setDelegate(WebViewDelegate* delegate) override { delegate_ = delegate; }
  bool loadRequest(const std::string& url) override;
  bool reload() override;
  void stopLoading() override;
  bool isLoading() const override { return loading_; }
  bool canGoBack() const override;
  bool goBack() override;
  const WebPage& page() const override { return page_; }
  bool tapLink(std::size_t index) override;

  GtkWidget* widget() override;

  // WebKit's hooks; public for the C callbacks only.
  bool decide(WebKitPolicyDecision* decision, int kind);
  void loadChanged(int event);
  bool loadFailed(const std::string& message, bool cancelled);
  void progressChanged();
  void pageRead(const std::string& json);

 private:
  void load(const std::string& url);
  void resetCancellable();

  WebKitWebView* view_;
  WebKitNetworkSession* session_;
  std::shared_ptr<CookieStore> cookies_;
  WebViewDelegate* delegate_ = nullptr;
  GCancellable* cancellable_ = nullptr;
  WebPage page_;
  // The URL the delegate already allowed, so that WebKit's own decision for it does not
  // ask a second time.
  std::string allowed_;
  bool loading_ = false;
  bool failed_ = false;
};

// One network session (in memory) for every page view of the client.
class WebKitWebViewFactory : public WebViewFactory {
 public:
  explicit WebKitWebViewFactory(std::shared_ptr<CookieStore> cookies) : cookies_(std::move(cookies)) {}
  ~WebKitWebViewFactory() override;
  std::unique_ptr<WebView> makeWebView() override;

 private:
  std::shared_ptr<CookieStore> cookies_;
  WebKitNetworkSession* session_ = nullptr;
};

}  // namespace qmv::gtk
