// Checkout commands: buying an offer (offer screen, submit screen, pay-now screen, the
// payment application and back) and the pay-now screen opened directly, as a page opens it
// for a draw product or as a direct payment to a store. The screens do the work; these
// only tap them and print what they show.
#include <iostream>
#include <memory>

#include "apps/qmv/cli_app.h"
#include "apps/qmv/cli_flow.h"
#include "apps/qmv/command_registry.h"
#include "core/request/network_util.h"
#include "features/discovery/discovery_texts.h"
#include "features/discovery/qx_activities_view_controller.h"
#include "features/orders/amount_text.h"
#include "features/orders/checkout_texts.h"
#include "features/orders/order_screens.h"
#include "features/orders/pay_cash_view.h"
#include "features/orders/pay_now_runner.h"
#include "features/orders/pay_result_view_controller.h"
#include "features/orders/qx_submit_oder_view_controller.h"
#include "platform/navigator.h"
#include "shell/app_links.h"

namespace qmv::cli {
namespace {

namespace texts = checkout_texts;
using Channel = QXPayNowViewController::Channel;
using Outcome = PayNowRunner::Outcome;

struct PayChoices {
  bool noBalance = false;
  std::string channel;  // alipay, wechat, unionpay or empty
};

const char* outcomeName(Outcome outcome) {
  switch (outcome) {
    case Outcome::Paid:
      return "paid";
    case Outcome::Refused:
      return "refused";
    case Outcome::NotPaid:
      return "not paid";
    case Outcome::NothingConfirmed:
      return "nothing confirmed";
    case Outcome::Pending:
      break;
  }
  return "pending";
}

std::optional<Channel> channelNamed(const std::string& name) {
  if (name == "alipay") return Channel::Alipay;
  if (name == "wechat") return Channel::WeChat;
  if (name == "unionpay") return Channel::UnionPay;
  return std::nullopt;
}

std::string check(bool on) { return on ? " [x]" : " [ ]"; }

// The pay-now screen as it shows now: one block of lines, and its --json form.
Json printPayNow(CliOutput& out, const QXPayNowViewController& screen) {
  out.line(texts::kPayNowTitle);
  out.line(screen.name);
  out.line(screen.totalText());
  if (!screen.topHidden()) out.line(screen.balanceText() + check(screen.balanceSelected()));
  if (!screen.bottomHidden()) {
    out.line("alipay" + check(screen.alipaySelected()) + "  wechat" + check(screen.weChatSelected()) + "  unionpay" +
             check(screen.unionPaySelected()));
  }
  out.line(screen.confirmTitle());
  Json shown = {{"name", screen.name},
                {"total", screen.totalText()},
                {"confirm", screen.confirmTitle()},
                {"balanceSelected", screen.balanceSelected()},
                {"leftPayAmount", static_cast<double>(screen.leftPayAmount().count())}};
  if (!screen.topHidden()) shown["balance"] = screen.balanceText();
  if (!screen.bottomHidden()) {
    shown["channels"] = {{"alipay", screen.alipaySelected()},
                         {"wechat", screen.weChatSelected()},
                         {"unionpay", screen.unionPaySelected()}};
  }
  return shown;
}

// The payment result the screen opened: what the member reads there, and where 查看订单
// leads (this CLI's order command).
void printPayResult(CliApp& app, const Json& payload) {
  CliOutput& out = app.output();
  PayResultViewController result(payload);
  // A paid result reads the order for its code; without an answer it shows what it has.
  awaitSlot(app, result.onLoaded, [&result] { result.viewDidLoad(); });
  out.line(result.title());
  Json shown = {{"paid", result.paid()}, {"result", result.resultText()}};
  for (const auto& [key, text] : {std::pair<const char*, std::string>{"result", result.resultText()},
                                  {"name", result.nameText()},
                                  {"amount", result.amountText()},
                                  {"orderId", result.orderIdText()},
                                  {"code", result.codeText()},
                                  {"note", result.noteText()}}) {
    if (text.empty()) continue;
    out.line(text);
    shown[key] = text;
  }
  if (!result.orderIdText().empty()) {
    const std::string orderId = payload.value("orderId", "");
    out.line(std::string(texts::kViewOrder) + ": qmv order " + orderId);
    shown["viewOrder"] = "qmv order " + orderId;
  }
  out.data("payResult", shown);
}

int runPayNow(CliApp& app, const Json& payload, const PayChoices& choices) {
  CliOutput& out = app.output();
  PayNowRunner runner(payload);
  runner.appear();
  if (!app.waitUntil([&] { return runner.ready(); })) return timedOut("the pay-now screen");
  Json shown = Json::array({printPayNow(out, runner.screen())});
  const bool tapped = runner.tap({!choices.noBalance, channelNamed(choices.channel)});
  if (!tapped) {
    std::cerr << "qmv: the balance covers the total, so no channel is offered (add --no-balance to pay with "
              << choices.channel << ")\n";
    out.data("payNow", shown);
    return kExitFailure;
  }
  // After the taps, the screen as it is confirmed.
  if (choices.noBalance || !choices.channel.empty()) shown.push_back(printPayNow(out, runner.screen()));
  out.data("payNow", shown);

  runner.confirm();
  // Without the sandbox's payment applications nothing comes back to this run: the
  // vendor's application returns later, through "qmv open".
  const bool returns = app.sandbox() != nullptr;
  // The runner's state ends this wait, not one slot.
  if (!app.waitUntil([&] { return runner.finished() || (runner.handedOver() && !returns); })) {
    return timedOut("the payment");
  }
  const Outcome outcome = runner.outcome();
  out.line(std::string("outcome: ") + outcomeName(outcome));
  out.data("outcome", outcomeName(outcome));
  const auto receipt = runner.screen().receipt();
  if (outcome == Outcome::Paid && receipt) {
    Json rows = Json::object();
    for (const auto& row : receipt->rows()) {
      out.line(row.title + " " + row.value);
      rows[row.title] = row.value;
    }
    out.line("order " + receipt->orderNumber());
    out.line(PayCashView::note());
    out.data("receipt", {{"rows", rows}, {"orderId", receipt->orderNumber()}});
  }
  const auto top = Env::current().navigator->topScreen();
  if (top) out.data("screen", top->name);
  if (top && top->name == texts::kPayResultScreen) printPayResult(app, top->payload);
  return outcome == Outcome::Paid ? kExitOk : kExitFailure;
}

// ---- buy ----

struct BuyArgs {
  std::string activityId;
  long quantity = 1;
  PayChoices pay;
};

int runBuy(CliApp& app, const BuyArgs& args) {
  CliOutput& out = app.output();
  const auto& navigator = Env::current().navigator;
  // The offer screen, as a store's offer list opens it.
  navigator->push(discovery_texts::kActivityScreen, {{"commodityId", args.activityId}});
  QXActivitiesViewController offer(args.activityId);
  const auto loaded = awaitSlot(app, offer.onLoaded, [&offer] { offer.loadDetail(); });
  if (!loaded) return timedOut("the offer");
  if (!*loaded) return kExitFailure;
  out.line(offer.activity()->name + " | " + offer.priceLabel() + " " + offer.priceText());

  if (!offer.openSubmitOrder()) return kExitFailure;
  QXSubmitOderViewController submit(navigator->topScreen()->payload);
  for (long i = 1; i < args.quantity; ++i) submit.plusAction();
  out.line(texts::kSubmitTitle);
  // Each price after its label, then how they make the total.
  out.line(std::string(discovery_texts::kNowPriceLabel) + " " + submit.unitPriceText());
  if (!submit.firstPriceText().empty()) {
    out.line(std::string(discovery_texts::kFirstPriceLabel) + " " + submit.firstPriceText());
  }
  out.line(submit.totalBreakdownText() + " = " + submit.totalText());
  out.data("submit", {{"unitPrice", submit.unitPriceText()},
                      {"firstPrice", submit.firstPriceText()},
                      {"quantity", submit.quantityText()},
                      {"breakdown", submit.totalBreakdownText()},
                      {"total", submit.totalText()},
                      {"isFirst", submit.isFirst()}});

  bool refused = false;
  submit.onRefused = [&] { refused = true; };
  // A refusal comes at once, and then nothing else will.
  const auto submitted = awaitSlot(app, submit.onSubmitted, [&] {
    submit.submitAction();
    return !refused;
  });
  submit.onRefused = nullptr;
  if (refused) return kExitFailure;
  if (!submitted) return timedOut("submit");
  if (!*submitted) {
    // memberSignedIn says why the stored account did not sign in, when it did not.
    if (memberSignedIn(app)) std::cerr << "qmv: " << kNotLoggedIn << '\n';
    return kExitFailure;
  }
  return runPayNow(app, navigator->topScreen()->payload, args.pay);
}

// ---- pay ----

struct PayArgs {
  std::string productId, series, shareCount;
  std::string storeId;
  std::string total;
  PayChoices pay;
};

int runPay(CliApp& app, const PayArgs& args) {
  if (args.productId.empty() == args.storeId.empty()) {
    std::cerr << "qmv: give either --product (with --series and --acount) or --store (with --total)\n";
    return kExitUsage;
  }
  if (!args.productId.empty() && (args.series.empty() || args.shareCount.empty())) {
    std::cerr << "qmv: --product needs --series and --acount\n";
    return kExitUsage;
  }
  if (!args.storeId.empty() && args.total.empty()) {
    std::cerr << "qmv: --store needs --total\n";
    return kExitUsage;
  }
  // A draw is paid through the link its page would follow; a store has no such link.
  if (args.storeId.empty()) {
    openAppLink("qmv://pay?productId=" + NetworkUtil::urlEncode(args.productId) +
                "&series=" + NetworkUtil::urlEncode(args.series) + "&acount=" + NetworkUtil::urlEncode(args.shareCount));
  } else {
    openStorePayment(args.storeId, args.total);
  }
  // The screen on top tells what happened: the login screen when there is no session.
  const auto top = Env::current().navigator->topScreen();
  if (!top || top->name != texts::kPayNowScreen) {
    // memberSignedIn says why the stored account did not sign in, when it did not.
    if (memberSignedIn(app)) std::cerr << "qmv: " << kNotLoggedIn << '\n';
    return kExitFailure;
  }
  // A page's link carries no total; one given here is the member's own.
  Json payload = top->payload;
  if (!args.total.empty()) payload["totalFee"] = args.total;
  return runPayNow(app, payload, args.pay);
}

void addPayChoices(CLI::App* command, PayChoices& choices) {
  addPayNowOptions(command, choices.noBalance, choices.channel);
}

}  // namespace

void addPayNowOptions(CLI::App* command, bool& noBalance, std::string& channel) {
  command->add_flag("--no-balance", noBalance, "tap the balance off (pay it all through a channel)");
  command->add_option("--channel", channel, "tap this payment channel")
      ->check(CLI::IsMember({"alipay", "wechat", "unionpay"}));
}

int runPayNowScreen(CliApp& app, const Json& payload, bool noBalance, const std::string& channel) {
  return runPayNow(app, payload, {noBalance, channel});
}

void registerCheckoutCommands(CommandRegistry& registry) {
  {
    auto args = std::make_shared<BuyArgs>();
    CLI::App* buy = registry.add("buy", "buy an offer: submit, pay now, the payment application and back",
                                 [args](CliApp& app) { return runBuy(app, *args); });
    buy->add_option("ACTIVITY_ID", args->activityId, "offer (commodity) id")->required();
    buy->add_option("--quantity", args->quantity, "how many (taps + on the submit screen)")
        ->check(CLI::Range(1L, 10000L));
    addPayChoices(buy, args->pay);
  }
  {
    auto args = std::make_shared<PayArgs>();
    CLI::App* pay = registry.add("pay", "the pay-now screen: a draw product as a page opens it, or a store payment",
                                 [args](CliApp& app) { return runPay(app, *args); });
    pay->add_option("--product", args->productId, "draw product id");
    pay->add_option("--series", args->series, "draw series (issue number)");
    pay->add_option("--acount", args->shareCount, "number of draw shares");
    pay->add_option("--store", args->storeId, "store id, for a direct payment");
    pay->add_option("--total", args->total, "amount in yuan, at most two decimals (a page's draw link carries none)")
        ->check(CLI::Validator(
            [](std::string& text) {
              return payableFen(text) ? std::string()
                                      : "expected a plain amount in yuan such as 12.50: digits, at most two "
                                        "decimals, from 0.01 to " +
                                            formatAmount("%.2f", static_cast<double>(kMaxPayFen) / 100);
            },
            "YUAN"));
    addPayChoices(pay, args->pay);
  }
}

}  // namespace qmv::cli
