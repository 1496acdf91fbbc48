// Account commands: sign in and out, the member's profile, registration and password
// recovery. Each drives the headless screen the way a member would and waits for it.
#include <iostream>
#include <memory>
#include <utility>

#include "apps/qmv/cli_app.h"
#include "apps/qmv/cli_flow.h"
#include "apps/qmv/cli_texts.h"
#include "apps/qmv/command_registry.h"
#include "core/common/string_util.h"
#include "core/session/find_pwd_step2_view_controller.h"
#include "core/session/find_pwd_view_controller.h"
#include "core/session/global_data.h"
#include "core/session/login_view_controller.h"
#include "core/session/logout_flow.h"
#include "core/session/member_texts.h"
#include "core/session/qx_register_view_controller.h"
#include "core/session/user_info_model.h"
#include "platform/linux/image_file_camera.h"
#include "platform/linux/qr_png.h"
#include "platform/navigator.h"

namespace qmv::cli {
namespace {

void printMember(CliApp& app, const UserInfoModel& me) {
  const std::string balance = member_texts::balanceYuan(me);
  CliOutput& out = app.output();
  out.line(cli_texts::kAccountLabel + me.userName);
  out.line(cli_texts::kNicknameLabel + me.nickName);
  out.line(cli_texts::kPhoneLabel + me.phone);
  out.line(cli_texts::kBalanceLabel + balance);
  out.line(member_texts::level(me) + "  " + member_texts::progress(me));
  out.line(member_texts::remainingExp(me));
  out.data("member", Json{{"userName", me.userName},
                          {"nickName", me.nickName},
                          {"phone", me.phone},
                          {"name", me.name},
                          {"num", me.num},
                          {"balance", me.balance},
                          {"balanceYuan", balance},
                          {"nowExp", me.nowEXP},
                          {"level", me.level},
                          {"currentTotal", me.currentTotal},
                          {"currentProgress", me.currentProgress},
                          {"inviterID", me.inviterID}});
}

int runLogin(CliApp& app, const std::string& phone, const std::string& password) {
  // The login screen is presented over whatever shows, as the app does.
  Env::current().navigator->present(BaseViewController::kLoginScreen);
  return signInOnLoginScreen(app, phone, password);
}

int runLogout(CliApp& app) {
  if (!memberSignedIn(app)) return kExitFailure;
  LogoutFlow flow;
  awaitSlot(app, flow.onFinished, [&flow] { flow.logout(); });
  app.output().line("logged out");
  return kExitOk;
}

int runMe(CliApp& app) {
  if (!memberSignedIn(app)) return kExitFailure;
  printMember(app, *GlobalData::sharedInstance().selfInfo());
  return kExitOk;
}

struct RegisterArgs {
  std::string phone, name, password, confirm, invite, inviteQr, code;
};

std::optional<std::string> askCode(CliApp& app, const std::string& given) {
  if (!given.empty()) return given;
  return app.readLine(std::string(account_texts::kCodePlaceholder) + ": ");
}

int runRegister(CliApp& app, const RegisterArgs& args) {
  QXRegisterViewController screen;
  screen.viewDidLoad();
  screen.phoneText = args.phone;
  screen.userNameText = args.name;
  screen.passwordText = args.password;
  screen.confirmText = args.confirm;
  screen.inviteText = args.invite;
  if (!args.inviteQr.empty()) {
    // A file that is no picture at all is the member's mistake, not an invalid code.
    if (std::string problem = qrImageProblem(args.inviteQr); !problem.empty()) {
      std::cerr << "qmv: " << problem << '\n';
      return kExitFailure;
    }
    auto camera = std::exchange(Env::current().camera, std::make_shared<ImageFileCamera>(args.inviteQr));
    const std::string before = screen.inviteText;
    screen.QRCodeAction();
    Env::current().camera = std::move(camera);
    if (screen.inviteText == before && screen.inviteText.empty()) return kExitFailure;
  }
  // The whole form is known before the code is asked for: refuse it as submitting would.
  if (!screen.checkBeforeCode()) return kExitFailure;
  if (!awaitSlot(app, screen.onCodeFinished, [&screen] { return screen.getCodeAction(); }).value_or(false)) {
    return kExitFailure;
  }
  const auto typed = askCode(app, args.code);
  if (!typed) return kExitFailure;
  screen.codeText = *typed;
  const auto registered = awaitSlot(app, screen.onFinished, [&screen] { return screen.submitAction(); });
  return registered.value_or(false) ? kExitOk : kExitFailure;
}

struct RecoverArgs {
  std::string phone, code, password, confirm;
};

int runRecover(CliApp& app, const RecoverArgs& args) {
  FindPwdViewController step1;
  step1.viewDidLoad();
  step1.view().phoneText = args.phone;
  if (!awaitSlot(app, step1.onCodeFinished, [&step1] { return step1.view().getVerifyMsg(); }).value_or(false)) {
    return kExitFailure;
  }
  const auto typed = askCode(app, args.code);
  if (!typed) return kExitFailure;
  step1.view().codeText = *typed;
  if (!awaitSlot(app, step1.onFinished, [&step1] { return step1.view().nextAction(); }).value_or(false)) {
    return kExitFailure;
  }

  FindPwdStep2ViewController step2(args.phone);
  auto password = args.password.empty() ? app.readLine(std::string(account_texts::kNewPasswordPlaceholder) + ": ")
                                        : std::optional<std::string>(args.password);
  if (!password) return kExitFailure;
  auto confirm = args.confirm.empty() ? app.readLine(std::string(account_texts::kConfirmPlaceholder) + ": ")
                                      : std::optional<std::string>(args.confirm);
  if (!confirm) return kExitFailure;
  step2.view().passwordText = *password;
  step2.view().confirmText = *confirm;
  const auto changed = awaitSlot(app, step2.onFinished, [&step2] { return step2.view().submitAction(); });
  return changed.value_or(false) ? kExitOk : kExitFailure;
}

}  // namespace

int signInOnLoginScreen(CliApp& app, const std::optional<std::string>& phone,
                        const std::optional<std::string>& password) {
  LoginViewController login;
  login.viewWillAppear();
  if (phone) login.view().phoneText = *phone;
  if (password) login.view().passwordText = *password;
  // The portrait download starts inside a correct login; wait for it too so the portrait
  // is stored before the run ends.
  bool portraitDone = false;
  login.onHeaderImageFinished = [&portraitDone](bool) { portraitDone = true; };
  if (!awaitSlot(app, login.onFinished, [&login] { login.loginNet(); }).value_or(false)) return kExitFailure;
  app.waitUntil([&portraitDone] { return portraitDone; }, std::chrono::milliseconds(3000));
  if (const auto& me = GlobalData::sharedInstance().selfInfo()) printMember(app, *me);
  return kExitOk;
}

void registerAccountCommands(CommandRegistry& registry) {
  {
    auto phone = std::make_shared<std::string>();
    auto password = std::make_shared<std::string>();
    CLI::App* login = registry.add("login", "sign in with a mobile number and password",
                                   [phone, password](CliApp& app) { return runLogin(app, *phone, *password); });
    login->add_option("PHONE", *phone, "mobile number")->required();
    login->add_option("PASSWORD", *password, "password")->required();
  }
  registry.add("logout", "sign out (the stored phone and password stay for the next start)",
               [](CliApp& app) { return runLogout(app); });
  registry.add("me", "the signed-in member: profile, balance, level", [](CliApp& app) { return runMe(app); });
  {
    auto args = std::make_shared<RegisterArgs>();
    CLI::App* reg = registry.add("register", "register a new member with an SMS code",
                                 [args](CliApp& app) { return runRegister(app, *args); });
    reg->add_option("--phone", args->phone, "mobile number")->required();
    reg->add_option("--name", args->name, "user name")->required();
    reg->add_option("--password", args->password, "password (6-16 letters or digits)")->required();
    reg->add_option("--confirm", args->confirm, "the password again")->required();
    auto* invite = reg->add_option("--invite", args->invite, "invitation code");
    reg->add_option("--invite-qr", args->inviteQr, "PNG image of an invitation QR code")->excludes(invite);
    reg->add_option("--code", args->code, "the SMS code (asked on standard input when absent)");
  }
  {
    auto args = std::make_shared<RecoverArgs>();
    CLI::App* recover = registry.add("recover", "set a new password through an SMS code",
                                     [args](CliApp& app) { return runRecover(app, *args); });
    recover->add_option("--phone", args->phone, "mobile number")->required();
    recover->add_option("--code", args->code, "the SMS code (asked when absent)");
    recover->add_option("--password", args->password, "the new password (asked when absent)");
    recover->add_option("--confirm", args->confirm, "the new password again (asked when absent)");
  }
}

}  // namespace qmv::cli
