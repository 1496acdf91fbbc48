// Wallet commands: the bound bank card (show, bind, unbind), withdrawal to it, and the
// bank-name look-up of the local database. Each drives the headless screen and prints
// what it shows.
#include <iostream>
#include <memory>
#include <optional>

#include "apps/qmv/cli_app.h"
#include "apps/qmv/command_registry.h"
#include "core/common/db_util.h"
#include "core/session/account_texts.h"
#include "core/session/global_data.h"
#include "features/wallet/my_bank_card_view_controller.h"
#include "features/wallet/qx_bind_bank_card_view_controller.h"
#include "features/wallet/qx_with_draw_view_controller.h"
#include "platform/linux/stream_alerts.h"
#include "platform/navigator.h"

namespace qmv::cli {
namespace {

namespace texts = wallet_texts;

bool loggedIn() {
  if (GlobalData::sharedInstance().selfInfo()) return true;
  std::cerr << "qmv: not logged in: run \"qmv login PHONE PASSWORD\" first\n";
  return false;
}

int timedOut(const char* what) {
  std::cerr << "qmv: " << what << " did not end in time\n";
  return kExitFailure;
}

void pushScreen(const char* name) {
  if (const auto& navigator = Env::current().navigator) navigator->push(name);
}

Json cardJson(const BankModel& bank) {
  return {{"name", bank.name}, {"cardBank", bank.cardBank}, {"cardId", bank.cardId}};
}

void printCardScreen(CliApp& app, const MyBankCardView& view) {
  CliOutput& out = app.output();
  if (const auto& bank = view.bank()) {
    out.line(view.nameText());
    out.line(view.cardNumberText());
    out.data("card", cardJson(*bank));
  } else {
    out.line(MyBankCardView::kAddButtonTitle);
    out.data("card", nullptr);
  }
}

// Shows the my-bank-card screen: whether it stayed (a refused or failed load closes it);
// nullopt when no answer came in time.
std::optional<bool> loadCardScreen(CliApp& app, MyBankCardViewController& screen) {
  std::optional<bool> stayed;
  screen.onLoaded = [&stayed](bool s) { stayed = s; };
  screen.viewWillAppear();
  app.waitUntil([&stayed] { return stayed.has_value(); });
  screen.onLoaded = nullptr;
  return stayed;
}

int runCard(CliApp& app) {
  if (!loggedIn()) return kExitFailure;
  pushScreen(texts::kMyBankCardScreen);
  MyBankCardViewController screen;
  const auto stayed = loadCardScreen(app, screen);
  if (!stayed) return timedOut("card");
  if (!*stayed) return kExitFailure;
  printCardScreen(app, screen.view());
  return kExitOk;
}

int runUnbind(CliApp& app, bool inShell) {
  if (!loggedIn()) return kExitFailure;
  pushScreen(texts::kMyBankCardScreen);
  MyBankCardViewController screen;
  const auto stayed = loadCardScreen(app, screen);
  if (!stayed) return timedOut("card");
  if (!*stayed) return kExitFailure;
  if (!screen.view().cardShown()) {
    printCardScreen(app, screen.view());
    std::cerr << "qmv: no bank card is bound\n";
    return kExitFailure;
  }
  std::optional<MyBankCardViewController::UnbindOutcome> outcome;
  std::optional<bool> reloaded;
  screen.onUnbindFinished = [&outcome](MyBankCardViewController::UnbindOutcome o) { outcome = o; };
  screen.onLoaded = [&reloaded](bool stayed) { reloaded = stayed; };
  screen.unbindAction();
  const auto alertWaiting = [] {
    const auto alerts = std::dynamic_pointer_cast<StreamAlerts>(Env::current().alerts);
    return alerts && alerts->pendingCount() > 0;
  };
  if (!app.waitUntil([&] { return outcome.has_value() || alertWaiting(); })) return timedOut("unbind");
  // The shell takes the answer from its next line: the alert must not outlive the screen.
  while (inShell && !outcome && alertWaiting()) {
    const auto line = app.readLine("[1] " + std::string(texts::kCancel) + " [2] " + texts::kConfirm + "> ");
    if (!line) break;
    const char* number = *line == "1" || *line == texts::kCancel ? "1" : *line == "2" || *line == texts::kConfirm ? "2" : "";
    if (!*number || !app.answerAlert(number)) {
      std::cerr << "qmv: answer 1 or 2\n";
      continue;
    }
    if (!app.waitUntil([&] { return outcome.has_value(); })) return timedOut("unbind");
  }
  if (!outcome) {
    std::cerr << "qmv: answer the alert with --answer " << texts::kConfirm << " (or " << texts::kCancel << ")\n";
    return kExitFailure;
  }
  using enum MyBankCardViewController::UnbindOutcome;
  if (*outcome == Failed) return kExitFailure;
  if (*outcome == Unbound && !app.waitUntil([&reloaded] { return reloaded.has_value(); })) return timedOut("card");
  if (reloaded == false) return kExitFailure;
  printCardScreen(app, screen.view());
  return kExitOk;
}

struct BindArgs {
  std::string name, idNumber, card, code;
};

int runBind(CliApp& app, const BindArgs& args) {
  if (!loggedIn()) return kExitFailure;
  pushScreen(texts::kBindScreen);
  QXBindBankCardViewController screen;
  screen.viewDidLoad();
  screen.nameText = args.name;
  screen.idNumText = args.idNumber;
  screen.cardNumText = args.card;
  CliOutput& out = app.output();
  out.line(screen.phoneLabelText());
  const std::string bank = screen.bankNameText();
  out.line(bank.empty() ? args.card : args.card + "  " + bank);
  out.data("phoneLabel", screen.phoneLabelText());
  out.data("bankName", bank);

  std::string code = args.code;
  if (code.empty()) {
    std::optional<bool> sent;
    screen.onCodeFinished = [&sent](bool correct) { sent = correct; };
    screen.getCodeAction();
    if (!app.waitUntil([&sent] { return sent.has_value(); })) return timedOut("the code request");
    if (!*sent) return kExitFailure;
    // Without a terminal to type on, the run ends once the code is on its way; the next
    // run brings it with --code.
    if (!app.interactive()) return kExitOk;
    const auto typed = app.readLine(std::string(account_texts::kCodePlaceholder) + ": ");
    if (!typed) return kExitFailure;
    code = *typed;
  }
  screen.codeText = code;
  std::optional<bool> bound;
  screen.onFinished = [&bound](bool correct) { bound = correct; };
  if (!screen.bindAction()) return kExitFailure;
  if (!app.waitUntil([&bound] { return bound.has_value(); })) return timedOut("bind");
  return *bound ? kExitOk : kExitFailure;
}

int runWithdraw(CliApp& app, const std::string& amount) {
  if (!loggedIn()) return kExitFailure;
  pushScreen(texts::kWithDrawScreen);
  QXWithDrawViewController screen;
  bool refreshed = false;
  screen.onRefreshed = [&refreshed] { refreshed = true; };
  screen.viewWillAppear();
  if (!app.waitUntil([&refreshed] { return refreshed; })) return timedOut("withdraw");
  CliOutput& out = app.output();
  if (const auto& bank = screen.bank()) {
    out.line(bank->name + texts::kNameBankSeparator + bank->cardBank);
    out.line(bank->cardId);
    out.data("card", cardJson(*bank));
  } else {
    out.line(QXWithDrawViewController::kChooseCardTitle);
    out.data("card", nullptr);
  }
  out.line(screen.balanceText());
  out.data("balance", screen.balanceText());

  screen.amountText = amount;
  screen.textFieldDidEndEditing();
  out.line(QXWithDrawViewController::kAmountLabel + screen.amountText);
  out.data("amount", screen.amountText);
  std::optional<bool> done;
  screen.onFinished = [&done](bool correct) { done = correct; };
  if (!screen.withDrawAction()) return kExitFailure;
  if (!app.waitUntil([&done] { return done.has_value(); })) return timedOut("withdraw");
  return *done ? kExitOk : kExitFailure;
}

int runBank(CliApp& app, const std::string& number) {
  const std::string bank = DBUtil::getBankNameWithBankNum(number);
  app.output().data("bankName", bank);
  if (bank.empty()) {
    std::cerr << "qmv: no bank is known for this number (16 or 19 digits)\n";
    return kExitFailure;
  }
  app.output().line(bank);
  return kExitOk;
}

}  // namespace

void registerWalletCommands(CommandRegistry& registry) {
  {
    auto bindArgs = std::make_shared<BindArgs>();
    // The subcommands exist before the card's own run looks at them.
    auto bind = std::make_shared<CLI::App*>(nullptr);
    auto unbind = std::make_shared<CLI::App*>(nullptr);
    CLI::App* card = registry.add("card", "the bound bank card, or the panel to add one",
                                  [bindArgs, bind, unbind, inShell = registry.inShell()](CliApp& app) {
                                    if ((*bind)->parsed()) return runBind(app, *bindArgs);
                                    if ((*unbind)->parsed()) return runUnbind(app, inShell);
                                    return runCard(app);
                                  });
    card->require_subcommand(0, 1);
    *bind = card->add_subcommand("bind", "bind a bank card (the SMS code goes to the member's phone)");
    (*bind)->add_option("--name", bindArgs->name, "card holder's name")->required();
    (*bind)->add_option("--id", bindArgs->idNumber, "identity-card number")->required();
    (*bind)->add_option("--card", bindArgs->card, "card number")->required();
    (*bind)->add_option("--code", bindArgs->code,
                        "the SMS code; without it the code is sent (and asked for on a terminal)");
    *unbind = card->add_subcommand("unbind", "unbind the card (answer the alert with --answer)");
  }
  {
    auto amount = std::make_shared<std::string>();
    CLI::App* withdraw = registry.add("withdraw", "withdraw an amount of the balance to the bound card",
                                      [amount](CliApp& app) { return runWithdraw(app, *amount); });
    withdraw->add_option("AMOUNT", *amount, "amount in yuan, at most two decimals")->required();
  }
  {
    auto number = std::make_shared<std::string>();
    CLI::App* bank = registry.add("bank", "the bank of a card number, from the local database",
                                  [number](CliApp& app) { return runBank(app, *number); });
    bank->add_option("NUMBER", *number, "card number of 16 or 19 digits")->required();
  }
}

}  // namespace qmv::cli
