#pragma once
// The page host, headless: shows one of the server's six pages by type with the
// member's session and the device's identity as cookies, takes the shown page's own
// title at the start and end of every load (the type's title when it has none), goes
// back in the page's history before leaving, and turns two application links into
// native screens: "qmv://login" presents the login screen; "qmv://pay?productId=..&
// series=..&acount=.." opens the pay-now screen for that draw (the login screen when
// nobody is signed in). Interface thread only.
#include <optional>
#include <string>
#include <vector>

#include "core/session/base_view_controller.h"
#include "platform/cookie_store.h"
#include "shell/web_page_screen.h"

namespace qmv {

struct ShareContent {
  std::string url;
  std::string image;
  std::string title;
  std::string text;
};

class QXH5ViewController : public BaseViewController, public WebPageScreen {
 public:
  // The type picks the page and the title shown until the page names its own; a type
  // outside the table has no page.
  explicit QXH5ViewController(long h5Type);

  long h5Type() const { return h5Type_; }
  const std::string& title() const { return title_; }
  // The web host followed by the type's path; "" for an unknown type or no web host.
  std::string pageUrl() const;

  // Navigation bar, cookies, then the page. Loads end through onLoadEnded.
  void viewDidLoad();
  // The back button, and the share button on the pages that can be shared.
  void setupNavigation();
  // Puts the session (when someone is signed in), the version and the device's identity
  // into the shared cookie store for the web host, path "/". Without a session, an old
  // session cookie for the host is removed. Values a cookie cannot carry are left out.
  void setCookie();
  // The member signed in or out since the cookies were set: they are set again and the
  // page loads again, so that it never goes on showing the member before. False when the
  // session is the cookies' one or no page was loaded. A front end calls it whenever the
  // page is shown (the community tab lives as long as the application).
  bool followSession();
  // Back in the page's history when it has one (the bar is rebuilt), else pops the screen.
  void goBack();
  // Pull-to-refresh of the community page: loads the shown page again.
  void refreshAction();
  // Hands the page to the share panel (types 0 and 1 only).
  void shareAction();
  std::optional<ShareContent> shareContent() const;
  // The community page's new post: pushes the publishing screen.
  void publishAction();

  bool shouldStartLoadWithRequest(const std::string& url, WebNavigationType type) override;
  void webViewDidStartLoad() override;
  void webViewDidFinishLoad() override;

  std::string backImage;    // set by setupNavigation
  bool shareShown = false;  // set by setupNavigation
  bool whiteBackground = false;
  bool refreshHeader = false;  // the pull-to-refresh header on the page
  // What setCookie put into the store, in order.
  const std::vector<Cookie>& cookies() const { return cookies_; }

 private:
  void takeDocumentTitle();

  long h5Type_;
  std::string title_;
  std::vector<Cookie> cookies_;
  std::optional<std::string> cookieSession_;  // the session setCookie last put in
};

}  // namespace qmv
