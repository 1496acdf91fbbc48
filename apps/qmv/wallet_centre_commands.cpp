// Commands of the wallet tab: the overview with one kind of fund records, and the vouchers.
// Each drives the headless screens as a member would (the tab, then its entry) and prints
// what they show. "--page N" loads page 1, then pulls up N-1 times, and prints page N.
#include <memory>
#include <string>

#include "apps/qmv/cli_app.h"
#include "apps/qmv/cli_flow.h"
#include "apps/qmv/command_registry.h"
#include "features/wallet/fund_record_view_controller.h"
#include "features/wallet/my_voucher_view_controller.h"
#include "features/wallet/wealth_view_controller.h"
#include "platform/navigator.h"

namespace qmv::cli {
namespace {

namespace texts = wallet_texts;

long kindOf(const std::string& name) {
  if (name.empty() || name == "all") return 0;
  for (long kind = 1; kind < FundRecordModel::kKindCount; ++kind) {
    if (name == FundRecordModel::kKinds[kind]) return kind;
  }
  return 0;
}

int runWallet(CliApp& app, const std::string& type, long pages) {
  if (!memberSignedIn(app)) return kExitFailure;
  Env::current().navigator->push(texts::kWealthScreen);
  WealthViewController wealth;
  if (!awaitSlot(app, wealth.onRefreshed, [&wealth] { wealth.viewWillAppear(); })) return timedOut("the wallet");
  CliOutput& out = app.output();
  out.line(wealth.title());
  out.line(std::string(WealthViewController::kBalanceLabel) + " " + wealth.balanceText());
  if (!wealth.cardLine().empty()) out.line(wealth.cardLine());
  std::string entries;
  for (const auto& entry : WealthViewController::kEntries) {
    entries += std::string(entries.empty() ? "" : " | ") + entry.title;
  }
  out.line(entries);
  out.data("balance", wealth.balanceText());
  out.data("card", wealth.cardLine());

  // The fund records entry (资金明细), with the kind chosen on its filter.
  wealth.openEntry(2);
  const long kind = kindOf(type);
  FundRecordViewController records(kind);
  const auto from = loadListPages(app, records, pages);
  if (!from) return kExitFailure;
  out.line(std::string(records.title()) + " - " + FundRecordViewController::kinds()[kind] +
           (records.count().empty() ? "" : " (" + records.count() + ")"));
  if (records.rows().empty()) out.line(FundRecordViewController::kEmptyText);
  Json rows = Json::array();
  for (std::size_t i = *from; i < records.rows().size(); ++i) {
    const FundRecordModel& r = records.rows()[i];
    out.line("  " + r.time + "  " + (r.kindText().empty() ? r.type : r.kindText()) + "  " + r.title + "  " +
             r.amountText());
    rows.push_back({{"id", r.recordId},
                    {"time", r.time},
                    {"type", r.type},
                    {"kind", r.kindText()},
                    {"title", r.title},
                    {"orderId", r.orderId},
                    {"amount", r.amount},
                    {"amountText", r.amountText()}});
  }
  out.data("type", kind == 0 ? "all" : FundRecordModel::kKinds[kind]);
  out.data("count", records.count());
  out.data("page", records.pageNum());
  out.data("records", rows);
  return kExitOk;
}

int runVouchers(CliApp& app, long pages) {
  if (!memberSignedIn(app)) return kExitFailure;
  Env::current().navigator->push(texts::kWealthScreen);
  WealthViewController().openEntry(3);  // 我的代金券
  MyVoucherViewController vouchers;
  const auto from = loadListPages(app, vouchers, pages);
  if (!from) return kExitFailure;
  CliOutput& out = app.output();
  out.line(vouchers.title());
  if (vouchers.rows().empty()) out.line(MyVoucherViewController::kEmptyText);
  Json rows = Json::array();
  for (std::size_t i = *from; i < vouchers.rows().size(); ++i) {
    const VoucherModel& v = vouchers.rows()[i];
    out.line("  " + v.valueText() + "  " + v.title + "  " + v.storeText() + "  " + v.validityText() + "  " +
             v.stateText());
    rows.push_back({{"voucherId", v.voucherId},
                    {"title", v.title},
                    {"price", v.price},
                    {"value", v.valueText()},
                    {"storeId", v.storeId},
                    {"store", v.storeText()},
                    {"start", v.start},
                    {"date", v.date},
                    {"validity", v.validityText()},
                    {"status", v.status},
                    {"state", v.stateText()}});
  }
  out.data("page", vouchers.pageNum());
  out.data("vouchers", rows);
  return kExitOk;
}

}  // namespace

void registerWalletCentreCommands(CommandRegistry& registry) {
  auto type = std::make_shared<std::string>("all");
  auto pages = std::make_shared<long>(1);
  CLI::App* wallet = registry.add("wallet", "the wallet: balance, bound card and fund records of one kind",
                                  [type, pages](CliApp& app) { return runWallet(app, *type, *pages); });
  wallet->add_option("--type", *type, "the records' kind: all, topup, pay, withdraw, refund or prize")
      ->check(CLI::IsMember({"all", "topup", "pay", "withdraw", "refund", "prize"}));
  wallet->add_option("--page", *pages, "the page of records to show")->check(CLI::Range(1L, 1000L));

  auto voucherPages = std::make_shared<long>(1);
  CLI::App* vouchers = registry.add("vouchers", "your vouchers: value, store, validity and state",
                                    [voucherPages](CliApp& app) { return runVouchers(app, *voucherPages); });
  vouchers->add_option("--page", *voucherPages, "the page of vouchers to show")->check(CLI::Range(1L, 1000L));
}

}  // namespace qmv::cli
