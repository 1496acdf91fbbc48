#include "features/discovery/search_view.h"

#include "features/discovery/discovery_texts.h"
#include "features/discovery/search_history.h"

namespace qmv {

void SearchView::reloadHistory() { history_ = SearchHistory::read(); }

std::string SearchView::headerText() const { return history_.empty() ? "" : discovery_texts::kHistoryTitle; }

std::string SearchView::clearText() const { return history_.empty() ? "" : discovery_texts::kHistoryClear; }

std::string SearchView::emptyText() const { return history_.empty() ? discovery_texts::kHistoryEmpty : ""; }

void SearchView::clearHistory() {
  SearchHistory::clear();
  reloadHistory();
}

void SearchView::chooseHistory(std::size_t index) {
  if (index >= history_.size()) return;
  const std::string word = history_[index];
  if (onSearch) onSearch(word);
}

void SearchView::searchText(const std::string& text) {
  if (text.empty()) {
    if (onClear) onClear();
    return;
  }
  if (onSearch) onSearch(text);
}

}  // namespace qmv
