#include "apps/gtk/account_centre_pages.h"

#include <algorithm>
#include <cmath>

#include "apps/gtk/ui.h"
#include "core/session/account_texts.h"

namespace qmv::gtk {

ChangePasswordPage::ChangePasswordPage(PageContext& context)
    : ScreenPage(context, ChangePasswordViewController::kTitle, true) {
  follow(screen_);
  screen_.onFinished = [this](bool) { refreshSoon(); };
  auto* form = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::VERTICAL, 8);
  const struct {
    const char* name;
    const char* placeholder;
    std::string* text;
  } fields[] = {{"old-password", account_centre_texts::kOldPasswordPlaceholder, &screen_.oldPasswordText},
                {"new-password", account_texts::kNewPasswordPlaceholder, &screen_.newPasswordText},
                {"confirm", account_texts::kConfirmPlaceholder, &screen_.confirmText}};
  for (const auto& field : fields) {
    std::string* text = field.text;
    auto* entry = ui::entry(
        field.placeholder, *text, [text](const std::string& t) { *text = t; }, true);
    entry->set_name(field.name);
    ui::setAccessibleLabel(*entry, field.placeholder);
    form->append(*entry);
  }
  submit_ = submitButton(account_texts::kSubmitButton, [this] { screen_.submitAction(); });
  form->append(*submit_);
  body().append(*form);
  refresh();
}

void ChangePasswordPage::refresh() {
  if (submit_ == nullptr) return;  // still being built
  submit_->set_sensitive(!screen_.isSending());
}

MemberLevelPage::MemberLevelPage(PageContext& context) : ScreenPage(context, MemberLevelViewController::kTitle, true) {
  follow(screen_);
  auto* panel = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::VERTICAL, 8);
  level_ = ui::label("", "title-1");
  level_->set_name("level");
  level_->set_xalign(0.5);
  panel->append(*level_);
  progress_ = Gtk::make_managed<Gtk::ProgressBar>();
  progress_->set_name("progress");
  panel->append(*progress_);
  experience_ = ui::label("", "", false);
  experience_->set_name("experience");
  experience_->set_xalign(0.5);
  panel->append(*experience_);
  remaining_ = ui::label("", "dim-label");
  remaining_->set_name("remaining");
  remaining_->set_xalign(0.5);
  panel->append(*remaining_);
  body().append(*panel);
  auto* entries = ui::boxedList();
  entries->set_name("level-page");
  ui::addRow(*entries, MemberLevelViewController::kLevelPageEntry, "", "", [this] { screen_.openLevelPage(); });
  body().append(*entries);
  refresh();
}

void MemberLevelPage::refresh() {
  if (remaining_ == nullptr) return;  // still being built
  level_->set_text(screen_.levelText());
  experience_->set_text(screen_.experienceText());
  remaining_->set_text(screen_.remainingText());
  // The record is shown as held; only the bar's own range is enforced.
  const double progress = screen_.progress();
  progress_->set_fraction(std::isfinite(progress) ? std::clamp(progress, 0.0, 1.0) : 0.0);
  ui::setAccessibleLabel(*progress_, screen_.levelText() + " " + screen_.experienceText());
  progress_->set_visible(screen_.hasMember());
}

}  // namespace qmv::gtk
