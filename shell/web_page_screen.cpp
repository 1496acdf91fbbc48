#include "shell/web_page_screen.h"

#include "platform/env.h"

namespace qmv {

WebPageScreen::~WebPageScreen() {
  if (webView_) {
    webView_->setDelegate(nullptr);
    webView_->stopLoading();
  }
}

bool WebPageScreen::makeWebView() {
  if (webView_) return true;
  webView_ = Env::current().webViews->makeWebView();
  if (!webView_) {
    loadError_ = "no web view on this platform";
    return false;
  }
  webView_->setDelegate(this);
  return true;
}

void WebPageScreen::webViewDidFinishLoad() {
  loadError_.clear();
  if (onLoadEnded) onLoadEnded();
}

void WebPageScreen::didFailLoadWithError(const std::string& error) {
  loadError_ = error;
  if (onLoadEnded) onLoadEnded();
}

}  // namespace qmv
