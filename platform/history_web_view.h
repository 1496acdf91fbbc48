#pragma once
// The part of a web view every platform shares: the history and its back step, one load
// at a time, the navigation decision and the delegate's calls. A subclass only fetches
// and reads pages. The decision and webViewDidStartLoad come from inside the call that
// starts a load; its end comes later, from the main loop.
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "core/common/result.h"
#include "platform/web_view.h"

namespace qmv {

class HistoryWebView : public WebView {
 public:
  // The page read, or why there is none (its message is what the screen shows).
  using FetchCompletion = std::function<void(Result<WebPage> page)>;

  HistoryWebView() = default;
  HistoryWebView(const HistoryWebView&) = delete;
  HistoryWebView& operator=(const HistoryWebView&) = delete;

  void setDelegate(WebViewDelegate* delegate) override { delegate_ = delegate; }
  bool loadRequest(const std::string& url) override;
  bool reload() override;
  void stopLoading() override;
  bool isLoading() const override { return pending_.has_value(); }
  bool canGoBack() const override { return !history_.empty() && index_ > 0; }
  bool goBack() override;
  const WebPage& page() const override;
  bool tapLink(std::size_t index) override;

 protected:
  // Fetches and reads the page at `url`. `done` runs once, from the main loop, unless
  // cancelFetch() came first (a late call after that is ignored here anyway).
  virtual void fetch(const std::string& url, FetchCompletion done) = 0;
  virtual void cancelFetch() = 0;

 private:
  struct Pending {
    std::uint64_t id;
    WebNavigationType type;
    std::size_t target;  // history slot a back or reload fills
  };

  bool navigate(const std::string& url, WebNavigationType type, std::size_t target);
  void finished(std::uint64_t id, Result<WebPage> page);

  WebViewDelegate* delegate_ = nullptr;
  std::vector<WebPage> history_;
  std::size_t index_ = 0;
  std::optional<Pending> pending_;
  std::uint64_t nextLoad_ = 1;
  // Completions and delegate calls that outlive the view check this first.
  std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);
};

}  // namespace qmv
