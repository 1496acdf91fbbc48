#include "apps/gtk/web_page_view.h"

#include "apps/gtk/ui.h"
#include "shell/h5_texts.h"
#include "shell/qx_h5_view_controller.h"
#include "shell/web_view_controller.h"

namespace qmv::gtk {

WebPageView::WebPageView() : Gtk::Box(Gtk::Orientation::VERTICAL) {
  set_vexpand(true);
  progress_.set_name("progress");
  progress_.add_css_class("osd");
  progress_.set_visible(false);
  append(progress_);
  error_.set_name("load-error");
  error_.add_css_class("error");
  error_.set_wrap(true);
  error_.set_visible(false);
  append(error_);
  text_.set_name("page-text");
  text_.set_margin(12);
  pageText_.set_xalign(0);
  pageText_.set_wrap(true);
  pageText_.set_wrap_mode(Pango::WrapMode::WORD_CHAR);
  text_.append(pageText_);
  append(text_);
  // Loads also start inside the page (a tapped link): the bar follows the view while shown.
  signal_map().connect([this] {
    if (!poll_.connected()) poll_ = Glib::signal_timeout().connect([this] { return pollProgress(); }, 100);
  });
  signal_unmap().connect([this] { poll_.disconnect(); });
}

WebPageView::~WebPageView() {
  poll_.disconnect();
  if (screen_ != nullptr) screen_->onLoadEnded = nullptr;
}

void WebPageView::attach(WebPageScreen& screen) {
  screen_ = &screen;
  screen.onLoadEnded = [this] { refresh(); };
  if (auto* drawn = dynamic_cast<DrawnWebView*>(screen.webView())) {
    GtkWidget* widget = drawn->widget();
    gtk_widget_set_vexpand(widget, TRUE);
    gtk_widget_set_hexpand(widget, TRUE);
    gtk_box_append(GTK_BOX(gobj()), widget);
    drawn_ = true;
    text_.set_visible(false);
  }
  refresh();
}

bool WebPageView::pollProgress() {
  if (screen_ == nullptr || screen_->webView() == nullptr) return true;
  const bool loading = screen_->webView()->isLoading();
  progress_.set_visible(loading);
  if (loading) progress_.set_fraction(screen_->progress());
  return true;
}

void WebPageView::refresh() {
  if (screen_ == nullptr) return;
  pollProgress();
  error_.set_text(screen_->loadErrorText());
  error_.set_visible(!screen_->loadError().empty());
  if (!drawn_ && screen_->webView() != nullptr) {
    // The text and link buttons are set again by position: a redraw of the same page
    // keeps the button the member is on.
    const WebPage& page = screen_->webView()->page();
    pageText_.set_text(page.text);
    pageText_.set_visible(!page.text.empty());
    while (links_.size() > page.links.size()) {
      text_.remove(*links_.back());
      links_.pop_back();
    }
    for (std::size_t i = 0; i < page.links.size(); ++i) {
      if (i == links_.size()) {
        links_.push_back(ui::button("", [this, i] {
          if (screen_ != nullptr && screen_->webView() != nullptr) screen_->webView()->tapLink(i);
        }, "flat"));
        text_.append(*links_.back());
      }
      links_[i]->set_label(page.links[i].text);
      links_[i]->set_tooltip_text(page.links[i].url);
    }
  }
  if (onRefreshed) onRefreshed();
}

H5Page::H5Page(PageContext& context, long h5Type)
    : ScreenPage(context, "", true), screen_(std::make_unique<QXH5ViewController>(h5Type)) {
  fillPage();
  follow(*screen_);
  // Back steps through the page's own history first.
  setBackAction([this] { screen_->goBack(); });
  view_.onRefreshed = [this] { setTitle(screen_->title()); };
  body().append(view_);
  screen_->viewDidLoad();
  view_.attach(*screen_);
}

H5Page::~H5Page() = default;

void H5Page::refresh() { view_.refresh(); }

PlainWebPage::PlainWebPage(PageContext& context, const std::string& title, const std::string& url)
    : ScreenPage(context, title, true), screen_(std::make_unique<WebViewController>(title, url)) {
  fillPage();
  openInApp_ = ui::button(h5_texts::kOpenAppLink, [this] { screen_->openFailedAppLink(); }, "suggested-action");
  openInApp_->set_name("open-app-link");
  openInApp_->set_halign(Gtk::Align::CENTER);
  openInApp_->set_visible(false);
  body().append(*openInApp_);
  view_.onRefreshed = [this] { openInApp_->set_visible(!screen_->failedAppLink().empty()); };
  body().append(view_);
  screen_->viewDidLoad();
  view_.attach(*screen_);
}

PlainWebPage::~PlainWebPage() = default;

void PlainWebPage::refresh() { view_.refresh(); }

}  // namespace qmv::gtk
