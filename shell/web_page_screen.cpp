#include "shell/web_page_screen.h"

#include "core/common/log.h"
#include "platform/env.h"
#include "shell/h5_texts.h"

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

const char* WebPageScreen::loadErrorText() const { return loadError_.empty() ? "" : h5_texts::kPageLoadFailed; }

void WebPageScreen::webViewDidFinishLoad() {
  loadError_.clear();
  if (onLoadEnded) onLoadEnded();
}

void WebPageScreen::didFailLoadWithError(const std::string& error) {
  loadError_ = error;
  if (logLineEnabled()) logLine("page not loaded: " + error);
  if (onLoadEnded) onLoadEnded();
}

}  // namespace qmv
