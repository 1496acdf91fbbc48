#include "apps/gtk/store_page.h"

#include "apps/gtk/ui.h"
#include "features/discovery/discovery_texts.h"

namespace qmv::gtk {

StorePage::StorePage(PageContext& context, const std::string& storeId, const std::string& storeName)
    : ScreenPage(context, storeName, true), screen_(storeId, storeName) {
  follow(screen_);
  screen_.onLoaded = [this](bool) { refreshSoon(); };
  screen_.onBookmarked = [this](bool) { refreshSoon(); };
  screen_.loadDetail();
  refresh();
}

void StorePage::refresh() {
  namespace texts = discovery_texts;
  setTitle(screen_.storeName());
  ui::clear(body());
  const auto& store = screen_.store();
  if (!store) return;
  body().append(*ui::label(store->storeName, "title-1"));
  body().append(*ui::label(screen_.pictureCountText(), "dim-label"));

  auto* info = ui::boxedList();
  ui::addRow(*info, store->address, screen_.openingHoursText(), screen_.perPersonText(), [this] { screen_.showAddress(); });
  ui::addRow(*info, store->phone.empty() ? texts::kNoPhone : store->phone, "", "", [this] { screen_.callStore(); });
  body().append(*info);

  auto* actions = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::HORIZONTAL, 6);
  auto* favorite = Gtk::make_managed<Gtk::ToggleButton>();
  favorite->set_icon_name("starred-symbolic");
  favorite->set_name("bookmark");
  favorite->set_active(store->favorite == "1");
  favorite->signal_clicked().connect([this] { screen_.bookmark(); });
  actions->append(*favorite);
  body().append(*actions);

  if (!store->activityList.empty()) {
    body().append(*ui::label(texts::kOffersSection, "heading"));
    auto* offers = ui::boxedList();
    offers->set_name("offers");
    for (std::size_t i = 0; i < store->activityList.size(); ++i) {
      const ActivityModel& offer = store->activityList[i];
      ui::addRow(*offers, offer.name, offer.originalPriceText() + "  " + offer.soldText(), offer.priceText(),
                 [this, i] { screen_.selectActivity(i); });
    }
    body().append(*offers);
  }

  body().append(*ui::label(std::string(texts::kCommentsSection) + "  " + screen_.commentCountText(), "heading"));
  auto* comments = ui::boxedList();
  for (const GradeModel& grade : screen_.gradeList()) {
    ui::addRow(*comments, grade.nickName + "  " + grade.star + "★", grade.content + "\n" + grade.time);
  }
  ui::addRow(*comments, texts::kMoreComments, "", "", [this] { screen_.showMoreComments(); });
  body().append(*comments);
}

}  // namespace qmv::gtk
