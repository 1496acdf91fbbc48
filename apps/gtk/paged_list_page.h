#pragma once
// A page over one of the core's paged lists (a PagedListController screen): its rows in a
// list view that keeps the widgets of unchanged rows, page 1 again on a pull past the top
// or Ctrl+R, the load-more button under the list until the list has ended, and in the
// rows' place the loading, failed or empty state (the screen's empty text). What a page
// adds (a filter, a count) goes into the body above the list; the rows are the screen's, drawn as it keeps them,
// so a failed page leaves them as they were.
#include <functional>
#include <optional>
#include <string>
#include <utility>

#include "apps/gtk/row_list.h"
#include "apps/gtk/screen_page.h"
#include "apps/gtk/ui.h"

namespace qmv::gtk {

template <class Screen, class Row>
class PagedListPage : public ScreenPage {
 public:
  using Texts = std::function<RowTexts(const Row&)>;

  Screen& screen() { return screen_; }
  const RowList<Row>& rows() const { return rows_; }
  void refresh() override {
    if (more_ == nullptr) return;  // still being built
    rows_.assign(screen_.rows());
    const bool ended = screen_.loadMoreFooterHidden();
    showListState(!screen_.rows().empty(), ended, Screen::kEmptyText);
    more_->set_visible(!ended && !screen_.rows().empty());
    setActionEnabled("load-more", !screen_.isLoading());
  }

 protected:
  // `key` tells rows apart (kept widgets follow it); `texts` is how a row is drawn.
  // `args` make the screen.
  template <class... Args>
  PagedListPage(PageContext& context, typename RowList<Row>::Key key, Texts texts, Args&&... args)
      : ScreenPage(context, Screen::kTitle, true),
        screen_(std::forward<Args>(args)...),
        key_(std::move(key)),
        texts_(std::move(texts)),
        rows_(key_, [this](const Row& a, const Row& b) { return drawnAlike(a, b); }) {
    follow(screen_);
    screen_.onLoaded = [this](bool) { refreshSoon(); };
    pullToRefresh([this] { screen_.refresh(); });
    addAction("load-more", [this] {
      screen_.loadMore();
      refreshSoon();
    });
  }

  // Ends the building, after the page's own body: the list named `listName` under it,
  // then page 1 is asked for.
  void start(const std::string& listName) {
    setList(*listView(rows_.model(), actionRowFactory<Row>(texts_), listName));
    more_ = ui::loadMoreButton();
    footer().append(*more_);
    screen_.refresh();
    refresh();
  }

  // The screen's row drawn at list position `position`, found again by its key in the
  // screen's rows, which may have changed since the last redraw; none when it left.
  std::optional<std::size_t> screenRow(guint32 position) const {
    if (position >= rows_.size()) return std::nullopt;
    const std::string key = key_(rows_.at(position));
    for (std::size_t i = 0; i < screen_.rows().size(); ++i) {
      if (key_(screen_.rows()[i]) == key) return i;
    }
    return std::nullopt;
  }

 private:
  bool drawnAlike(const Row& a, const Row& b) const {
    const RowTexts x = texts_(a);
    const RowTexts y = texts_(b);
    return x.title == y.title && x.subtitle == y.subtitle && x.trailing == y.trailing &&
           x.activatable == y.activatable;
  }

  Screen screen_;
  typename RowList<Row>::Key key_;
  Texts texts_;
  RowList<Row> rows_;
  Gtk::Button* more_ = nullptr;
};

}  // namespace qmv::gtk
