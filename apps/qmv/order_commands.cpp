// Order commands: the my-orders list with its tabs and pages, one order's detail screen
// (chosen as the list chooses it) with the redemption code's QR code, the refund of a
// row and the rating of a store order. Each drives the headless screens the way a member would and prints what they show.
#include <cstdio>
#include <memory>
#include <optional>

#include "apps/qmv/cli_app.h"
#include "apps/qmv/cli_flow.h"
#include "apps/qmv/cli_texts.h"
#include "apps/qmv/command_registry.h"
#include "core/common/log.h"
#include "core/session/global_data.h"
#include "features/orders/grade_store_view_controller.h"
#include "features/orders/order_texts.h"
#include "features/orders/qx_my_activity_order_detail_view_controller.h"
#include "features/orders/qx_my_order_view_controller.h"
#include "features/orders/qx_my_store_order_detail_view_controller.h"
#include "platform/linux/qr_png.h"
#include "platform/navigator.h"
#include "shell/app_delegate.h"

namespace qmv::cli {
namespace {

namespace texts = order_texts;

constexpr int kQrPngScale = 8;

// Runs `action` on the list and waits for the list's answer; nullopt on time-out.
std::optional<bool> load(CliApp& app, QXMyOrderViewController& list, const std::function<void()>& action) {
  return awaitSlot(app, list.onLoaded, action);
}

// Opens the list on `tab` as the screen appears (page 1); nullopt on time-out.
std::optional<bool> openList(CliApp& app, QXMyOrderViewController& list) {
  list.viewDidLoad();
  return load(app, list, [&list] { list.viewWillAppear(); });
}

// Pulls up until the order is listed; nullopt when it is not (or on time-out).
std::optional<std::size_t> findRow(CliApp& app, QXMyOrderViewController& list, const std::string& orderId) {
  bool done = false;
  std::optional<std::size_t> row;
  list.findOrder(orderId, [&](std::optional<std::size_t> found) {
    row = found;
    done = true;
  });
  app.waitUntil([&done] { return done; });
  return row;
}

// "<订单号:id> | name | 总价:¥p | 数量:n | status | [button]", the quantity left out when the
// row hides it and a disabled button marked so.
std::string rowText(const QXMyOrderTableViewCell& cell) {
  std::string text = cell.orderIdText + " | " + cell.nameText + " | " + cell.priceText;
  if (!cell.numberHidden) text += " | " + cell.numberText;
  text += " | " + cell.look.statusText + " | [" + cell.look.buttonTitle + "]";
  if (!cell.look.buttonEnabled) text += " disabled";
  return text;
}

Json rowJson(const QXMyOrderTableViewCell& cell) {
  return {{"orderId", cell.orderInfo.orderId},
          {"orderType", cell.orderInfo.orderType},
          {"name", cell.nameText},
          {"orderIdText", cell.orderIdText},
          {"total", cell.priceText},
          {"quantity", cell.numberHidden ? Json() : Json(cell.numberText)},
          {"status", cell.look.statusText},
          {"button", cell.look.buttonTitle},
          {"buttonEnabled", cell.look.buttonEnabled}};
}

// ---- orders ----

int runOrders(CliApp& app, long tab, long pages) {
  if (!memberSignedIn(app)) return kExitFailure;
  QXMyOrderViewController list(tab);
  // A list the answer held in an unreadable form is reported, not shown as no orders.
  const std::size_t warnings = warningCount();
  std::optional<bool> correct = openList(app, list);
  while (correct.value_or(false) && list.pageNum < pages && !list.footerHidden) {
    correct = load(app, list, [&list] { list.footerRefresh(); });
  }
  if (!correct) return failWith("the order list did not load in time");
  const bool loaded = *correct && warningCount() == warnings;
  // Nothing to show: what went wrong was shown or reported on stderr.
  if (!loaded && list.orderList.empty()) return kExitFailure;
  CliOutput& out = app.output();
  out.line(list.title() + " (tab " + std::to_string(list.index) + ", page " + std::to_string(list.pageNum) + ")");
  Json rows = Json::array();
  for (std::size_t row = 0; row < list.numberOfRows(); ++row) {
    const QXMyOrderTableViewCell cell = list.cellForRow(row);
    out.line("  " + rowText(cell));
    rows.push_back(rowJson(cell));
  }
  if (loaded && list.noDataShown) out.line("  no orders");
  if (loaded && list.footerHidden && !list.noDataShown) out.line("  no more orders");
  out.data("title", list.title());
  out.data("tab", list.index);
  out.data("page", list.pageNum);
  out.data("footerHidden", list.footerHidden);
  out.data("noData", list.noDataShown);
  out.data("orders", rows);
  return loaded ? kExitOk : kExitFailure;
}

// ---- order ----

// Light modules are drawn as blocks, two module rows per line, so that the code reads
// right on the usual light-on-dark terminal; the quiet zone is drawn too.
std::vector<std::string> qrHalfBlocks(const QrMatrix& code) {
  const int quiet = QrGenerator::kQuietZone;
  const int side = code.width + 2 * quiet;
  std::vector<std::string> lines;
  for (int y = 0; y < side; y += 2) {
    std::string line;
    for (int x = 0; x < side; ++x) {
      const bool topLight = !code.dark(x - quiet, y - quiet);
      const bool bottomLight = y + 1 < side ? !code.dark(x - quiet, y + 1 - quiet) : false;
      line += topLight && bottomLight ? "█" : topLight ? "▀" : bottomLight ? "▄" : " ";
    }
    lines.push_back(std::move(line));
  }
  return lines;
}

// Loads the detail screen as it appears; false (after saying why) when nothing arrived.
bool loadDetail(CliApp& app, OrderDetailViewController& screen) {
  const auto loaded = awaitSlot(app, screen.onLoaded, [&screen] { screen.viewWillAppear(); });
  if (!loaded) failWith("the order did not load in time");
  return loaded.value_or(false);
}

void printCommon(CliOutput& out, const OrderDetailViewController& screen, const char* priceLabel,
                 const std::string& price) {
  out.line(screen.title());
  out.line(screen.nameText);
  out.line(std::string(priceLabel) + " " + price);
  out.line(screen.statusText);
  out.line(screen.orderIdText);
  out.line(screen.phoneText);
  out.line(screen.timeText);
  out.data("title", screen.title());
  out.data("orderId", screen.orderId);
  out.data("name", screen.nameText);
  out.data("image", screen.imageURL);
  out.data("priceLabel", priceLabel);
  out.data("price", price);
  out.data("status", screen.statusText);
  out.data("orderIdText", screen.orderIdText);
  out.data("phone", screen.phoneText);
  out.data("time", screen.timeText);
}

int showStoreOrder(CliApp& app, const std::string& orderId) {
  QXMyStoreOrderDetailViewController screen(orderId);
  if (!loadDetail(app, screen)) return kExitFailure;
  CliOutput& out = app.output();
  printCommon(out, screen, texts::kPaidPriceLabel, screen.priceText);
  out.line(std::string("comment button: ") + (screen.commentHidden ? "hidden" : "shown"));
  out.data("commentShown", !screen.commentHidden);
  return kExitOk;
}

int showActivityOrder(CliApp& app, const std::string& orderId, const std::string& qrPath) {
  QXMyActivityOrderDetailViewController screen(orderId);
  if (!loadDetail(app, screen)) return kExitFailure;
  CliOutput& out = app.output();
  printCommon(out, screen, texts::kUnitPriceLabel, screen.priceText);
  out.line(screen.codeText);
  out.line(screen.numberText);
  if (!screen.savingText.empty()) out.line(screen.savingText);
  out.line(screen.totalText);
  char height[32];
  std::snprintf(height, sizeof height, "%.1f", screen.contentHeight);
  out.line(screen.contentText + " (height " + height + ")");
  out.data("code", screen.codeText);
  out.data("number", screen.numberText);
  out.data("saving", screen.savingText);
  out.data("total", screen.totalText);
  out.data("content", screen.contentText);
  out.data("contentHeight", screen.contentHeight);
  if (!screen.qrCode) {
    out.data("qr", nullptr);
    return qrPath.empty() ? kExitOk : failWith("the order has no redemption code to draw");
  }
  if (!qrPath.empty()) {
    if (!writeQrPng(*screen.qrCode, qrPath, kQrPngScale)) return failWith("cannot write " + qrPath);
    out.line("QR code written to " + qrPath);
    out.data("qrFile", qrPath);
  } else {
    for (const std::string& line : qrHalfBlocks(*screen.qrCode)) out.line(line);
  }
  Json rows = Json::array();
  for (int y = 0; y < screen.qrCode->width; ++y) {
    std::string row;
    for (int x = 0; x < screen.qrCode->width; ++x) row += screen.qrCode->dark(x, y) ? '1' : '0';
    rows.push_back(row);
  }
  out.data("qr", {{"width", screen.qrCode->width}, {"rows", rows}});
  return kExitOk;
}

int runOrder(CliApp& app, const std::string& orderId, const std::string& qrPath) {
  if (!memberSignedIn(app)) return kExitFailure;
  QXMyOrderViewController list;
  if (!openList(app, list).value_or(false)) return kExitFailure;
  const auto row = findRow(app, list, orderId);
  if (!row) return failWith("no order " + orderId + " in the order list");
  list.didSelectRow(*row);
  const auto opened = Env::current().navigator->topScreen();
  if (!opened) return failWith("the order's detail screen did not open");
  const std::string id = opened->payload.value("orderId", std::string());
  app.output().data("screen", opened->name);
  if (opened->name == texts::kStoreOrderDetailScreen) return showStoreOrder(app, id);
  return showActivityOrder(app, id, qrPath);
}

// ---- refund ----

int runRefund(CliApp& app, const std::string& orderId) {
  if (!memberSignedIn(app)) return kExitFailure;
  QXMyOrderViewController list;
  if (!openList(app, list).value_or(false)) return kExitFailure;
  auto row = findRow(app, list, orderId);
  if (!row) return failWith("no order " + orderId + " in the order list");
  CliOutput& out = app.output();
  QXMyOrderTableViewCell before = list.cellForRow(*row);
  out.line(rowText(before));
  out.data("before", rowJson(before));
  if (before.orderInfo.status != "1") {
    return failWith("order " + orderId + " cannot be refunded: its button reads " + before.look.buttonTitle);
  }
  std::optional<bool> refunded;
  list.onRefunded = [&refunded](bool correct) { refunded = correct; };
  if (!askAndAwaitAnswer(app, [&before] { before.rightBtnAction(); })) {
    out.data("refunded", false);
    return kExitFailure;  // nothing is sent without an answer
  }
  if (!list.isRefunding() && !refunded) {
    out.data("refunded", false);
    return failWith("order " + orderId + " was not refunded: the question was answered " + texts::kCancel);
  }
  // A correct refund reloads the list; the order keeps its place, possibly on a later page.
  // Two slots end this wait, so it is not a single awaitSlot.
  bool reloaded = false;
  list.onLoaded = [&reloaded](bool) { reloaded = true; };
  app.waitUntil([&] { return refunded.has_value() && (!*refunded || reloaded); });
  list.onLoaded = nullptr;
  out.data("refunded", refunded.value_or(false));
  if (!refunded) return failWith("the refund did not end in time");
  if (!*refunded) return kExitFailure;  // the refusal was shown or reported
  row = findRow(app, list, orderId);
  if (!row) return failWith("order " + orderId + " is no longer listed");
  const QXMyOrderTableViewCell after = list.cellForRow(*row);
  out.line(rowText(after));
  out.data("after", rowJson(after));
  if (after.orderInfo.status == before.orderInfo.status) {
    return failWith("the server accepted the refund, but order " + orderId + " still reads " + after.look.statusText);
  }
  return kExitOk;
}

// ---- rate ----

int runRate(CliApp& app, const std::string& orderId, long star, const std::string& text) {
  if (!memberSignedIn(app)) return kExitFailure;
  QXMyOrderViewController list;
  if (!openList(app, list).value_or(false)) return kExitFailure;
  const auto row = findRow(app, list, orderId);
  if (!row) return failWith("no order " + orderId + " in the order list");
  QXMyOrderTableViewCell cell = list.cellForRow(*row);
  CliOutput& out = app.output();
  out.line(rowText(cell));
  if (cell.orderInfo.status != "2") {
    return failWith("order " + orderId + " cannot be rated: its button reads " + cell.look.buttonTitle);
  }
  // The row's button opens the rating screen, as a tap would.
  cell.rightBtnAction();
  const auto opened = Env::current().navigator->topScreen();
  if (!opened || opened->name != texts::kGradeStoreScreen) return failWith("the rating screen did not open");
  GradeStoreViewController screen(opened->payload.value("orderId", std::string()),
                                  opened->payload.value("storeName", std::string()),
                                  &app.appDelegate().successOrderID);
  out.line(screen.title() + ": " + screen.storeName());
  // Without --star the screen refuses as it does an untouched form.
  if (star > 0) screen.selectStar(static_cast<int>(star));
  screen.contentText = text;
  bool submitted = false;
  const auto rated = awaitSlot(app, screen.onFinished, [&] { return submitted = screen.submitAction(); });
  if (!submitted) return kExitFailure;  // the refusal is on the overlay
  if (!rated) return failWith("the rating did not end in time");
  out.data("orderId", orderId);
  out.data("star", screen.star());
  out.data("rated", *rated);
  if (!*rated) return kExitFailure;
  out.line(std::to_string(screen.star()) + " stars: " + screen.countText());
  return kExitOk;
}

}  // namespace

void registerOrderCommands(CommandRegistry& registry) {
  {
    struct Options {
      long tab = 0;
      long page = 1;
    };
    auto options = std::make_shared<Options>();
    CLI::App* orders = registry.add("orders", "the member's orders of one tab, as the list shows them",
                                    [options](CliApp& app) { return runOrders(app, options->tab, options->page); });
    orders->add_option("--tab", options->tab, "0 all, 1 to use, 2 to rate, 3 done")->check(CLI::Range(0L, 3L));
    orders->add_option("--page", options->page, "load pages 1..N as pull-up does")->check(CLI::Range(1L, 1000L));
  }
  {
    struct Options {
      std::string id;
      std::string qr;
    };
    auto options = std::make_shared<Options>();
    CLI::App* order = registry.add("order", "one order's detail screen, with the redemption code's QR code",
                                   [options](CliApp& app) { return runOrder(app, options->id, options->qr); });
    order->add_option("ID", options->id, "order id (see qmv orders)")->required();
    order->add_option("--qr", options->qr, "write the QR code to this PNG file instead of drawing it");
  }
  {
    auto id = std::make_shared<std::string>();
    CLI::App* refund = registry.add("refund", cli_texts::kRefundHelp,
                                    [id](CliApp& app) { return runRefund(app, *id); });
    refund->add_option("ID", *id, "order id (see qmv orders --tab 1)")->required();
  }
  {
    struct Options {
      std::string id;
      long star = 0;  // not given
      std::string text;
    };
    auto options = std::make_shared<Options>();
    CLI::App* rate = registry.add("rate", "rate the store of an order waiting for its rating",
                                  [options](CliApp& app) {
                                    return runRate(app, options->id, options->star, options->text);
                                  });
    rate->add_option("ID", options->id, "order id (see qmv orders --tab 2)")->required();
    rate->add_option("--star", options->star, "1 to 5 stars")
        ->check(CLI::Range(static_cast<long>(GradeStoreViewController::kMinStar),
                           static_cast<long>(GradeStoreViewController::kMaxStar)));
    rate->add_option("--text", options->text, "the comment (at most 200 characters)");
  }
}

}  // namespace qmv::cli
