#pragma once
// What the page screens draw: the load's progress, then the web view itself when the
// platform's view is a widget (WebKitGTK), else the shown page's text with its links as
// buttons that tap them. A failed load shows why.
#include <gtkmm.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "apps/gtk/drawn_web_view.h"
#include "apps/gtk/screen_page.h"

namespace qmv {
class QXH5ViewController;
class WebPageScreen;
class WebViewController;
}  // namespace qmv

namespace qmv::gtk {

class WebPageView : public Gtk::Box {
 public:
  WebPageView();
  ~WebPageView() override;

  // Shows `screen`'s page from now on and redraws when its loads end. The screen
  // outlives this widget.
  void attach(WebPageScreen& screen);
  bool attached() const { return screen_ != nullptr; }
  // Redraws from the screen: progress, the page or its text, the last error.
  void refresh();
  // After every redraw (the page's title may have changed).
  std::function<void()> onRefreshed;

 private:
  bool pollProgress();

  WebPageScreen* screen_ = nullptr;
  Gtk::ProgressBar progress_;
  Gtk::Label error_;
  Gtk::Box text_{Gtk::Orientation::VERTICAL, 6};
  Gtk::Label pageText_;
  std::vector<Gtk::Button*> links_;  // link i's button, kept across redraws
  bool drawn_ = false;
  sigc::connection poll_;
};

// The page host of one page type (QXH5ViewController), pushed with "h5Type".
class H5Page : public ScreenPage {
 public:
  H5Page(PageContext& context, long h5Type);
  ~H5Page() override;
  void refresh() override;
  QXH5ViewController& screen() { return *screen_; }

 private:
  std::unique_ptr<QXH5ViewController> screen_;
  WebPageView view_;
};

// The plain page screen (WebViewController): one URL under the opener's title, with no
// cookies given and every link loaded as it stands.
class PlainWebPage : public ScreenPage {
 public:
  PlainWebPage(PageContext& context, const std::string& title, const std::string& url);
  ~PlainWebPage() override;
  void refresh() override;
  WebViewController& screen() { return *screen_; }

 private:
  std::unique_ptr<WebViewController> screen_;
  WebPageView view_;
  Gtk::Button* openInApp_ = nullptr;  // shown under a failed application link
};

}  // namespace qmv::gtk
