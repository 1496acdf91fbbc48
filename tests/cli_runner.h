#pragma once
// Runs the CLI in-process as one start of the application, in a given home, with the
// shared singletons reset before and after so that runs are as separate as processes.
#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

#include "apps/launch/app_launch.h"
#include "apps/qmv/command_registry.h"
#include "core/common/db_util.h"
#include "core/session/global_data.h"
#include "platform/testing/fake_secret_store.h"

namespace qmv::testsupport {

struct CliRun {
  int status;
  std::string out;

  bool has(const std::string& part) const { return out.find(part) != std::string::npos; }
};

inline CliRun runQmv(const std::filesystem::path& home, std::vector<std::string> args, const std::string& input = "") {
  args.insert(args.begin(), {"qmv", "--home", home.string()});
  std::vector<char*> argv;
  for (auto& a : args) argv.push_back(a.data());
  std::ostringstream out;
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
  const int status = cli::runCli(static_cast<int>(argv.size()), argv.data(), out, in);
  if (noKeyring) keyring = nullptr;
  GlobalData::resetSharedInstance();
  DBUtil::resetManagersForTesting();
  return {status, out.str()};
}

}  // namespace qmv::testsupport
