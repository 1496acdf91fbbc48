#include "apps/gtk/store_page.h"

#include "apps/gtk/gtk_texts.h"
#include "apps/gtk/store_rows.h"
#include "apps/gtk/ui.h"
#include "features/discovery/discovery_texts.h"

namespace qmv::gtk {

StorePage::StorePage(PageContext& context, const std::string& storeId, const std::string& storeName)
    : ScreenPage(context, storeName, true), screen_(storeId, storeName) {
  follow(screen_);
  screen_.onLoaded = [this](bool) { refreshSoon(); };
  screen_.onBookmarked = [this](bool) { refreshSoon(); };
  addAction("show-address", [this] { screen_.showAddress(); });
  addAction("call", [this] { screen_.callStore(); });
  addAction("bookmark", [this] {
    if (!settingFavorite_) screen_.bookmark();
  });
  addAction("open-offer", Glib::VariantType("s"), [this](const Glib::VariantBase& value) {
    const std::string id = Glib::VariantBase::cast_dynamic<Glib::Variant<Glib::ustring>>(value).get();
    if (!screen_.store()) return;
    const auto& offers = screen_.store()->activityList;
    for (std::size_t i = 0; i < offers.size(); ++i) {
      if (offers[i].commodityID == id) return screen_.selectActivity(i);
    }
  });
  addAction("more-comments", [this] { screen_.showMoreComments(); });

  name_ = ui::label("", "title-1");
  pictures_ = ui::label("", "dim-label");
  content_.append(*name_);
  content_.append(strip_);
  content_.append(*pictures_);
  content_.append(info_.widget());
  auto* actions = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::HORIZONTAL, 6);
  favorite_.set_icon_name("starred-symbolic");
  favorite_.set_name("bookmark");
  ui::nameIcon(favorite_, gtk_texts::kBookmark);
  favorite_.set_action_name("page.bookmark");
  actions->append(favorite_);
  content_.append(*actions);
  offersHeading_ = ui::label(discovery_texts::kOffersSection, "heading");
  content_.append(*offersHeading_);
  content_.append(offers_.widget());
  commentsHeading_ = ui::label("", "heading");
  content_.append(*commentsHeading_);
  content_.append(comments_.widget());
  body().append(content_);

  screen_.loadDetail();
  refresh();
}

void StorePage::refresh() {
  namespace texts = discovery_texts;
  setTitle(screen_.storeName());
  const auto& store = screen_.store();
  content_.set_visible(store.has_value());
  if (!store) return;
  name_->set_text(store->storeName);
  pictures_->set_text(screen_.pictureCountText());
  std::vector<std::string> urls;
  for (const std::string& url : store->imgURLList) {
    if (url.find_first_not_of(" \t") != std::string::npos) urls.push_back(url);
  }
  strip_.setUrls(std::move(urls));
  info_.assign({{{store->address, screen_.openingHoursText(), screen_.perPersonText(), true}, "page.show-address", {}},
                {{store->phone.empty() ? texts::kNoPhone : store->phone, "", "", true}, "page.call", {}}});
  settingFavorite_ = true;
  favorite_.set_active(store->favorite == "1");
  settingFavorite_ = false;

  std::vector<BoxedRow> offers;
  for (const ActivityModel& offer : store->activityList) {
    offers.push_back({{offer.name, offer.originalPriceText() + "  " + offer.soldText(), offer.labelledPriceText(), true,
                       firstPicture(offer)},
                      "page.open-offer", offer.commodityID});
  }
  offersHeading_->set_visible(!offers.empty());
  offers_.widget().set_visible(!offers.empty());
  offers_.assign(std::move(offers));

  commentsHeading_->set_text(std::string(texts::kCommentsSection) + "  " + screen_.commentCountText());
  std::vector<BoxedRow> comments;
  for (const GradeModel& grade : screen_.gradeList()) {
    comments.push_back({{grade.nickName + "  " + grade.star + "★", grade.content + "\n" + grade.time, "", false}, "", {}});
  }
  comments.push_back({{texts::kMoreComments, "", "", true}, "page.more-comments", {}});
  comments_.assign(std::move(comments));
}

}  // namespace qmv::gtk
