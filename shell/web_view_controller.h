#pragma once
// The plain page screen: any one URL under a title the opener gives, with a progress
// bar. Unlike the page host it sets no cookies and lets every link load as it stands.
// An application link ("qmv://login", "qmv://pay?…") is no exception: it fails to load.
// The failure then says so in the client's words and keeps the link, so that the member
// may choose to open its screen (openFailedAppLink): the page itself never decides it.
#include <string>

#include "shell/web_page_screen.h"

namespace qmv {

class WebViewController : public WebPageScreen {
 public:
  WebViewController(std::string title, std::string url) : title_(std::move(title)), url_(std::move(url)) {}

  const std::string& title() const { return title_; }
  const std::string& url() const { return url_; }

  // Makes the web view and loads the URL. Loads end through onLoadEnded.
  void viewDidLoad();
  // Loads the stored URL as it stands.
  void loadURL();

  // The application link whose load failed last; "" after any other load ended.
  const std::string& failedAppLink() const { return failedAppLink_; }
  // Opens the screen of failedAppLink(); false when there is none.
  bool openFailedAppLink();

  bool shouldStartLoadWithRequest(const std::string& url, WebNavigationType type) override;
  void webViewDidFinishLoad() override;
  void didFailLoadWithError(const std::string& error) override;
  const char* loadErrorText() const override;

 private:
  std::string title_;
  std::string url_;
  std::string started_;  // the last URL a load was asked for
  std::string failedAppLink_;
};

}  // namespace qmv
