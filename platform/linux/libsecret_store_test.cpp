// The keyring adapter against a real Secret Service. ctest runs these cases once more
// inside a private session bus with GNOME Keyring (scripts/with-keyring, which sets
// QMV_TEST_KEYRING); elsewhere the keyring cases skip, and the headless case checks that
// a session without a bus falls back at once.
#include "platform/linux/libsecret_store.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <fstream>
#include <iterator>

#include "platform/keyring_settings_store.h"
#include "platform/linux/sqlite_settings_store.h"
#include "platform/testing/temp_home.h"

namespace qmv {
namespace {

bool keyringExpected() { return std::getenv("QMV_TEST_KEYRING") != nullptr; }

std::string fileBytes(const std::filesystem::path& path) {
  std::ifstream in(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(in), {});
}

TEST(LibsecretStoreTest, KeepsLooksUpAndForgetsSecretsOfOneHomeOnly) {
  if (!keyringExpected()) GTEST_SKIP() << "no private keyring (scripts/with-keyring)";
  LibsecretStore home("/tmp/qmv-keyring-test/a");
  LibsecretStore other("/tmp/qmv-keyring-test/b");
  ASSERT_TRUE(home.store("id-1", "qmv test", "s3cret 密码")) << home.failure();
  EXPECT_EQ(home.lookup("id-1").answer, SecretStore::Answer::found);
  EXPECT_EQ(home.lookup("id-1").secret, "s3cret 密码");
  EXPECT_EQ(other.lookup("id-1").answer, SecretStore::Answer::absent) << "another home's secret";
  ASSERT_TRUE(home.store("id-1", "qmv test", "replaced"));
  EXPECT_EQ(home.lookup("id-1").secret, "replaced");
  const auto kept = home.kept();
  ASSERT_TRUE(kept);
  ASSERT_EQ(kept->size(), 1u) << "one item per id, of this home only";
  EXPECT_EQ(kept->front().id, "id-1");
  EXPECT_LT(std::chrono::abs(std::chrono::system_clock::now() - kept->front().created), std::chrono::minutes(1));
  EXPECT_TRUE(home.remove("id-1"));
  EXPECT_EQ(home.lookup("id-1").answer, SecretStore::Answer::absent);
  EXPECT_TRUE(home.remove("id-1")) << "nothing to forget is no failure";
  EXPECT_EQ(home.failure(), "");
}

TEST(LibsecretStoreTest, PasswordInTheSettingsFileMovesIntoTheKeyringAndLeavesNoCopy) {
  if (!keyringExpected()) GTEST_SKIP() << "no private keyring (scripts/with-keyring)";
  TempHome home;
  {
    auto opened = SqliteSettingsStore::openInHome(home.home());
    ASSERT_TRUE(opened.ok()) << opened.status().message();
    opened->store->setObjects(Json{{"user_phone", "13800000000"}, {"password", "plain-pass-1"}});
  }
  ASSERT_NE(fileBytes(home.home() / "settings.db").find("plain-pass-1"), std::string::npos);
  {
    auto opened = SqliteSettingsStore::openInHome(home.home());
    ASSERT_TRUE(opened.ok()) << opened.status().message();
    KeyringSettingsStore store(std::move(opened->store), std::make_shared<LibsecretStore>(home.home().string()),
                               {"password"}, "qmv test ");
    EXPECT_EQ(store.moveSecretsToKeyring(), 1);
    EXPECT_EQ(store.stringForKey("password"), "plain-pass-1");
  }
  // Closed: the journal is folded into the file, and the old row's bytes are gone.
  EXPECT_EQ(fileBytes(home.home() / "settings.db").find("plain-pass-1"), std::string::npos);
  auto reopened = SqliteSettingsStore::openInHome(home.home());
  ASSERT_TRUE(reopened.ok());
  KeyringSettingsStore again(std::move(reopened->store), std::make_shared<LibsecretStore>(home.home().string()),
                             {"password"}, "qmv test ");
  EXPECT_EQ(again.stringForKey("password"), "plain-pass-1") << "another run finds it";
  EXPECT_EQ(again.stringForKey("user_phone"), "13800000000");
  again.removeObjectForKey("password");
  EXPECT_FALSE(again.stringForKey("password"));
}

TEST(LibsecretStoreTest, WithoutASessionBusTheKeyringIsUnavailableAtOnce) {
  const char* runtime = std::getenv("XDG_RUNTIME_DIR");
  if (keyringExpected() || std::getenv("DBUS_SESSION_BUS_ADDRESS") != nullptr ||
      (runtime != nullptr && std::filesystem::exists(std::filesystem::path(runtime) / "bus"))) {
    GTEST_SKIP() << "a session bus is there";
  }
  LibsecretStore store("/tmp/qmv-keyring-test/headless");
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(store.lookup("id").answer, SecretStore::Answer::unavailable);
  EXPECT_FALSE(store.store("id", "qmv test", "x"));
  EXPECT_NE(store.failure(), "");
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(2));
}

}  // namespace
}  // namespace qmv
