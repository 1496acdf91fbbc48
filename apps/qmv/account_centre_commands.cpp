// Commands of the member centre's password change and member level screens: "password"
// fills the change screen's three fields and submits them; "level" prints what the level
// screen shows of the signed-in member.
#include <cstdio>
#include <memory>
#include <string>

#include "apps/qmv/cli_app.h"
#include "apps/qmv/cli_flow.h"
#include "apps/qmv/command_registry.h"
#include "core/session/global_data.h"
#include "core/session/user_info_model.h"
#include "features/member/change_password_view_controller.h"
#include "features/member/member_level_view_controller.h"
#include "platform/navigator.h"

namespace qmv::cli {
namespace {

int runPassword(CliApp& app, const std::string& oldPassword, const std::string& newPassword,
                const std::string& confirm) {
  if (!memberSignedIn(app)) return kExitFailure;
  Env::current().navigator->push(account_centre_texts::kChangePasswordScreen);
  ChangePasswordViewController screen;
  screen.oldPasswordText = oldPassword;
  screen.newPasswordText = newPassword;
  screen.confirmText = confirm;
  bool asked = false;
  const auto done = awaitSlot(app, screen.onFinished, [&] { return asked = screen.submitAction(); });
  if (!asked) return kExitFailure;
  if (!done) return timedOut("the password change");
  app.output().data("changed", *done);
  return *done ? kExitOk : kExitFailure;
}

// A bar of 20 cells for the fraction, with its percentage: "[#####---------------] 25%".
std::string progressBar(double fraction) {
  const double clamped = fraction < 0 ? 0 : fraction > 1 ? 1 : fraction;
  const int filled = static_cast<int>(clamped * 20);
  char percent[16];
  std::snprintf(percent, sizeof percent, "] %d%%", static_cast<int>(clamped * 100));
  return "[" + std::string(filled, '#') + std::string(20 - filled, '-') + percent;
}

int runLevel(CliApp& app) {
  if (!memberSignedIn(app)) return kExitFailure;
  Env::current().navigator->push(account_centre_texts::kMemberLevelScreen);
  MemberLevelViewController screen;
  const UserInfoModel& me = *GlobalData::sharedInstance().selfInfo();
  CliOutput& out = app.output();
  out.line(screen.title());
  out.line(screen.levelText() + "  " + screen.experienceText());
  out.line(progressBar(screen.progress()));
  out.line(screen.remainingText());
  out.data("level", me.level);
  out.data("levelText", screen.levelText());
  out.data("nowExp", me.nowEXP);
  out.data("currentTotal", me.currentTotal);
  out.data("currentProgress", screen.progress());
  out.data("experienceText", screen.experienceText());
  out.data("remainingText", screen.remainingText());
  return kExitOk;
}

}  // namespace

void registerAccountCentreCommands(CommandRegistry& registry) {
  {
    auto oldPassword = std::make_shared<std::string>();
    auto newPassword = std::make_shared<std::string>();
    auto confirm = std::make_shared<std::string>();
    CLI::App* password =
        registry.add("password", "change your password (the next start signs in with the new one)",
                     [=](CliApp& app) { return runPassword(app, *oldPassword, *newPassword, *confirm); });
    password->add_option("OLD", *oldPassword, "your password now")->required();
    password->add_option("NEW", *newPassword, "the new password (6-16 letters or digits)")->required();
    password->add_option("CONFIRM", *confirm, "the new password again")->required();
  }
  registry.add("level", "your member level and the experience the next one needs", runLevel);
}

}  // namespace qmv::cli
