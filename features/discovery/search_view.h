#pragma once
// The keyword screen of the nearby tab, headless: the search history under "历史搜索"
// with a "清空" action, or "暂无历史记录" when there is none. Choosing a word (typed or
// from the history) hands it to onSearch, which runs the keyword search.
#include <functional>
#include <string>
#include <vector>

namespace qmv {

class SearchView {
 public:
  SearchView() { reloadHistory(); }

  // Re-reads the stored history (after a search saved a word).
  void reloadHistory();
  const std::vector<std::string>& history() const { return history_; }

  // "历史搜索" above the list; the empty text instead when there is no word.
  std::string headerText() const;
  // "清空" while there is something to clear, else "".
  std::string clearText() const;
  // "暂无历史记录" when the history is empty, else "".
  std::string emptyText() const;

  // The "清空" action: forgets the history.
  void clearHistory();
  // Choosing the history entry `index`; out-of-range entries are ignored.
  void chooseHistory(std::size_t index);
  // Searching what the member typed; an empty text ends the keyword search instead
  // (onClear), the way back to the filtered list.
  void searchText(const std::string& text);

  std::function<void(const std::string& keyword)> onSearch;
  std::function<void()> onClear;

 private:
  std::vector<std::string> history_;
};

}  // namespace qmv
