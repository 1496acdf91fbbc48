// Commands of the member's profile, phone change and invitation screens: "profile" prints
// the editable fields and "profile set" changes one; "phone" asks for a code to the new
// number, or with the code checks it and changes the phone; "invite" prints the code and
// link and can write the link's QR code as a PNG.
#include <iostream>
#include <memory>
#include <string>

#include "apps/qmv/cli_app.h"
#include "apps/qmv/cli_flow.h"
#include "apps/qmv/cli_texts.h"
#include "apps/qmv/command_registry.h"
#include "features/member/change_phone_view_controller.h"
#include "features/member/invite_view_controller.h"
#include "features/member/profile_view_controller.h"
#include "platform/linux/qr_png.h"
#include "platform/navigator.h"

namespace qmv::cli {
namespace {

void printProfile(CliApp& app, const ProfileViewController& screen) {
  CliOutput& out = app.output();
  out.line(screen.title());
  Json fields = Json::object();
  for (const auto& field : ProfileViewController::fields()) {
    out.line(std::string(field.label) + " (" + field.key + "): " + screen.displayValue(field.key));
    fields[field.key] = screen.valueOf(field.key);
  }
  out.data("profile", fields);
}

int runProfile(CliApp& app, const std::string& key, const std::string& value, bool set) {
  if (!memberSignedIn(app)) return kExitFailure;
  Env::current().navigator->push(account_centre_texts::kProfileScreen);
  ProfileViewController screen;
  if (!set) {
    printProfile(app, screen);
    return kExitOk;
  }
  bool asked = false;
  const auto done = awaitSlot(app, screen.onFinished, [&] { return asked = screen.change(key, value); });
  if (!asked) return kExitFailure;
  if (!done) return timedOut("the profile change");
  if (!*done) return kExitFailure;
  printProfile(app, screen);
  return kExitOk;
}

int runPhone(CliApp& app, const std::string& phone, const std::string& code) {
  if (!memberSignedIn(app)) return kExitFailure;
  Env::current().navigator->push(account_centre_texts::kChangePhoneScreen);
  ChangePhoneViewController screen;
  screen.phoneText = phone;
  if (code.empty()) {
    bool asked = false;
    const auto sent = awaitSlot(app, screen.onCodeFinished, [&] { return asked = screen.getCodeAction(); });
    if (!asked) return kExitFailure;
    if (!sent) return timedOut("the code request");
    if (!*sent) return kExitFailure;
    app.output().line("run \"qmv phone " + phone + " --code CODE\" with the code sent to " + phone);
    app.output().data("codeSent", true);
    return kExitOk;
  }
  screen.codeText = code;
  bool asked = false;
  const auto changed = awaitSlot(app, screen.onFinished, [&] { return asked = screen.submitAction(); });
  if (!asked) return kExitFailure;
  if (!changed) return timedOut("the phone change");
  app.output().data("changed", *changed);
  return *changed ? kExitOk : kExitFailure;
}

int runInvite(CliApp& app, const std::string& qrFile) {
  if (!memberSignedIn(app)) return kExitFailure;
  Env::current().navigator->push(account_centre_texts::kInviteScreen);
  InviteViewController screen;
  const std::string code = screen.inviteCode();
  if (code.empty()) return failWith(account_centre_texts::kNoInviteCode);
  CliOutput& out = app.output();
  out.line(screen.title());
  out.line(cli_texts::kInviteCodeLabel + code);
  out.line(cli_texts::kInviteLinkLabel + screen.inviteLink());
  out.data("inviteCode", code);
  out.data("inviteLink", screen.inviteLink());
  if (qrFile.empty()) return kExitOk;
  const auto qr = screen.qrCode();
  if (!qr) return failWith("there is no link to encode (no web host is configured)");
  if (!writeQrPng(*qr, qrFile, 8)) return failWith("could not write " + qrFile);
  out.line(cli_texts::kQrFileLabel + qrFile);
  out.data("qrFile", qrFile);
  return kExitOk;
}

}  // namespace

void registerProfileCommands(CommandRegistry& registry) {
  {
    auto key = std::make_shared<std::string>();
    auto value = std::make_shared<std::string>();
    auto set = std::make_shared<CLI::App*>(nullptr);
    CLI::App* profile =
        registry.add("profile", "your profile's editable fields, or change one with \"set\"",
                     [=](CliApp& app) { return runProfile(app, *key, *value, (*set)->parsed()); });
    CLI::App* change = *set = profile->add_subcommand("set", "change one field: profile set FIELD VALUE");
    change->add_option("FIELD", *key, "nickName, name, sex (1 male, 2 female), birthday (yyyy-MM-dd), email, "
                                      "address, address_name, address_phone or postcode")
        ->required();
    change->add_option("VALUE", *value, "the new value")->required();
  }
  {
    auto phone = std::make_shared<std::string>();
    auto code = std::make_shared<std::string>();
    CLI::App* command =
        registry.add("phone", "change your phone: without --code sends a code to NEW, with it makes the change",
                     [=](CliApp& app) { return runPhone(app, *phone, *code); });
    command->add_option("NEW", *phone, "the new mobile number")->required();
    command->add_option("--code", *code, "the SMS code sent to NEW");
  }
  {
    auto qrFile = std::make_shared<std::string>();
    CLI::App* invite = registry.add("invite", "your invitation code and link to the registration page",
                                    [=](CliApp& app) { return runInvite(app, *qrFile); });
    invite->add_option("--qr", *qrFile, "also write the link's QR code to this PNG file");
  }
}

}  // namespace qmv::cli
