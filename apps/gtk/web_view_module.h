#pragma once
// The web views of the graphical client. WebKitGTK's come from a module loaded the first
// time a page is opened: linking WebKit into the client would load it on every start,
// which costs a third of the start's memory and time whether a page is opened or not.
// Without the module (not built, or not beside the executable) pages fall back to the
// headless web view.
#include <memory>
#include <string>

#include "platform/web_view.h"

namespace qmv {
class CookieStore;
}

// What the module exports: a factory of WebKit page views that put `cookies` into their
// session before each load. The caller owns the factory; the module stays loaded.
extern "C" qmv::WebViewFactory* qmv_webkit_web_view_factory(const std::shared_ptr<qmv::CookieStore>* cookies);

namespace qmv::gtk {

class ModuleWebViewFactory : public WebViewFactory {
 public:
  ModuleWebViewFactory(std::string modulePath, std::shared_ptr<CookieStore> cookies,
                       std::shared_ptr<WebViewFactory> fallback)
      : modulePath_(std::move(modulePath)), cookies_(std::move(cookies)), fallback_(std::move(fallback)) {}

  // The module of this name installed under <prefix>/lib/qmv/modules, else beside the running executable.
  static std::string besideExecutable(const std::string& name);

  std::unique_ptr<WebView> makeWebView() override;
  // Whether the module was loaded (false before the first page).
  bool loaded() const { return module_ != nullptr; }

 private:
  std::string modulePath_;
  std::shared_ptr<CookieStore> cookies_;
  std::shared_ptr<WebViewFactory> fallback_;
  std::unique_ptr<WebViewFactory> module_;
  bool tried_ = false;
};

}  // namespace qmv::gtk
