#include "apps/qmv/cli_flow.h"

#include <iostream>
#include <string>

#include "apps/qmv/command_registry.h"
#include "core/session/global_data.h"

namespace qmv::cli {

bool memberSignedIn(CliApp& app) {
  if (GlobalData::sharedInstance().selfInfo()) return true;
  if (!app.tellAutoLoginFailure()) std::cerr << "qmv: " << kNotLoggedIn << '\n';
  return false;
}

int failWith(std::string_view why) {
  std::cerr << "qmv: " << why << '\n';
  return kExitFailure;
}

int timedOut(std::string_view what) { return failWith(std::string(what) + " did not end in time"); }

}  // namespace qmv::cli
