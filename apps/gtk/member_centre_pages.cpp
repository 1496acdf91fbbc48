#include "apps/gtk/member_centre_pages.h"

namespace qmv::gtk {

namespace {

// Messages carry no id: their time, title and words tell them apart.
std::string newsKey(const NewsInfoModel& news) { return news.time + '\n' + news.title + '\n' + news.content; }

RowTexts newsTexts(const NewsInfoModel& news) {
  return {news.title, news.content + "\n" + news.time,
          MyNewsViewController::isUnread(news) ? MyNewsViewController::kUnreadMark : "", false};
}

}  // namespace

MessagesPage::MessagesPage(PageContext& context) : PagedListPage(context, &newsKey, &newsTexts) { start("messages"); }

void MessagesPage::appeared() {
  if (appearedBefore_) screen().viewWillAppear();
  appearedBefore_ = true;
}

FeedbackPage::FeedbackPage(PageContext& context) : ScreenPage(context, FeedbackViewController::kTitle, true) {
  follow(screen_);
  screen_.onFinished = [this](bool) { refreshSoon(); };
  auto* form = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::VERTICAL, 8);
  // A text view has no placeholder of its own: a dim label over it while it is empty.
  text_ = Gtk::make_managed<Gtk::TextView>();
  text_->set_name("feedback");
  text_->set_wrap_mode(Gtk::WrapMode::WORD_CHAR);
  text_->set_accepts_tab(false);
  text_->set_size_request(-1, 160);
  text_->set_left_margin(8);
  text_->set_right_margin(8);
  text_->set_top_margin(8);
  text_->set_bottom_margin(8);
  ui::setAccessibleLabel(*text_, member_centre_texts::kFeedbackPlaceholder);
  text_->get_buffer()->signal_changed().connect([this] {
    screen_.contentText = text_->get_buffer()->get_text();
    refresh();
  });
  hint_ = ui::label(member_centre_texts::kFeedbackPlaceholder, "dim-label");
  hint_->set_valign(Gtk::Align::START);
  hint_->set_margin(8);
  hint_->set_can_target(false);
  auto* overlay = Gtk::make_managed<Gtk::Overlay>();
  overlay->set_child(*text_);
  overlay->add_overlay(*hint_);
  auto* frame = Gtk::make_managed<Gtk::Frame>();
  frame->set_child(*overlay);
  form->append(*frame);
  count_ = ui::label("", "dim-label", false);
  count_->set_name("count");
  count_->set_xalign(1);
  form->append(*count_);
  auto* contact = ui::entry(member_centre_texts::kContactPlaceholder, screen_.contactText,
                            [this](const std::string& t) { screen_.contactText = t; });
  contact->set_name("contact");
  ui::setAccessibleLabel(*contact, member_centre_texts::kContactPlaceholder);
  form->append(*contact);
  submit_ = submitButton(member_centre_texts::kSubmit, [this] { screen_.submitAction(); });
  form->append(*submit_);
  body().append(*form);
  refresh();
}

void FeedbackPage::refresh() {
  if (submit_ == nullptr) return;  // still being built
  hint_->set_visible(screen_.contentText.empty());
  count_->set_text(screen_.countText());
  submit_->set_sensitive(!screen_.isSending());
}

}  // namespace qmv::gtk
