#pragma once
// What the two page screens share: a web view of their own from the platform, the
// progress bar its loads feed, and how the last load ended. A front end draws the
// progress and the web view's page; onLoadEnded tells it (and the command line) that a
// load has finished or failed.
#include <functional>
#include <memory>
#include <string>

#include "platform/web_view.h"

namespace qmv {

class WebPageScreen : public WebViewDelegate {
 public:
  WebPageScreen() = default;
  ~WebPageScreen() override;
  WebPageScreen(const WebPageScreen&) = delete;
  WebPageScreen& operator=(const WebPageScreen&) = delete;

  // Null before the view has loaded, or when the platform has no web views.
  WebView* webView() const { return webView_.get(); }
  double progress() const { return progress_; }
  // Why the last load failed, for the log and the command line (the web view's or the
  // transport's words, often English); "" once a load has finished.
  const std::string& loadError() const { return loadError_; }
  // What the member reads instead while loadError() is set; "" otherwise.
  virtual const char* loadErrorText() const;

  void updateProgress(double progress) override { progress_ = progress; }
  void webViewDidFinishLoad() override;
  void didFailLoadWithError(const std::string& error) override;

  std::function<void()> onLoadEnded;

 protected:
  // Makes the screen's web view once, with this screen as its delegate. False (and
  // loadError set) when the platform has none.
  bool makeWebView();
  // Ends a load that could not start (nothing to load) the way a failed one ends.
  void failWithoutLoading(const std::string& error) { didFailLoadWithError(error); }

 private:
  std::unique_ptr<WebView> webView_;
  double progress_ = 0;
  std::string loadError_;
};

}  // namespace qmv
