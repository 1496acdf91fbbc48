// The member centre's demo rows: the demo member's wallet history and vouchers, and
// comments on every store. The ledger rows added here sum to zero, so
// the balance every home already holds stays right: top-ups pay for five orders settled
// from the balance (one of them refunded), one withdrawal and two prizes of a wheel that has
// ended (the current wheel's spins stay untouched). Each row agrees with its order,
// withdrawal or spin.
#include <algorithm>
#include <cstdint>
#include <iterator>
#include <string>
#include <vector>

#include "apps/sandbox/demo_data.h"
#include "apps/sandbox/demo_pictures.h"
#include "apps/sandbox/sandbox_texts.h"
#include "apps/sandbox/sandbox_util.h"

namespace qmv::sandbox {
namespace {

constexpr int64_t kDay = 86400;
constexpr const char* kDemoCard = "6222020200112233446";

void addLedgerRow(SandboxStore& db, int64_t member, int64_t amount, const char* kind, const std::string& title,
                  const std::string& ref, int64_t created) {
  db.execute("INSERT INTO ledger(member_id, amount, kind, title, ref, created) VALUES(?,?,?,?,?,?)",
             {member, amount, kind, title, ref, created});
}

void seedLedger(SandboxStore& db, int64_t demo, int64_t now) {
  // Paid from the balance: orders to use, to rate and done, and the refunded SB20161000006.
  static const char* const kPaid[] = {"SB20161000001", "SB20161000003", "SB20161000006", "SB20161000007",
                                      "SB20161000010"};
  int64_t spent = 0;
  for (const char* id : kPaid) {
    const Json order = db.queryOne("SELECT * FROM orders WHERE id = ? AND member_id = ?", {id, demo});
    if (!order.is_object()) continue;
    const int64_t total = order["total_fen"].get<int64_t>();
    const int64_t paid = order["paid"].get<int64_t>();
    const std::string name = order["name"].get<std::string>();
    db.execute("UPDATE orders SET account_type = '3', use_balance = 1, balance_fen = total_fen WHERE id = ?", {id});
    addLedgerRow(db, demo, -total, "pay", kMemoOrderPaid + name, id, paid);
    if (order["status"] == "3") {
      addLedgerRow(db, demo, total, "refund", kMemoOrderRefunded + name, id, paid + kDay);
    } else {
      spent += total;
    }
  }

  // A wheel that ran last month, with the demo member's two cash prizes.
  const Json items = Json::array({{{"name", "谢谢参与"}, {"fen", 0}, {"weight", 50}},
                                  {{"name", "1元红包"}, {"fen", 100}, {"weight", 30}},
                                  {{"name", "5元红包"}, {"fen", 500}, {"weight", 20}}});
  db.execute("INSERT INTO wheels(image, rule, starts, ends, spins, items) VALUES('',?,?,?,3,?)",
             {"活动期间每位会员可抽奖3次，红包直接存入余额。", now - 60 * kDay, now - 30 * kDay, items.dump()});
  nameWheelPicture(db);
  const std::string wheel = std::to_string(db.lastInsertId());
  const struct {
    int64_t index;
    const char* result;
    int64_t fen;
    int64_t daysAgo;
  } prizes[] = {{1, "1元红包", 100, 45}, {2, "5元红包", 500, 40}};
  int64_t won = 0;
  for (const auto& prize : prizes) {
    db.execute("INSERT INTO wheel_spins(wheel_id, member_id, item_index, result, created) VALUES(?,?,?,?,?)",
               {wheel, demo, prize.index, prize.result, now - prize.daysAgo * kDay});
    addLedgerRow(db, demo, prize.fen, "prize", std::string(kMemoWheelPrize) + prize.result, wheel,
                 now - prize.daysAgo * kDay);
    won += prize.fen;
  }

  // Two top-ups and one withdrawal close the sum at zero.
  int64_t secondTopUp = 10000;
  int64_t withdrawal = 20000 + secondTopUp + won - spent;
  if (withdrawal < 5000) {
    secondTopUp += 5000 - withdrawal;
    withdrawal = 5000;
  }
  addLedgerRow(db, demo, 20000, "topup", "充值", "", now - 200 * kDay);
  addLedgerRow(db, demo, secondTopUp, "topup", "充值", "", now - 60 * kDay);
  db.execute("INSERT INTO withdrawals(member_id, amount, card_id, created) VALUES(?,?,?,?)",
             {demo, withdrawal, kDemoCard, now - 20 * kDay});
  addLedgerRow(db, demo, -withdrawal, "withdraw", kMemoWithdrawal, kDemoCard, now - 20 * kDay);
}

// Twelve vouchers across six stores, unused, used and expired, each with its dates.
void seedVouchers(SandboxStore& db, int64_t demo, int64_t now) {
  const struct {
    int64_t store;
    const char* title;
    int64_t fen;
    int64_t startDaysAgo;
    int64_t validDays;
    const char* status;  // "0" unused, "1" used; an unused one past its end reads as expired
  } vouchers[] = {
      {1, "10元代金券", 1000, 20, 90, "0"},  {1, "满100减20", 2000, 100, 60, "0"}, {3, "5元代金券", 500, 15, 30, "0"},
      {3, "满50减10", 1000, 40, 120, "1"},   {5, "20元代金券", 2000, 10, 180, "0"}, {5, "8元代金券", 800, 90, 30, "0"},
      {8, "满200减50", 5000, 30, 365, "0"},  {8, "15元代金券", 1500, 60, 90, "1"}, {12, "30元代金券", 3000, 5, 60, "0"},
      {12, "6元代金券", 600, 120, 45, "0"},  {14, "满80减15", 1500, 25, 100, "0"}, {14, "12元代金券", 1200, 70, 40, "1"},
  };
  for (const auto& v : vouchers) {
    const int64_t starts = now - v.startDaysAgo * kDay;
    db.execute(
        "INSERT INTO vouchers(member_id, title, amount_fen, expires, status, store_id, starts) VALUES(?,?,?,?,?,?,?)",
        {demo, v.title, v.fen, dateText(starts + v.validDays * kDay), v.status, v.store, dateText(starts)});
  }
}

// Comments on every store from the other demo members, 3 to 12 each, with stars around the
// store's own rating so that the lists and the star filter agree with the store's row.
void seedRemarks(SandboxStore& db, int64_t demo, int64_t now) {
  static const char* const kGood[] = {"味道不错，服务热情！", "环境很好，下次还来", "性价比很高，推荐", "朋友聚会的好地方",
                                      "上菜很快，分量足"};
  static const char* const kFair[] = {"还可以，中规中矩", "排队有点久", "价格略高，味道一般"};
  static const char* const kPoor[] = {"服务态度需要改进", "等了很久才上菜"};
  static const int kOffsets[] = {0, 1, -1, 0, 2, -2, 0, 1, -1, 0, 1, -2};
  std::vector<int64_t> members;
  for (const Json& row : db.query("SELECT id FROM members WHERE id != ? ORDER BY id", {demo})) {
    members.push_back(row["id"].get<int64_t>());
  }
  if (members.empty()) return;
  for (const Json& store : db.query("SELECT id, star FROM stores ORDER BY id")) {
    const int64_t id = store["id"].get<int64_t>();
    const int64_t own = store["star"].get<int64_t>();
    const int64_t count = 3 + id * 7 % 10;
    for (int64_t k = 0; k < count; ++k) {
      const int64_t star = std::clamp<int64_t>(own + kOffsets[k], 1, 5);
      const char* content = star >= 4   ? kGood[(id + k) % std::size(kGood)]
                            : star == 3 ? kFair[(id + k) % std::size(kFair)]
                                        : kPoor[(id + k) % std::size(kPoor)];
      db.execute("INSERT INTO remarks(store_id, member_id, star, content, created) VALUES(?,?,?,?,?)",
                 {id, members[(id + k) % members.size()], star, content, now - (id % 5 + k * 3 + 6) * kDay});
    }
  }
}

}  // namespace

void seedMemberCentre(SandboxStore& db, int64_t now) {
  const Json demo = db.queryOne("SELECT id FROM members WHERE num = ?", {kDemoMemberNumber});
  if (!demo.is_object()) return;
  const int64_t id = demo["id"].get<int64_t>();
  seedLedger(db, id, now);
  seedVouchers(db, id, now);
  seedRemarks(db, id, now);
}

}  // namespace qmv::sandbox
