#include "features/discovery/search_history.h"

#include <algorithm>

#include "core/session/settings_keys.h"
#include "platform/env.h"
#include "platform/settings_store.h"

namespace qmv {

std::vector<std::string> SearchHistory::read() {
  const auto& settings = Env::current().settings;
  if (!settings) return {};
  return settings->stringArrayForKey(kSearchKeyWordsKey).value_or(std::vector<std::string>{});
}

void SearchHistory::save(const std::string& word) {
  const auto& settings = Env::current().settings;
  if (word.empty() || !settings) return;
  std::vector<std::string> words = read();
  std::erase(words, word);
  words.insert(words.begin(), word);
  if (words.size() > kMaximumEntries) words.pop_back();
  settings->setStringArray(words, kSearchKeyWordsKey);
  settings->synchronize();
}

void SearchHistory::clear() {
  const auto& settings = Env::current().settings;
  if (!settings) return;
  settings->setStringArray({}, kSearchKeyWordsKey);
  settings->synchronize();
}

}  // namespace qmv
