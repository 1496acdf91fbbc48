// Wallet commands: the bound bank card (show, the code for binding, bind, unbind),
// withdrawal to it, and the bank-name look-up of the local database. Each drives the
// headless screen and prints what it shows.
#include <iostream>
#include <memory>
#include <optional>

#include "apps/qmv/cli_app.h"
#include "apps/qmv/cli_flow.h"
#include "apps/qmv/cli_texts.h"
#include "apps/qmv/command_registry.h"
#include "core/session/global_data.h"
#include "core/storage/db_util.h"
#include "features/wallet/my_bank_card_view_controller.h"
#include "features/wallet/qx_bind_bank_card_view_controller.h"
#include "features/wallet/qx_with_draw_view_controller.h"
#include "platform/navigator.h"

namespace qmv::cli {
namespace {

namespace texts = wallet_texts;

void pushScreen(const char* name) { Env::current().navigator->push(name); }

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
  return awaitSlot(app, screen.onLoaded, [&screen] { screen.viewWillAppear(); });
}

int runCard(CliApp& app) {
  if (!memberSignedIn(app)) return kExitFailure;
  pushScreen(texts::kMyBankCardScreen);
  MyBankCardViewController screen;
  const auto stayed = loadCardScreen(app, screen);
  if (!stayed) return timedOut("card");
  if (!*stayed) return kExitFailure;
  printCardScreen(app, screen.view());
  return kExitOk;
}

int runUnbind(CliApp& app) {
  if (!memberSignedIn(app)) return kExitFailure;
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
  // The answer, then the unbind's end, then the reload: two slots set before the
  // question is asked, so these waits stay hand-made.
  std::optional<MyBankCardViewController::UnbindOutcome> outcome;
  std::optional<bool> reloaded;
  screen.onUnbindFinished = [&outcome](MyBankCardViewController::UnbindOutcome o) { outcome = o; };
  screen.onLoaded = [&reloaded](bool stayed) { reloaded = stayed; };
  if (!askAndAwaitAnswer(app, [&screen] { screen.unbindAction(); })) return kExitFailure;
  if (!app.waitUntil([&] { return outcome.has_value(); })) return timedOut("unbind");
  using enum MyBankCardViewController::UnbindOutcome;
  if (*outcome == Cancelled) {
    std::cerr << "qmv: the card stays bound: the question was answered " << texts::kCancel << '\n';
    return kExitFailure;
  }
  if (*outcome == Failed) return kExitFailure;  // the refusal was shown or reported
  if (!app.waitUntil([&reloaded] { return reloaded.has_value(); })) return timedOut("card");
  if (!*reloaded) return kExitFailure;
  printCardScreen(app, screen.view());
  return kExitOk;
}

struct BindArgs {
  std::string name, idNumber, card, code;
};

// The bind screen as it loads: the phone the code goes to.
void printBindScreen(CliApp& app, const QXBindBankCardViewController& screen) {
  app.output().line(screen.phoneLabelText());
  app.output().data("phoneLabel", screen.phoneLabelText());
}

// The bind screen's code button: a code for the member's own phone.
int runCode(CliApp& app) {
  if (!memberSignedIn(app)) return kExitFailure;
  pushScreen(texts::kBindScreen);
  QXBindBankCardViewController screen;
  screen.viewDidLoad();
  printBindScreen(app, screen);
  const auto sent = awaitSlot(app, screen.onCodeFinished, [&screen] { screen.getCodeAction(); });
  if (!sent) return timedOut("the code request");
  app.output().data("sent", *sent);
  return *sent ? kExitOk : kExitFailure;
}

// The bind screen's fields as given, then its bind button with every check.
int runBind(CliApp& app, const BindArgs& args) {
  if (!memberSignedIn(app)) return kExitFailure;
  pushScreen(texts::kBindScreen);
  QXBindBankCardViewController screen;
  screen.viewDidLoad();
  screen.nameText = args.name;
  screen.idNumText = args.idNumber;
  screen.cardNumText = args.card;
  screen.codeText = args.code;
  printBindScreen(app, screen);
  const std::string bank = screen.bankNameText();
  if (!args.card.empty()) app.output().line(bank.empty() ? args.card : args.card + "  " + bank);
  app.output().data("bankName", bank);
  bool asked = false;
  const auto bound = awaitSlot(app, screen.onFinished, [&] { return asked = screen.bindAction(); });
  if (!asked) return kExitFailure;  // the check's message is on the overlay
  if (!bound) return timedOut("bind");
  return *bound ? kExitOk : kExitFailure;
}

int runWithdraw(CliApp& app, const std::string& amount) {
  if (!memberSignedIn(app)) return kExitFailure;
  pushScreen(texts::kWithDrawScreen);
  QXWithDrawViewController screen;
  if (!awaitSlot(app, screen.onRefreshed, [&screen] { screen.viewWillAppear(); })) return timedOut("withdraw");
  CliOutput& out = app.output();
  if (const auto& bank = screen.bank()) {
    out.line(bank->name + texts::kNameBankSeparator + bank->cardBank);
    out.line(screen.cardNumberText());
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
  bool asked = false;
  const auto done = awaitSlot(app, screen.onFinished, [&] { return asked = screen.withDrawAction(); });
  if (!asked) return kExitFailure;
  if (!done) return timedOut("withdraw");
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
    auto code = std::make_shared<CLI::App*>(nullptr);
    auto bind = std::make_shared<CLI::App*>(nullptr);
    auto unbind = std::make_shared<CLI::App*>(nullptr);
    CLI::App* card = registry.add("card", "the bound bank card, or the panel to add one",
                                  [bindArgs, code, bind, unbind](CliApp& app) {
                                    if ((*code)->parsed()) return runCode(app);
                                    if ((*bind)->parsed()) return runBind(app, *bindArgs);
                                    if ((*unbind)->parsed()) return runUnbind(app);
                                    return runCard(app);
                                  });
    card->require_subcommand(0, 1);
    *code = card->add_subcommand("code", "send the SMS code for binding to the member's phone");
    *bind = card->add_subcommand("bind", "bind a bank card with the SMS code of \"card code\"");
    (*bind)->add_option("--name", bindArgs->name, "card holder's name");
    (*bind)->add_option("--id", bindArgs->idNumber, "identity-card number");
    (*bind)->add_option("--card", bindArgs->card, "card number");
    (*bind)->add_option("--code", bindArgs->code, "the SMS code");
    *unbind = card->add_subcommand("unbind", cli_texts::kUnbindHelp);
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
