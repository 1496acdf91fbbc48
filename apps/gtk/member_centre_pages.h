#pragma once
// The member's messages and his feedback. The messages page with the load-more button,
// newest first, unread rows marked; a pull reloads page 1. The feedback form: the text
// (several lines) with its counter, the optional contact, and submit; the screen's
// refusals and its thanks are toasts, and it pops the page itself.
#include "apps/gtk/paged_list_page.h"
#include "features/member/feedback_view_controller.h"
#include "features/member/my_news_view_controller.h"

namespace qmv::gtk {

// Building it asks page 1; each later appearance (back from the login screen) is the
// screen's own, which reads the messages again.
class MessagesPage : public PagedListPage<MyNewsViewController, NewsInfoModel> {
 public:
  explicit MessagesPage(PageContext& context);
  void appeared() override;

 private:
  bool appearedBefore_ = false;
};

class FeedbackPage : public ScreenPage {
 public:
  explicit FeedbackPage(PageContext& context);
  void refresh() override;

 private:
  FeedbackViewController screen_;
  Gtk::TextView* text_ = nullptr;
  Gtk::Label* hint_ = nullptr;
  Gtk::Label* count_ = nullptr;
  Gtk::Button* submit_ = nullptr;
};

}  // namespace qmv::gtk
