#include "features/discovery/search_history.h"

#include <gtest/gtest.h>

#include "core/common/settings_keys.h"
#include "features/discovery/search_view.h"
#include "platform/linux/sqlite_settings_store.h"
#include "platform/testing/temp_home.h"
#include "platform/testing/test_env.h"

namespace qmv {
namespace {

TEST(SearchHistory, NewestFirstWithoutRepeatsAndAtMostTen) {
  TempHome home;
  SearchHistory::save("");
  EXPECT_TRUE(SearchHistory::read().empty()) << "an empty word is not kept";
  EXPECT_FALSE(home.settings().objectForKey(kSearchKeyWordsKey).is_array());

  for (int i = 1; i <= 3; ++i) SearchHistory::save("w" + std::to_string(i));
  EXPECT_EQ(SearchHistory::read(), (std::vector<std::string>{"w3", "w2", "w1"}));
  const int syncs = home.settings().synchronizeCount();
  SearchHistory::save("w1");
  EXPECT_EQ(SearchHistory::read(), (std::vector<std::string>{"w1", "w3", "w2"})) << "moved, not repeated";
  EXPECT_GT(home.settings().synchronizeCount(), syncs);

  for (int i = 4; i <= 11; ++i) SearchHistory::save("w" + std::to_string(i));
  const auto words = SearchHistory::read();
  ASSERT_EQ(words.size(), 10u);
  EXPECT_EQ(words.front(), "w11");
  EXPECT_EQ(words.back(), "w3") << "the eleventh distinct word drops the oldest (w2)";
  EXPECT_EQ(std::count(words.begin(), words.end(), "w2"), 0);

  // A stored value of another kind reads as no history and is replaced on save.
  home.settings().setObject(Json("not a list"), kSearchKeyWordsKey);
  EXPECT_TRUE(SearchHistory::read().empty());
  SearchHistory::save("新");
  EXPECT_EQ(SearchHistory::read(), std::vector<std::string>{"新"});
}

// Two runs of the client on one home, each with the store it opened at its start: a
// word saved by one is kept when the other saves its own.
TEST(SearchHistory, RunsSharingAHomeKeepEachOthersWords) {
  TempHome home;
  auto first = SqliteSettingsStore::openInHome(home.home());
  auto second = SqliteSettingsStore::openInHome(home.home());
  ASSERT_TRUE(first.ok() && second.ok());
  for (auto* store : {first->store.get(), second->store.get(), first->store.get()}) {
    Env env = Env::current();
    env.settings = std::shared_ptr<SettingsStore>(store, [](SettingsStore*) {});
    ScopedEnv scoped(completedForTesting(env));
    SearchHistory::save(store == second->store.get() ? "火锅" : "KTV");
  }
  EXPECT_EQ(SqliteSettingsStore::openInHome(home.home())->store->stringArrayForKey(kSearchKeyWordsKey),
            (std::vector<std::string>{"KTV", "火锅"}));

  // Words that are no words to tap are searched for but not kept.
  SearchHistory::save(std::string(SearchHistory::kMaximumWordBytes + 1, 'k'));
  SearchHistory::save("\xff");
  EXPECT_TRUE(SearchHistory::read().empty());
  SearchHistory::save(std::string(SearchHistory::kMaximumWordBytes, 'k'));
  EXPECT_EQ(SearchHistory::read().size(), 1u);
}

TEST(SearchView, ShowsHistoryOrItsEmptyTextAndHandsChoicesOver) {
  TempHome home;
  SearchView empty;
  EXPECT_EQ(empty.emptyText(), "暂无历史记录");
  EXPECT_EQ(empty.headerText(), "");
  EXPECT_EQ(empty.clearText(), "");

  SearchHistory::save("火锅");
  SearchHistory::save("KTV");
  SearchView view;
  std::vector<std::string> searched;
  view.onSearch = [&](const std::string& word) { searched.push_back(word); };
  int cleared = 0;
  view.onClear = [&] { ++cleared; };
  EXPECT_EQ(view.headerText(), "历史搜索");
  EXPECT_EQ(view.clearText(), "清空");
  EXPECT_EQ(view.emptyText(), "");
  view.chooseHistory(1);
  view.chooseHistory(5);  // out of range: ignored
  view.searchText("");
  view.searchText("电影");
  EXPECT_EQ(searched, (std::vector<std::string>{"火锅", "电影"}));
  EXPECT_EQ(cleared, 1) << "an empty search ends the keyword search";

  view.clearHistory();
  EXPECT_TRUE(view.history().empty());
  EXPECT_EQ(view.emptyText(), "暂无历史记录");
  EXPECT_TRUE(SearchHistory::read().empty());
}

}  // namespace
}  // namespace qmv
