#include "apps/gtk/favorites_page.h"

#include "apps/gtk/store_rows.h"
#include "apps/gtk/ui.h"

namespace qmv::gtk {

namespace {

using Tab = MyFavoriteViewController::Tab;

RowTexts offerTexts(const ActivityModel& offer) {
  return {offer.name, offer.storeName + "\n" + offer.originalPriceText() + "  " + offer.soldText(),
          offer.labelledPriceText(), !offer.commodityID.empty(), firstPicture(offer)};
}

bool drawnAlike(const FavoriteRow& a, const FavoriteRow& b) {
  return a.texts == b.texts;
}

}  // namespace

FavoritesPage::FavoritesPage(PageContext& context)
    : ScreenPage(context, MyFavoriteViewController::kTitle, true),
      rows_([](const FavoriteRow& row) { return row.key; }, &drawnAlike) {
  followShownTab();
  screen_.stores().onLoaded = [this](bool) { refreshSoon(); };
  screen_.offers().onLoaded = [this](bool) { refreshSoon(); };
  pullToRefresh([this] { screen_.viewWillAppear(); });
  addAction("load-more", [this] {
    if (screen_.tab() == Tab::Stores) {
      screen_.stores().loadMore();
    } else {
      screen_.offers().loadMore();
    }
    refreshSoon();
  });
  addAction("select-tab", Glib::VariantType("i"), [this](const Glib::VariantBase& value) {
    const gint32 tab = Glib::VariantBase::cast_dynamic<Glib::Variant<gint32>>(value).get();
    screen_.selectTab(tab == 0 ? Tab::Stores : Tab::Offers);
    followShownTab();
    refreshSoon();
  });
  addAction("open-row", Glib::VariantType("u"), [this](const Glib::VariantBase& value) {
    const guint32 position = Glib::VariantBase::cast_dynamic<Glib::Variant<guint32>>(value).get();
    if (position >= rows_.size()) return;
    // The screen's rows may have changed since the last redraw: the row is found by its key.
    const std::vector<FavoriteRow> shown = shownRows();
    for (std::size_t i = 0; i < shown.size(); ++i) {
      if (shown[i].key == rows_.at(position).key) {
        screen_.openRow(i);
        return;
      }
    }
  });
  const std::vector<std::string> labels{MyFavoriteViewController::tabTitle(Tab::Stores),
                                        MyFavoriteViewController::tabTitle(Tab::Offers)};
  body().append(*ui::filterBar(labels, "page.select-tab", "tab", tabs_));
  setList(*listView(rows_.model(), actionRowFactory<FavoriteRow>([](const FavoriteRow& row) { return row.texts; }, context.pictures()),
                    "favorites"));
  more_ = ui::loadMoreButton();
  footer().append(*more_);
  refresh();
}

void FavoritesPage::appeared() {
  screen_.viewWillAppear();
  refreshSoon();
}

bool FavoritesPage::isLoading() const {
  return screen_.tab() == Tab::Stores ? screen_.stores().isLoading() : screen_.offers().isLoading();
}

std::vector<FavoriteRow> FavoritesPage::shownRows() const {
  std::vector<FavoriteRow> rows;
  if (screen_.tab() == Tab::Stores) {
    for (const StoreInfoModel& store : screen_.stores().rows()) {
      RowTexts texts = storeRowTexts(store);
      texts.activatable = !store.storeId.empty();  // a row without an id opens nothing
      rows.push_back({"s" + store.storeId, std::move(texts)});
    }
  } else {
    for (const ActivityModel& offer : screen_.offers().rows()) {
      rows.push_back({"o" + offer.commodityID, offerTexts(offer)});
    }
  }
  return rows;
}

void FavoritesPage::followShownTab() {
  if (screen_.tab() == Tab::Stores) {
    follow(screen_.stores());
  } else {
    follow(screen_.offers());
  }
}

void FavoritesPage::refresh() {
  if (more_ == nullptr) return;  // still being built
  std::vector<FavoriteRow> shown = shownRows();
  const bool empty = shown.empty();
  rows_.assign(std::move(shown));
  const bool ended =
      screen_.tab() == Tab::Stores ? screen_.stores().loadMoreFooterHidden() : screen_.offers().loadMoreFooterHidden();
  ui::setActiveFilter(tabs_, screen_.tab() == Tab::Stores ? 0 : 1);
  showListState(!empty, ended, screen_.emptyText());
  more_->set_visible(!ended && !empty);
  setActionEnabled("load-more", !isLoading());
}

}  // namespace qmv::gtk
