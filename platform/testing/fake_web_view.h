#pragma once
// Web views for tests. Pages come from a site the test scripts (URL -> page); a URL the
// site lacks fails to load. Every fetch is recorded with the shared cookie store's
// cookies for the page's host (host-only ones of that host, domain ones above it; paths
// are not looked at). Loads end from the installed main loop, as real ones do.
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "core/common/url_parts.h"
#include "platform/cookie_store.h"
#include "platform/env.h"
#include "platform/history_web_view.h"
#include "platform/main_loop.h"

namespace qmv {

struct FakeSite {
  struct Fetch {
    std::string url;
    std::vector<Cookie> cookies;
  };
  std::map<std::string, WebPage> pages;
  std::vector<Fetch> fetches;
};

class FakeWebView : public HistoryWebView {
 public:
  explicit FakeWebView(std::shared_ptr<FakeSite> site) : site_(std::move(site)) {}

 protected:
  void fetch(const std::string& url, FetchCompletion done) override {
    const Env& env = Env::current();
    const std::string host = urlHost(url);
    std::vector<Cookie> sent;
    for (const Cookie& c : env.cookies->cookies()) {
      if (c.domain == host || (!c.hostOnly && host.ends_with("." + c.domain))) sent.push_back(c);
    }
    site_->fetches.push_back({url, std::move(sent)});
    const auto found = site_->pages.find(url);
    std::optional<WebPage> page;
    if (found != site_->pages.end()) {
      page = found->second;
      page->url = url;
    }
    env.mainLoop->post([page, done = std::move(done)] {
      done(page ? Result<WebPage>(*page) : Result<WebPage>(Status::notFound("no such page")));
    });
  }
  void cancelFetch() override {}

 private:
  std::shared_ptr<FakeSite> site_;
};

class FakeWebViewFactory : public WebViewFactory {
 public:
  std::unique_ptr<WebView> makeWebView() override { return std::make_unique<FakeWebView>(site); }
  std::shared_ptr<FakeSite> site = std::make_shared<FakeSite>();
};

}  // namespace qmv
