#pragma once
// The headless web view of Linux: fetches pages over the client's HTTP port (so the
// shared cookie store's cookies go along, and completions land on the main loop) and
// reads them with the HTML reader. Only http and https pages load; any other scheme
// and any answer outside 200..299 fails the load with a readable error.
#include <memory>

#include "platform/history_web_view.h"
#include "platform/http_transport.h"

namespace qmv {

class TransportWebView : public HistoryWebView {
 public:
  // `http` null: the transport installed in Env when a page is fetched.
  explicit TransportWebView(std::shared_ptr<HttpTransport> http = nullptr) : http_(std::move(http)) {}
  ~TransportWebView() override;

 protected:
  void fetch(const std::string& url, FetchCompletion done) override;
  void cancelFetch() override;

 private:
  std::shared_ptr<HttpTransport> http_;
  std::shared_ptr<HttpTransport> sending_;  // the transport of the running fetch
  TransferId transfer_ = 0;
  std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);
};

class TransportWebViewFactory : public WebViewFactory {
 public:
  explicit TransportWebViewFactory(std::shared_ptr<HttpTransport> http = nullptr) : http_(std::move(http)) {}
  std::unique_ptr<WebView> makeWebView() override { return std::make_unique<TransportWebView>(http_); }

 private:
  std::shared_ptr<HttpTransport> http_;
};

}  // namespace qmv
