#pragma once
// The member's store-search keywords, newest first, at most ten, without repeats, kept
// in the settings under "searchKeyWords" so that they survive a restart.
#include <string>
#include <vector>

namespace qmv {

class SearchHistory {
 public:
  static constexpr std::size_t kMaximumEntries = 10;
  // Longer words are searched for but not remembered: the history is a list to tap, and
  // a pasted page of text would weigh on every later start.
  static constexpr std::size_t kMaximumWordBytes = 256;

  SearchHistory() = delete;

  // The stored words, newest first.
  static std::vector<std::string> read();
  // Moves `word` to the front (adding it when new), drops the oldest beyond ten, saves
  // and synchronises, as one update of the stored list, so that searches running at the
  // same time in other processes keep their words too. An empty word, a word longer than
  // kMaximumWordBytes or one that is not UTF-8 changes nothing.
  static void save(const std::string& word);
  // Forgets every word.
  static void clear();
};

}  // namespace qmv
