#pragma once
// The plain page screen: any one URL under a title the opener gives, with a progress
// bar. Unlike the page host it sets no cookies and lets every link load as it stands.
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

 private:
  std::string title_;
  std::string url_;
};

}  // namespace qmv
