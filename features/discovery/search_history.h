#pragma once
// The member's store-search keywords, newest first, at most ten, without repeats, kept
// in the settings under "searchKeyWords" so that they survive a restart.
#include <string>
#include <vector>

namespace qmv {

class SearchHistory {
 public:
  static constexpr std::size_t kMaximumEntries = 10;

  SearchHistory() = delete;

  // The stored words, newest first; none without a settings store.
  static std::vector<std::string> read();
  // Moves `word` to the front (adding it when new), drops the oldest beyond ten, saves
  // and synchronises. An empty word changes nothing.
  static void save(const std::string& word);
  // Forgets every word.
  static void clear();
};

}  // namespace qmv
