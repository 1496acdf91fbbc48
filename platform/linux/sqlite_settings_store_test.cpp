#include "platform/linux/sqlite_settings_store.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>
#include <thread>

#include "platform/testing/temp_home.h"

namespace qmv {
namespace {

namespace fs = std::filesystem;

TEST(SqliteSettingsStoreTest, EveryKindSurvivesReopen) {
  TempHome home;
  const std::vector<std::uint8_t> jpeg = {0xff, 0xd8, 0x00, 0x10, 0x00, 0xff, 0xd9};
  {
    auto opened = SqliteSettingsStore::openInHome(home.home());
    ASSERT_TRUE(opened.ok()) << opened.status().message();
    auto& store = *opened->store;
    store.setString("13800000000", "user_phone");
    store.setString("", "empty");
    store.setBool(true, "isLaunched");
    store.setBool(false, "off");
    store.setStringArray({"临沂市", "济南市"}, "record_city");
    store.setData(jpeg, "headerImage_now");
    store.setString("gone", "password");
    store.removeObjectForKey("password");
    store.setString("first", "select_city");
    store.setString("临沂市", "select_city");
    store.setObject(Json(), "off");  // null removes
    EXPECT_TRUE(store.synchronize());
  }
  auto reopened = SqliteSettingsStore::openInHome(home.home());
  ASSERT_TRUE(reopened.ok()) << reopened.status().message();
  auto& store = *reopened->store;
  EXPECT_EQ(store.stringForKey("user_phone"), "13800000000");
  EXPECT_EQ(store.stringForKey("empty"), "");
  EXPECT_TRUE(store.boolForKey("isLaunched"));
  EXPECT_TRUE(store.objectForKey("off").is_null());
  EXPECT_EQ(store.stringArrayForKey("record_city"), (std::vector<std::string>{"临沂市", "济南市"}));
  EXPECT_EQ(store.dataForKey("headerImage_now"), jpeg);
  EXPECT_TRUE(store.objectForKey("password").is_null());
  EXPECT_EQ(store.stringForKey("select_city"), "临沂市");
  // A value of another kind reads as absent through the typed readers.
  EXPECT_FALSE(store.stringForKey("isLaunched").has_value());
  EXPECT_FALSE(store.dataForKey("user_phone").has_value());
  EXPECT_TRUE(reopened->keptAside.empty());
}

TEST(SqliteSettingsStoreTest, DamagedFileIsKeptAsideNotWiped) {
  TempHome home;
  const fs::path file = home.home() / "settings.db";
  const std::string garbage = "this is not a database, but somebody's data" + std::string(4096, 'x');
  std::ofstream(file, std::ios::binary) << garbage;

  auto opened = SqliteSettingsStore::open(file);
  ASSERT_TRUE(opened.ok()) << opened.status().message();
  ASSERT_FALSE(opened->keptAside.empty());
  std::ifstream kept(opened->keptAside, std::ios::binary);
  std::stringstream content;
  content << kept.rdbuf();
  EXPECT_EQ(content.str(), garbage);
  EXPECT_TRUE(opened->store->objectForKey("user_phone").is_null());
  opened->store->setString("x", "k");
  opened->store.reset();

  // The fresh store is a good database on the next start: nothing more is moved aside.
  auto again = SqliteSettingsStore::open(file);
  ASSERT_TRUE(again.ok());
  EXPECT_TRUE(again->keptAside.empty());
  EXPECT_EQ(again->store->stringForKey("k"), "x");
}

TEST(SqliteSettingsStoreTest, UnwritableLocationIsAnError) {
  auto opened = SqliteSettingsStore::open("/proc/qmv-no-such-dir/settings.db");
  EXPECT_FALSE(opened.ok());
  EXPECT_FALSE(opened.status().message().empty());
}

// Runs `write(i)` for i = 0, 1, ... in a forked child that reports each finished i, and
// kills it with SIGKILL at a random moment after `reports` have arrived; returns the
// last i the child reported finished.
template <class Write>
std::uint32_t killWriterAfter(const fs::path& file, std::size_t reports, Write write) {
  int fds[2];
  if (pipe(fds) != 0) return 0;
  const pid_t child = fork();
  if (child == 0) {
    close(fds[0]);
    auto opened = SqliteSettingsStore::open(file);
    if (!opened.ok()) _exit(3);
    for (std::uint32_t i = 0;; ++i) {
      write(*opened->store, i);
      if (::write(fds[1], &i, sizeof i) != sizeof i) _exit(4);
    }
  }
  close(fds[1]);
  std::uint32_t last = 0;
  std::uint32_t value = 0;
  std::size_t reported = 0;
  while (reported < reports && read(fds[0], &value, sizeof value) == sizeof value) {
    last = value;
    ++reported;
  }
  // Not right after a report, where the child has only begun its next write.
  std::this_thread::sleep_for(std::chrono::microseconds(std::random_device{}() % 20000));
  kill(child, SIGKILL);
  int status = 0;
  waitpid(child, &status, 0);
  while (read(fds[0], &value, sizeof value) == sizeof value) last = value;
  close(fds[0]);
  EXPECT_TRUE(WIFSIGNALED(status)) << "writer ended on its own with " << status;
  EXPECT_GE(reported, reports);
  return last;
}

// A writer is killed with SIGKILL in the middle of its writes; every write it had
// finished before must be readable afterwards, with its exact value.
TEST(SqliteSettingsStoreTest, SurvivesKillMidWrite) {
  TempHome home;
  const fs::path file = home.home() / "settings.db";
  const std::uint32_t last = killWriterAfter(file, 700, [](SqliteSettingsStore& store, std::uint32_t i) {
    const std::string key = "k" + std::to_string(i % 500);
    // Cycle the kinds, and rewrite keys so later writes replace earlier rows.
    switch (i % 3) {
      case 0:
        store.setString("v" + std::to_string(i), key);
        break;
      case 1:
        store.setStringArray({"a" + std::to_string(i), "b"}, key);
        break;
      default:
        store.setData(std::vector<std::uint8_t>(i % 64 + 1, static_cast<std::uint8_t>(i)), key);
    }
  });

  auto opened = SqliteSettingsStore::open(file);
  ASSERT_TRUE(opened.ok()) << opened.status().message();
  EXPECT_TRUE(opened->keptAside.empty());
  // For every key, the newest finished write (at or before `last`) must be there; a
  // write the child had begun but not reported may or may not have landed.
  for (std::uint32_t slot = 0; slot < 500; ++slot) {
    std::uint32_t newest = slot;
    if (newest > last) continue;
    while (newest + 500 <= last) newest += 500;
    const std::string key = "k" + std::to_string(slot);
    const Json got = opened->store->objectForKey(key);
    auto matches = [&](std::uint32_t i) {
      switch (i % 3) {
        case 0:
          return got == Json("v" + std::to_string(i));
        case 1:
          return got == Json(std::vector<std::string>{"a" + std::to_string(i), "b"});
        default:
          return got == Json::binary(std::vector<std::uint8_t>(i % 64 + 1, static_cast<std::uint8_t>(i)));
      }
    };
    EXPECT_TRUE(matches(newest) || matches(newest + 500)) << key << " lost its write " << newest;
  }
}

// Keys written together (an account's phone and password) survive a kill together: all
// from the last finished group, or all from the one in progress.
TEST(SqliteSettingsStoreTest, GroupSurvivesKillWhole) {
  TempHome home;
  const fs::path file = home.home() / "settings.db";
  const auto group = [](std::uint32_t i) {
    Json values = {{"user_phone", "1380000" + std::to_string(i)}, {"password", "pw" + std::to_string(i)}};
    for (int k = 0; k < 14; ++k) values["filler" + std::to_string(k)] = i;
    return values;
  };
  const std::uint32_t last = killWriterAfter(
      file, 60, [&group](SqliteSettingsStore& store, std::uint32_t i) {
        if (!store.setObjects(group(i)).ok()) _exit(5);
      });

  auto opened = SqliteSettingsStore::open(file);
  ASSERT_TRUE(opened.ok()) << opened.status().message();
  Json stored = Json::object();
  const Json keys = group(0);
  for (const auto& [key, value] : keys.items()) stored[key] = opened->store->objectForKey(key);
  EXPECT_TRUE(stored == group(last) || stored == group(last + 1)) << stored.dump();
}

// Read-modify-write from several processes at once: no update is lost or refused.
TEST(SqliteSettingsStoreTest, ConcurrentUpdatesFromProcessesAllLand) {
  TempHome home;
  const fs::path file = home.home() / "settings.db";
  ASSERT_TRUE(SqliteSettingsStore::open(file).ok());
  constexpr int kProcesses = 6;
  constexpr int kUpdates = 25;
  std::vector<pid_t> children;
  for (int p = 0; p < kProcesses; ++p) {
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
      auto opened = SqliteSettingsStore::open(file);
      if (!opened.ok()) _exit(3);
      for (int u = 0; u < kUpdates; ++u) {
        const bool ok = opened->store->updateObject("list", [p](Json list) {
          if (!list.is_array()) list = Json::array();
          list.push_back(p);
          return list;
        });
        if (!ok) _exit(4);
      }
      _exit(0);
    }
    children.push_back(child);
  }
  for (const pid_t child : children) {
    int status = 0;
    waitpid(child, &status, 0);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << status;
  }
  const Json list = SqliteSettingsStore::open(file)->store->objectForKey("list");
  ASSERT_TRUE(list.is_array());
  EXPECT_EQ(list.size(), static_cast<std::size_t>(kProcesses * kUpdates));
}

}  // namespace
}  // namespace qmv
