#include "shell/web_view_controller.h"

#include "shell/app_links.h"
#include "shell/h5_texts.h"

namespace qmv {

void WebViewController::viewDidLoad() {
  if (!makeWebView()) return failWithoutLoading(loadError());
  loadURL();
}

void WebViewController::loadURL() {
  started_ = url_;
  if (webView() && !webView()->loadRequest(url_)) failWithoutLoading("the page was not loaded");
}

bool WebViewController::shouldStartLoadWithRequest(const std::string& url, WebNavigationType /*type*/) {
  started_ = url;
  return true;
}

void WebViewController::webViewDidFinishLoad() {
  failedAppLink_.clear();
  WebPageScreen::webViewDidFinishLoad();
}

void WebViewController::didFailLoadWithError(const std::string& error) {
  failedAppLink_ = isAppLink(started_) ? started_ : std::string();
  WebPageScreen::didFailLoadWithError(error);
}

const char* WebViewController::loadErrorText() const {
  return failedAppLink_.empty() ? WebPageScreen::loadErrorText() : h5_texts::kAppLinkOnPlainPage;
}

bool WebViewController::openFailedAppLink() { return openAppLink(failedAppLink_); }

}  // namespace qmv
