#pragma once
// Runs the CLI in-process as one start of the application, in a given home, with the
// shared singletons reset before and after so that runs are as separate as processes.
#include <gtest/gtest.h>

#include <filesystem>
#include <iostream>
#include <sstream>
#include <string>
#include <vector>

#include "apps/launch/app_launch.h"
#include "apps/qmv/command_registry.h"
#include "core/session/global_data.h"
#include "core/storage/db_util.h"
#include "platform/linux/sqlite_settings_store.h"
#include "platform/testing/fake_secret_store.h"
#include "platform/testing/temp_home.h"

namespace qmv::testsupport {

struct CliRun {
  int status;
  std::string out;
  std::string err;  // what the CLI itself wrote to std::cerr (warnings of the core go to stderr directly)

  bool has(const std::string& part) const { return out.find(part) != std::string::npos; }
  bool said(const std::string& part) const { return err.find(part) != std::string::npos; }
};

inline CliRun runQmv(const std::filesystem::path& home, std::vector<std::string> args, const std::string& input = "") {
  args.insert(args.begin(), {"qmv", "--home", home.string()});
  std::vector<char*> argv;
  for (auto& a : args) argv.push_back(a.data());
  std::ostringstream out;
  std::ostringstream err;
  std::istringstream in(input);
  GlobalData::resetSharedInstance();
  DBUtil::resetManagersForTesting();
  // Runs never reach the desktop's keyring; a test that wants one installs its own.
  auto& keyring = AppLaunch::keyringForTesting();
  const bool noKeyring = keyring == nullptr;
  if (noKeyring) {
    auto away = std::make_shared<FakeSecretStore>();
    away->available = false;
    keyring = away;
  }
  std::streambuf* const stderrBuffer = std::cerr.rdbuf(err.rdbuf());
  const int status = cli::runCli(static_cast<int>(argv.size()), argv.data(), out, in);
  std::cerr.rdbuf(stderrBuffer);
  std::cerr << err.str() << std::flush;  // still on stderr, for tests that capture it there
  if (noKeyring) keyring = nullptr;
  GlobalData::resetSharedInstance();
  DBUtil::resetManagersForTesting();
  return {status, out.str(), err.str()};
}

// Each test in a fresh home of its own, where the CLI runs.
class CliHomeTest : public ::testing::Test {
 protected:
  CliRun run(std::vector<std::string> args, const std::string& input = "") {
    return runQmv(home_.home(), std::move(args), input);
  }
  // The "data" of the command run with --json (an empty object when there is none); a
  // command that fails fails the test.
  Json data(std::vector<std::string> args) {
    args.insert(args.begin(), "--json");
    const auto ran = run(std::move(args));
    EXPECT_EQ(ran.status, 0) << ran.out << ran.err;
    return parseJson(ran.out).value("data", Json::object());
  }
  // A setting the CLI wrote, read back as the next start would (null when absent).
  Json setting(const std::string& key) {
    auto opened = SqliteSettingsStore::openInHome(home_.home());
    return opened.ok() ? opened->store->objectForKey(key) : Json();
  }
  // The signed-in member's balance in fen as the next start reads it (-1: none).
  long long balance() {
    const Json doc = parseJson(run({"--json", "me"}).out);
    return doc.is_object() ? std::stoll(doc["data"]["member"].value("balance", "-1")) : -1;
  }

  TempHome home_;
};

// The same, signed in as the sandbox's demo member.
class DemoMemberCliTest : public CliHomeTest {
 protected:
  void SetUp() override { ASSERT_EQ(run({"login", "13800000000", "qmv123"}).status, 0); }
};

}  // namespace qmv::testsupport
