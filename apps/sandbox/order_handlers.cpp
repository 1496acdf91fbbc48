// Order endpoints: the prepare-pay endpoints, the order list and detail, refunds, vouchers,
// and the sandbox's payment completion.
#include <cmath>

#include "apps/sandbox/endpoint_table.h"
#include "apps/sandbox/order_payment.h"
#include "apps/sandbox/sandbox_records.h"
#include "apps/sandbox/sandbox_texts.h"
#include "apps/sandbox/sandbox_util.h"

namespace qmv::sandbox {
namespace {


// Internal states of an order that is not (yet) one of the client's statuses.
constexpr const char* kStatusWaiting = "0";
constexpr const char* kStatusClosed = "9";

constexpr const char* kOrderSelect =
    "SELECT o.*, s.name AS store_name, m.phone AS phone FROM orders o LEFT JOIN stores s ON s.id = o.store_id "
    "JOIN members m ON m.id = o.member_id ";

// Order rows joined with their store name and buyer phone, filtered by `where`.
std::string orderSql(const char* where) {
  std::string sql = kOrderSelect;
  sql.append(where);
  return sql;
}

enum class OrderKind { kStore, kActivity, kDraw };

struct NewOrder {
  std::string kind;  // "1" store, "2" activity, "3" draw
  Json storeId;
  Json commodityId;
  Json productId;
  std::string series;
  std::string name;
  std::string image;
  int64_t unitFen = 0;
  int64_t number = 1;
  int64_t firstUse = 0;
  std::string content;
};

// The status a paid order takes: an offer waits to be used, a direct store payment waits to
// be rated, a draw share is done.
std::string paidStatus(const std::string& kind) { return kind == "2" ? "1" : kind == "1" ? "2" : "4"; }

// Marks a waiting order paid, taking the balance part from the member. False when the
// balance no longer covers it.
bool settle(SandboxStore& db, const Json& order) {
  const int64_t balancePart = order["balance_fen"].get<int64_t>();
  const std::string id = order["id"].get<std::string>();
  if (balancePart > 0 && !moveBalance(db, order["member_id"].get<int64_t>(), -balancePart, "pay",
                                      kMemoOrderPaid + order["name"].get<std::string>(), id)) {
    return false;
  }
  const std::string kind = order["kind"].get<std::string>();
  db.execute("UPDATE orders SET status = ?, paid = ?, promotion_code = ? WHERE id = ?",
             {paidStatus(kind), nowSeconds(), kind == "2" ? randomDigits(12) : std::string(), id});
  if (order["commodity_id"].is_number_integer()) {
    db.execute("UPDATE commodities SET sold = sold + ? WHERE id = ?", {order["number"], order["commodity_id"]});
  }
  if (order["store_id"].is_number_integer()) {
    db.execute("UPDATE stores SET sold = sold + 1 WHERE id = ?", {order["store_id"]});
  }
  // One experience point per yuan spent.
  db.execute("UPDATE members SET now_exp = now_exp + ? WHERE id = ?",
             {order["total_fen"].get<int64_t>() / 100, order["member_id"]});
  return true;
}

Json loadOrder(SandboxStore& db, const std::string& id) { return db.queryOne(orderSql("WHERE o.id = ?"), {id}); }

Json findProduct(Call& call) {
  const auto productId = parseInteger(call.arg("productId"), 1, INT64_MAX);
  return productId ? call.db.queryOne("SELECT * FROM products WHERE id = ?", {*productId}) : Json();
}

// What one share of a draw costs: the page selling it names no amount, so the client asks
// here and shows the member shares × this before anything is spent.
Reply drawProduct(Call& call) {
  const Json product = findProduct(call);
  if (!product.is_object()) return Reply::refuse(kMsgNoProduct);
  return Reply::ok({{"productId", std::to_string(product["id"].get<int64_t>())},
                    {"series", std::to_string(product["series"].get<int64_t>())},
                    {"name", product["name"]},
                    {"imageURL", absoluteUrl(call, product["image"].get<std::string>())},
                    {"price", yuanText(product["share_fen"].get<int64_t>())}});
}

Reply preparePay(Call& call, OrderKind kind) {
  const auto totalFee = parseInteger(call.arg("totalFee"), 1, 100000000);
  if (!totalFee) return Reply::refuse(kMsgBadPayAmount);
  const std::string accountType = call.arg("accountType");
  if (accountType != "0" && accountType != "1" && accountType != "2" && accountType != "3") {
    return Reply::refuse(kMsgBadChannel);
  }
  const std::string useBalanceText = call.arg("useBalance");
  if (!useBalanceText.empty() && useBalanceText != "true" && useBalanceText != "false") {
    return Reply::refuse(kMsgBadArgument);
  }
  const bool useBalance = useBalanceText == "true" || accountType == "3";

  int64_t total = *totalFee;
  NewOrder order;
  if (kind == OrderKind::kDraw) {
    const Json product = findProduct(call);
    if (!product.is_object()) return Reply::refuse(kMsgNoProduct);
    const auto count = parseInteger(call.arg("acount"), 1, 100000);
    if (!count) return Reply::refuse(kMsgBadCount);
    order.kind = "3";
    order.productId = product["id"];
    order.series = call.hasArg("series") ? call.arg("series") : std::to_string(product["series"].get<int64_t>());
    order.name = kDrawOrderPrefix + order.series + kDrawOrderSuffix + product["name"].get<std::string>();
    order.image = product["image"].get<std::string>();
    order.unitFen = product["share_fen"].get<int64_t>();
    order.number = *count;
    total = order.unitFen * order.number;
    // The member was shown shares × the share price; any other total is not what he saw.
    if (*totalFee != total) return Reply::refuse(kMsgBadPayAmount);
  } else if (kind == OrderKind::kActivity) {
    const auto commodityId = parseInteger(call.arg("activityId"), 1, INT64_MAX);
    const Json c = commodityId ? call.db.queryOne("SELECT * FROM commodities WHERE id = ?", {*commodityId}) : Json();
    if (!c.is_object()) return Reply::refuse(kMsgNoCommodity);
    const auto count = parseInteger(call.arg("activityCount"), 1, 1000);
    if (!count) return Reply::refuse(kMsgBadCount);
    const std::string isFirst = call.arg("isFirstOrder");
    const int64_t nowFen = c["now_fen"].get<int64_t>();
    const int64_t firstFen = c["first_fen"].get<int64_t>();
    const bool claimsFirst = !isFirst.empty() && isFirst != "0";
    if (claimsFirst && !call.db
                            .queryOne("SELECT 1 FROM orders WHERE member_id = ? AND commodity_id = ? AND paid > 0",
                                      {call.memberId(), c["id"]})
                            .is_null()) {
      return Reply::refuse(kMsgFirstUsed);
    }
    // The client's totals: "1" prices the first unit at the first-purchase price, any other
    // non-zero flag sells one unit at that price alone.
    const int64_t expected = !claimsFirst     ? *count * nowFen
                             : isFirst == "1" ? (*count - 1) * nowFen + firstFen
                                              : firstFen;
    // The client computes in single precision; a fen of rounding either way is its own.
    if (std::llabs(*totalFee - expected) > 1) return Reply::refuse(kMsgBadPayAmount);
    order.kind = "2";
    order.storeId = c["store_id"];
    order.commodityId = c["id"];
    order.name = c["name"].get<std::string>();
    order.image = c["image"].get<std::string>();
    order.unitFen = nowFen;
    order.number = claimsFirst && isFirst != "1" ? 1 : *count;
    order.firstUse = claimsFirst ? 1 : 0;
    order.content = kPackagePrefix + order.name;
  } else {
    const auto storeId = parseInteger(call.arg("storeId"), 1, INT64_MAX);
    const Json s = storeId ? call.db.queryOne("SELECT * FROM stores WHERE id = ?", {*storeId}) : Json();
    if (!s.is_object()) return Reply::refuse(kMsgNoStore);
    order.kind = "1";
    order.storeId = s["id"];
    order.name = s["name"].get<std::string>() + kStorePaymentSuffix;
    order.image = s["images"].get<std::string>().substr(0, s["images"].get<std::string>().find('|'));
    order.unitFen = *totalFee;
  }

  const int64_t balance = call.member["balance"].get<int64_t>();
  if (accountType == "3" && balance < total) return Reply::refuse(kMsgInsufficientBalance);
  const int64_t balancePart = useBalance ? std::min(balance, total) : 0;
  const std::string orderId = "SB" + std::to_string(nowSeconds()) + randomDigits(6);
  const std::string prepayId = "sbx" + randomHex(29);
  call.db.execute(
      "INSERT INTO orders(id, member_id, kind, store_id, commodity_id, product_id, series, name, image, unit_fen, "
      "number, total_fen, content, status, account_type, use_balance, balance_fen, prepay_id, is_first, created) "
      "VALUES(?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?)",
      {orderId,        call.memberId(), order.kind,  order.storeId,      order.commodityId, order.productId,
       order.series,   order.name,      order.image, order.unitFen,      order.number,      total,
       order.content,  kStatusWaiting,  accountType, useBalance ? 1 : 0, balancePart,       prepayId,
       order.firstUse, nowSeconds()});
  // The balance alone pays when it covers the whole total; otherwise a channel completes it.
  bool paid = false;
  if (balancePart == total) {
    if (!settle(call.db, loadOrder(call.db, orderId))) return Reply::refuse(kMsgInsufficientBalance);
    paid = true;
  }
  Json data = orderRecord(call, loadOrder(call.db, orderId));
  data["prepay_id"] = prepayId;
  data["orderId"] = orderId;
  // The receipt's three rows: what this payment costs, the balance part and the rest.
  data["price"] = yuanText(total);
  data["blance"] = yuanText(balancePart);
  data["money"] = yuanText(total - balancePart);
  data["payState"] = paid ? "paid" : "waiting";
  return Reply::ok(data);
}

Reply myOrders(Call& call) {
  const auto page = parsePage(call.arg("page"));
  const auto type = call.hasArg("type") ? parseInteger(call.arg("type"), 0, 3) : std::optional<int64_t>(0);
  if (!page || !type) return Reply::refuse(kMsgBadArgument);
  static const char* const kTabs[] = {"o.status NOT IN ('0', '9')", "o.status = '1'", "o.status = '2'",
                                      "o.status NOT IN ('0', '1', '2', '9')"};
  Json list = Json::array();
  for (const Json& row : call.db.query(orderSql("WHERE o.member_id = ? AND ") + kTabs[*type] +
                                           " ORDER BY o.created DESC, o.id DESC LIMIT ? OFFSET ?",
                                       {call.memberId(), kPageSize, (*page - 1) * kPageSize})) {
    list.push_back(orderRecord(call, row));
  }
  return Reply::ok({{"dataList", list}});
}

Reply orderDetail(Call& call) {
  const Json row =
      call.db.queryOne(orderSql("WHERE o.id = ? AND o.member_id = ?"), {call.arg("orderId"), call.memberId()});
  if (!row.is_object()) return Reply::refuse(kMsgNoOrder);
  return Reply::ok(orderRecord(call, row));
}

// A refund returns the whole amount paid (balance and channel parts) to the balance.
Reply refund(Call& call) {
  const Json order =
      call.db.queryOne("SELECT * FROM orders WHERE id = ? AND member_id = ?", {call.arg("orderId"), call.memberId()});
  if (!order.is_object()) return Reply::refuse(kMsgNoOrder);
  if (order["status"] != "1") return Reply::refuse(kMsgCannotRefund);
  if (call.db.execute("UPDATE orders SET status = '3' WHERE id = ? AND status = '1'", {order["id"]}) != 1) {
    return Reply::refuse(kMsgCannotRefund);
  }
  moveBalance(call.db, call.memberId(), order["total_fen"].get<int64_t>(), "refund",
              kMemoOrderRefunded + order["name"].get<std::string>(), order["id"].get<std::string>());
  return Reply::ok({{"orderId", order["id"]}, {"status", "3"}});
}

// The member's vouchers, by id. An unused voucher past its last day reads as expired ("2").
Reply vouchers(Call& call) {
  const auto page = parsePage(call.arg("page"));
  if (!page) return Reply::refuse(kMsgBadArgument);
  const std::string today = dateText(nowSeconds());
  Json list = Json::array();
  for (const Json& row : call.db.query(
           "SELECT v.*, s.name AS store_name FROM vouchers v LEFT JOIN stores s ON s.id = v.store_id "
           "WHERE v.member_id = ? ORDER BY v.id LIMIT ? OFFSET ?",
           {call.memberId(), kPageSize, (*page - 1) * kPageSize})) {
    const std::string expires = row["expires"].get<std::string>();
    const bool expired = row["status"] == "0" && expires < today;
    list.push_back({{"voucherId", std::to_string(row["id"].get<int64_t>())},
                    {"title", row["title"]},
                    {"price", yuanText(row["amount_fen"].get<int64_t>())},
                    {"storeId", row["store_id"].is_number() ? std::to_string(row["store_id"].get<int64_t>()) : ""},
                    {"storeName", row["store_name"].is_string() ? row["store_name"] : Json("")},
                    {"start", row["starts"]},
                    {"date", expires},
                    {"status", expired ? Json("2") : row["status"]}});
  }
  return Reply::ok({{"dataList", list}});
}

}  // namespace

Reply completePayment(Call& call) {
  const std::string result = call.arg("result");
  if (result != "success" && result != "fail" && result != "cancel") return Reply::refuse(kMsgBadResult);
  const Json order = call.db.queryOne("SELECT * FROM orders WHERE prepay_id = ?", {call.arg("prepay_id")});
  if (!order.is_object()) return Reply::refuse(kMsgNoPayment);
  if (order["status"] != kStatusWaiting) return Reply::refuse(kMsgPaymentDone);
  if (result != "success") {
    call.db.execute("UPDATE orders SET status = ? WHERE id = ?", {kStatusClosed, order["id"]});
    return Reply::ok({{"orderId", order["id"]}, {"result", result}});
  }
  if (!settle(call.db, order)) return Reply::refuse(kMsgInsufficientBalance);
  return Reply::ok({{"orderId", order["id"]}, {"result", result}});
}

void registerOrderHandlers(EndpointTable& table) {
  using enum HttpMethod;
  using enum SessionRule;
  table.add("postPayForStore",
            {kPost, kRequired, true, [](Call& call) { return preparePay(call, OrderKind::kStore); }});
  table.add("postPayForActivity",
            {kPost, kRequired, true, [](Call& call) { return preparePay(call, OrderKind::kActivity); }});
  table.add("postPayForIndiana",
            {kPost, kRequired, true, [](Call& call) { return preparePay(call, OrderKind::kDraw); }});
  table.add("getIndianaProduct", {kGet, kNone, false, drawProduct});
  table.add("getMyPosts", {kGet, kRequired, false, myOrders});
  table.add("getOrderDetail", {kGet, kRequired, false, orderDetail});
  table.add("postRefund", {kPost, kRequired, true, refund});
  table.add("getMyVoucher", {kGet, kRequired, false, vouchers});
}

}  // namespace qmv::sandbox
