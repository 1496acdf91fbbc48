#include "shell/web_view_controller.h"

namespace qmv {

void WebViewController::viewDidLoad() {
  if (!makeWebView()) return failWithoutLoading(loadError());
  loadURL();
}

void WebViewController::loadURL() {
  if (webView() && !webView()->loadRequest(url_)) failWithoutLoading("the page was not loaded");
}

}  // namespace qmv
