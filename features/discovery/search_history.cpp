#include "features/discovery/search_history.h"

#include "core/common/settings_keys.h"
#include "core/common/utf8.h"
#include "platform/env.h"
#include "platform/settings_store.h"

namespace qmv {

std::vector<std::string> SearchHistory::read() {
  const auto& settings = Env::current().settings;
  return settings->stringArrayForKey(kSearchKeyWordsKey).value_or(std::vector<std::string>{});
}

void SearchHistory::save(const std::string& word) {
  const auto& settings = Env::current().settings;
  if (word.empty() || word.size() > kMaximumWordBytes || !utf8::isValid(word)) return;
  settings->updateObject(kSearchKeyWordsKey, [&word](const Json& stored) {
    Json words = Json::array({word});
    if (stored.is_array()) {
      for (const auto& item : stored) {
        if (words.size() == kMaximumEntries) break;
        if (item.is_string() && item != words.front()) words.push_back(item);
      }
    }
    return words;
  });
  settings->synchronize();
}

void SearchHistory::clear() {
  const auto& settings = Env::current().settings;
  settings->setStringArray({}, kSearchKeyWordsKey);
  settings->synchronize();
}

}  // namespace qmv
