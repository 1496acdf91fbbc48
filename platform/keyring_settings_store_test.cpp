#include "platform/keyring_settings_store.h"

#include <gtest/gtest.h>

#include "platform/testing/fake_secret_store.h"
#include "platform/testing/forwarding_settings_store.h"

namespace qmv {
namespace {

class KeyringSettingsStoreTest : public ::testing::Test {
 protected:
  KeyringSettingsStore open() { return KeyringSettingsStore(file_, keyring_, {"password"}, "qmv "); }

  std::shared_ptr<MemorySettingsStore> file_ = std::make_shared<MemorySettingsStore>();
  std::shared_ptr<testsupport::FakeSecretStore> keyring_ = std::make_shared<testsupport::FakeSecretStore>();
};

TEST_F(KeyringSettingsStoreTest, PasswordMovesBetweenKeyringAndFileAsTheKeyringComesAndGoes) {
  auto store = open();
  ASSERT_TRUE(store.setObjects(Json{{"user_phone", "13800000000"}, {"password", "first1"}}).ok());
  EXPECT_EQ(store.stringForKey("password"), "first1");
  EXPECT_EQ(file_->stringForKey("user_phone"), "13800000000");
  EXPECT_FALSE(file_->stringForKey("password")) << "the file holds a reference, not the password";
  EXPECT_EQ(keyring_->secrets, (std::map<std::string, std::string>{
                                   {*KeyringSettingsStore::referencedId(file_->objectForKey("password")), "first1"}}));

  // A new password replaces the old one in the keyring too.
  store.setString("second2", "password");
  EXPECT_EQ(store.stringForKey("password"), "second2");
  ASSERT_EQ(keyring_->secrets.size(), 1u);
  EXPECT_EQ(keyring_->secrets.begin()->second, "second2");

  // The keyring goes away: what it held cannot be read, and the next write falls back to
  // the file, with the phone in the same write.
  keyring_->available = false;
  EXPECT_FALSE(store.stringForKey("password"));
  ASSERT_TRUE(store.setObjects(Json{{"user_phone", "13900000000"}, {"password", "third3"}}).ok());
  EXPECT_EQ(file_->objectForKey("password")["secret"], "third3");
  EXPECT_EQ(store.stringForKey("password"), "third3");
  EXPECT_EQ(store.moveSecretsToKeyring(), 0);

  // It answers again: the next start moves the password in and forgets the old one; the
  // phone stays.
  keyring_->available = true;
  auto next = open();
  EXPECT_EQ(next.moveSecretsToKeyring(), 1);
  EXPECT_TRUE(KeyringSettingsStore::referencedId(file_->objectForKey("password")));
  EXPECT_EQ(next.stringForKey("password"), "third3");
  ASSERT_EQ(keyring_->secrets.size(), 1u);
  EXPECT_EQ(keyring_->secrets.begin()->second, "third3");
  EXPECT_EQ(next.stringForKey("user_phone"), "13900000000");
  EXPECT_EQ(next.moveSecretsToKeyring(), 0) << "nothing left to move";

  // A keyring that answers but keeps nothing (a locked one) is no keyring.
  keyring_->refuseStores = true;
  next.setString("fourth4", "password");
  EXPECT_EQ(next.stringForKey("password"), "fourth4");
  EXPECT_TRUE(keyring_->secrets.empty());
  keyring_->refuseStores = false;

  next.removeObjectForKey("password");
  EXPECT_TRUE(file_->objectForKey("password").is_null());
  EXPECT_FALSE(next.stringForKey("password"));
  // A headless home never sees the keyring's forms: the password is plain text there.
  keyring_->available = false;
  next.setString("fifth5", "password");
  EXPECT_EQ(file_->stringForKey("password"), "fifth5");
}

TEST_F(KeyringSettingsStoreTest, FailedFileWriteKeepsThePreviousPairReadable) {
  auto store = open();
  ASSERT_TRUE(store.setObjects(Json{{"user_phone", "13800000000"}, {"password", "first1"}}).ok());
  auto full = std::make_shared<testsupport::FullDiskSettingsStore>(file_);
  KeyringSettingsStore onFullDisk(full, keyring_, {"password"}, "qmv ");
  EXPECT_FALSE(onFullDisk.setObjects(Json{{"user_phone", "13900000000"}, {"password", "second2"}}).ok());
  EXPECT_EQ(onFullDisk.stringForKey("user_phone"), "13800000000");
  EXPECT_EQ(onFullDisk.stringForKey("password"), "first1");
  // The secret kept for the write that failed (as for a run killed there) is forgotten
  // at a later start, once it is too old to be another run's write in progress.
  EXPECT_EQ(keyring_->secrets.size(), 2u);
  EXPECT_EQ(store.forgetStraySecrets(keyring_->now + std::chrono::minutes(5)), 0);
  EXPECT_EQ(store.forgetStraySecrets(keyring_->now + KeyringSettingsStore::kStrayAge), 1);
  EXPECT_EQ(keyring_->secrets.size(), 1u);
  EXPECT_EQ(store.stringForKey("password"), "first1");
  // Later strays go with the next write that lands a secret, not at every start.
  keyring_->now -= KeyringSettingsStore::kStrayAge;
  EXPECT_FALSE(onFullDisk.setObjects(Json{{"password", "third3"}}).ok());
  keyring_->now += KeyringSettingsStore::kStrayAge;
  EXPECT_EQ(keyring_->secrets.size(), 2u);

  // Keys that are not secret pass through, updates included.
  EXPECT_TRUE(store.updateObject("searchKeyWords", [](Json current) {
    EXPECT_TRUE(current.is_null());
    return Json::array({"火锅"});
  }));
  EXPECT_EQ(file_->objectForKey("searchKeyWords"), Json::array({"火锅"}));
  EXPECT_TRUE(store.updateObject("password", [](Json current) { return Json(current.get<std::string>() + "x"); }));
  EXPECT_EQ(store.stringForKey("password"), "first1x");
  EXPECT_EQ(keyring_->secrets.size(), 1u) << "the replaced secret and the stray are both gone";
}

}  // namespace
}  // namespace qmv
