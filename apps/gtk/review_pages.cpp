#include "apps/gtk/review_pages.h"

namespace qmv::gtk {

namespace {

// Ratings carry no id of their own: the store, the member, the day and the words.
std::string gradeKey(const GradeModel& g) {
  return g.storeId + '\n' + g.userName + '\n' + g.time + '\n' + g.content;
}

RowTexts commentTexts(const GradeModel& g) {
  const std::string& who = g.nickName.empty() ? g.userName : g.nickName;
  return {who + "  " + UserCommitViewController::starsText(g.star), g.content + "\n" + g.time, "", false};
}

RowTexts ratingTexts(const GradeModel& g) {
  return {g.storeName + "  " + UserCommitViewController::starsText(g.star), g.content + "\n" + g.time, "",
          MyGradeViewController::leadsToStore(g)};
}

}  // namespace

CommentsPage::CommentsPage(PageContext& context, const std::string& storeId)
    : PagedListPage(context, &gradeKey, &commentTexts, storeId) {
  addAction("select-star", Glib::VariantType("i"), [this](const Glib::VariantBase& value) {
    screen().selectStar(Glib::VariantBase::cast_dynamic<Glib::Variant<gint32>>(value).get());
    refreshSoon();
  });
  body().append(*ui::filterBar(UserCommitViewController::starFilters(), "page.select-star", "star", stars_));
  count_ = ui::label("", "dim-label", false);
  count_->set_name("count");
  body().append(*count_);
  start("comments");
}

void CommentsPage::refresh() {
  PagedListPage::refresh();
  if (count_ == nullptr) return;  // still being built
  ui::setActiveFilter(stars_, screen().star());
  count_->set_text(screen().countText());
  count_->set_visible(!screen().countText().empty());
}

MyRatingsPage::MyRatingsPage(PageContext& context) : PagedListPage(context, &gradeKey, &ratingTexts) {
  addAction("open-row", Glib::VariantType("u"), [this](const Glib::VariantBase& value) {
    if (const auto row = screenRow(Glib::VariantBase::cast_dynamic<Glib::Variant<guint32>>(value).get())) {
      screen().openRow(*row);
    }
  });
  start("ratings");
}

}  // namespace qmv::gtk
