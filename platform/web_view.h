#pragma once
// The web view port: shows one server page at a time with a history to go back in. The
// requests it sends carry the shared cookie store's cookies for the page's host, so a
// screen hands a page its session by setting cookies before loading. Before any page is
// loaded the owner's delegate decides whether it may be (the hook through which screens
// turn application URLs into native flows), then hears of the load's start, progress,
// end or failure. Everything runs on the interface thread; delegate calls never arrive
// from inside loadRequest() or tapLink(), only later from the main loop.
#include <cstddef>
#include <memory>
#include <string>
#include <vector>

namespace qmv {

struct WebLink {
  std::string text;  // the link's text, whitespace collapsed
  std::string url;   // the target, resolved against the page
};

// What the view shows: the page address, "document.title" ("" when the page has none),
// its links in document order and its visible text, one line per block.
struct WebPage {
  std::string url;
  std::string title;
  std::vector<WebLink> links;
  std::string text;
};

enum class WebNavigationType { LinkClicked, BackForward, Reload, Other };

class WebViewDelegate {
 public:
  virtual ~WebViewDelegate() = default;
  // False drops the navigation: nothing loads and the shown page stays.
  virtual bool shouldStartLoadWithRequest(const std::string& /*url*/, WebNavigationType /*type*/) { return true; }
  virtual void webViewDidStartLoad() {}
  virtual void webViewDidFinishLoad() {}
  virtual void didFailLoadWithError(const std::string& /*error*/) {}
  // From 0 to 1 over each load; 1 once it has ended either way.
  virtual void updateProgress(double /*progress*/) {}
};

class WebView {
 public:
  virtual ~WebView() = default;

  // Not owned; must outlive the view or be cleared first.
  virtual void setDelegate(WebViewDelegate* delegate) = 0;
  // Asks the delegate (type Other) and loads `url`, stopping a load still running. Returns
  // whether the load started.
  virtual bool loadRequest(const std::string& url) = 0;
  // Loads the shown page again in place. False when nothing is shown or it was refused.
  virtual bool reload() = 0;
  // Stops a running load; its result is dropped and no delegate call follows.
  virtual void stopLoading() = 0;
  virtual bool isLoading() const = 0;

  virtual bool canGoBack() const = 0;
  // Loads the previous page of the history (type BackForward). False when there is none.
  virtual bool goBack() = 0;

  // The page shown now; during a load, still the previous one (empty before the first).
  virtual const WebPage& page() const = 0;
  // Evaluates "document.title" on the shown page.
  const std::string& documentTitle() const { return page().title; }
  // A load has ended with a page on show.
  bool hasShownPage() const { return !isLoading() && !page().url.empty(); }

  // A tap on link `index` of page().links: asks the delegate (type LinkClicked) and loads
  // the target when allowed. False when there is no such link or it was not loaded.
  virtual bool tapLink(std::size_t index) = 0;
};

// Makes the web views of the screens; each screen owns its own.
class WebViewFactory {
 public:
  virtual ~WebViewFactory() = default;
  virtual std::unique_ptr<WebView> makeWebView() = 0;
};

}  // namespace qmv
