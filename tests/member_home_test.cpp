// The member's home and credentials through the CLI against a hostile server and a
// hostile neighbour: entries planted in the home are refused before anything is written,
// the password lives in the keyring while one answers, a login answer cannot change
// which account the next start signs in to, the API server's cookies reach no other
// host, and a picture that is no picture is named as such.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <fstream>
#include <iterator>
#include <mutex>

#include "apps/launch/app_launch.h"
#include "core/common/settings_keys.h"
#include "platform/linux/sqlite_settings_store.h"
#include "platform/testing/fake_secret_store.h"
#include "platform/testing/loopback_server.h"
#include "platform/testing/temp_home.h"
#include "tests/cli_runner.h"
#include "tests/fault_server.h"

namespace qmv {
namespace {

using testsupport::FaultServer;
namespace fs = std::filesystem;

constexpr const char* kPassword = "qmv123";

std::string contentOf(const fs::path& path) {
  std::ifstream in(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(in), {});
}

class MemberHomeTest : public ::testing::Test {
 protected:
  // Against the fault server's `fault`, or the embedded sandbox when `fault` is empty; `err`
  // is all the run wrote to stderr, the core's warnings included.
  testsupport::CliRun run(const fs::path& home, const std::string& fault, std::vector<std::string> args) {
    if (!fault.empty()) args.insert(args.begin(), {"--server", server_.url(fault)});
    testing::internal::CaptureStderr();
    auto result = testsupport::runQmv(home, std::move(args));
    result.err = testing::internal::GetCapturedStderr();
    return result;
  }
  Json setting(const fs::path& home, const std::string& key) {
    auto opened = SqliteSettingsStore::openInHome(home);
    return opened.ok() ? opened->store->objectForKey(key) : Json();
  }
  // The settings file with its journal, as bytes on disk.
  static std::string settingsBytes(const fs::path& home) {
    return contentOf(home / "settings.db") + contentOf(home / "settings.db-wal");
  }

  static FaultServer server_;
  TempHome temp_;
};

FaultServer MemberHomeTest::server_;

TEST_F(MemberHomeTest, EntriesPlantedInTheHomeAreRefusedAndNothingIsWritten) {
  // Someone else's file that anyone may write, and a link to it in place of each file.
  const fs::path elsewhere = temp_.home() / "elsewhere";
  fs::create_directories(elsewhere);
  const fs::path victim = elsewhere / "victim";
  std::ofstream(victim) << "untouched";
  ::chmod(victim.c_str(), 0666);
  for (const char* planted : {"settings.db", "settings.db-wal", "shell_history", "qmv.conf", "Library"}) {
    const fs::path home = temp_.home() / (std::string("link-") + planted);
    fs::create_directories(home);
    fs::create_symlink(victim, home / planted);
    const auto login = run(home, "member", {"login", FaultServer::kPhone, kPassword});
    EXPECT_EQ(login.status, 1) << planted;
    EXPECT_NE(login.err.find("refusing " + (home / planted).string() + ": it is a symbolic link"), std::string::npos)
        << planted << ": " << login.err;
    EXPECT_EQ(login.out, "") << planted;
    EXPECT_EQ(std::distance(fs::directory_iterator(home), {}), 1) << planted << ": nothing written beside it";
  }
  // Nor is the embedded sandbox started in a refused home.
  const fs::path embedded = temp_.home() / "embedded";
  fs::create_directories(embedded);
  fs::create_symlink(victim, embedded / "settings.db");
  EXPECT_EQ(run(embedded, "", {"login", FaultServer::kPhone, kPassword}).status, 1);
  EXPECT_EQ(std::distance(fs::directory_iterator(embedded), {}), 1);
  EXPECT_EQ(contentOf(victim), "untouched");

  // A FIFO would block the first read of it: refused at once instead.
  const fs::path fifoHome = temp_.home() / "fifo";
  fs::create_directories(fifoHome);
  ASSERT_EQ(::mkfifo((fifoHome / "settings.db").c_str(), 0600), 0);
  const auto started = std::chrono::steady_clock::now();
  const auto me = run(fifoHome, "member", {"me"});
  EXPECT_LT(std::chrono::steady_clock::now() - started, std::chrono::seconds(5));
  EXPECT_EQ(me.status, 1);
  EXPECT_NE(me.err.find("refusing " + (fifoHome / "settings.db").string() + ": it is not a regular file"),
            std::string::npos)
      << me.err;

  // Nor is a configuration file of any size read whole.
  const fs::path hugeHome = temp_.home() / "huge";
  fs::create_directories(hugeHome);
  std::ofstream(hugeHome / "qmv.conf") << std::string(64 * 1024, '#') << "\n";
  const auto huge = run(hugeHome, "member", {"me"});
  EXPECT_EQ(huge.status, 1);
  EXPECT_NE(huge.err.find("refusing " + (hugeHome / "qmv.conf").string() + ": it is larger than 65536 bytes"),
            std::string::npos)
      << huge.err;

  // A home others may write to could get entries planted after any check.
  const fs::path shared = temp_.home() / "shared";
  fs::create_directories(shared);
  ::chmod(shared.c_str(), 0777);
  const auto open = run(shared, "member", {"login", FaultServer::kPhone, kPassword});
  EXPECT_EQ(open.status, 1);
  EXPECT_NE(open.err.find("refusing " + shared.string() + ": other users can write to it"), std::string::npos)
      << open.err;
  EXPECT_TRUE(fs::is_empty(shared));

  if (::geteuid() != 0) return;  // only root can hand a file to another user
  const fs::path foreign = temp_.home() / "foreign";
  ASSERT_EQ(run(foreign, "member", {"login", FaultServer::kPhone, kPassword}).status, 0);
  ASSERT_EQ(::chown((foreign / "settings.db").c_str(), 65534, 65534), 0);
  const auto taken = run(foreign, "member", {"me"});
  EXPECT_EQ(taken.status, 1);
  EXPECT_NE(taken.err.find("refusing " + (foreign / "settings.db").string() + ": it belongs to another user"),
            std::string::npos)
      << taken.err;
  ASSERT_EQ(::chown(foreign.c_str(), 65534, 65534), 0);
  EXPECT_NE(run(foreign, "member", {"me"}).err.find("refusing " + foreign.string() + ": it belongs to another user"),
            std::string::npos);
}

TEST_F(MemberHomeTest, PasswordStaysInTheKeyringWhileOneAnswersAndFallsBackToTheFile) {
  auto keyring = std::make_shared<testsupport::FakeSecretStore>();
  AppLaunch::keyringForTesting() = keyring;
  const std::shared_ptr<void> restore(nullptr, [](void*) { AppLaunch::keyringForTesting() = nullptr; });
  // The demo member of the embedded sandbox.
  const fs::path home = temp_.home() / "member";
  ASSERT_EQ(run(home, "", {"login", FaultServer::kPhone, kPassword}).status, 0);
  EXPECT_EQ(settingsBytes(home).find(kPassword), std::string::npos) << "the file holds no password";
  ASSERT_EQ(keyring->secrets.size(), 1u);
  EXPECT_EQ(keyring->secrets.begin()->second, kPassword);
  EXPECT_EQ(run(home, "", {"me"}).status, 0) << "the next start signs in with it";

  // No keyring: the next start cannot sign in; a login keeps the password in the file.
  keyring->available = false;
  EXPECT_EQ(run(home, "", {"me"}).status, 1);
  ASSERT_EQ(run(home, "", {"login", FaultServer::kPhone, kPassword}).status, 0);
  EXPECT_NE(settingsBytes(home).find(kPassword), std::string::npos);
  EXPECT_EQ(run(home, "", {"me"}).status, 0);

  // The keyring is back: the next start moves the password in and leaves no copy behind.
  keyring->available = true;
  EXPECT_EQ(run(home, "", {"me"}).status, 0);
  EXPECT_EQ(settingsBytes(home).find(kPassword), std::string::npos);
  EXPECT_EQ(keyring->secrets.size(), 1u);
  EXPECT_EQ(run(home, "", {"me"}).status, 0);
}

TEST_F(MemberHomeTest, LoginAnswerCannotChangeTheAccountOfTheNextStart) {
  for (const char* fault : {"phone-other", "phone-null", "phone-list", "phone-empty"}) {
    const fs::path home = temp_.home() / fault;
    ASSERT_EQ(run(home, fault, {"login", FaultServer::kPhone, kPassword}).status, 0) << fault;
    EXPECT_EQ(setting(home, kUserPhoneKey), FaultServer::kPhone) << fault;
    EXPECT_EQ(run(home, fault, {"me"}).status, 0) << fault;
    EXPECT_EQ(setting(home, kUserPhoneKey), FaultServer::kPhone) << fault << ": the automatic login keeps it too";
  }
}

TEST_F(MemberHomeTest, ApiServerCookiesReachNoOtherHost) {
  // The web host is another loopback address: a host of its own to the client.
  testsupport::LoopbackServer web("127.0.0.2");
  std::mutex mutex;
  std::string received;
  web.server().Get(".*", [&](const httplib::Request& req, httplib::Response& res) {
    {
      std::lock_guard lock(mutex);
      received = req.get_header_value("Cookie");
    }
    res.set_content("<html><head><title>一元夺宝</title></head><body>夺宝</body></html>", "text/html");
  });
  web.start();
  const fs::path home = temp_.home() / "pages";
  fs::create_directories(home);
  std::ofstream(home / "qmv.conf") << "web_host = " << web.url() << "\n";
  ASSERT_EQ(run(home, "cookies", {"login", FaultServer::kPhone, kPassword}).status, 0);
  const auto page = run(home, "cookies", {"page", "0"});
  EXPECT_EQ(page.status, 0) << page.out << page.err;
  std::lock_guard lock(mutex);
  EXPECT_NE(received.find("sessionId=s-1"), std::string::npos) << received;
  EXPECT_EQ(received.find("foreign"), std::string::npos) << received;
  EXPECT_EQ(received.find("tracker"), std::string::npos) << received;
}

TEST_F(MemberHomeTest, InvitationPictureThatCannotBeReadIsNamed) {
  const fs::path home = temp_.home() / "register";
  const fs::path missing = temp_.home() / "nonexistent.png";
  const auto scan = run(home, "member",
                        {"register", "--phone", "13800000001", "--name", "n", "--password", "abc123", "--confirm",
                         "abc123", "--invite-qr", missing.string()});
  EXPECT_EQ(scan.status, 1);
  EXPECT_NE(scan.err.find("cannot read the picture " + missing.string() + ": No such file or directory"),
            std::string::npos)
      << scan.err;
  EXPECT_EQ(scan.out.find("无效二维码"), std::string::npos) << scan.out;
}

}  // namespace
}  // namespace qmv
