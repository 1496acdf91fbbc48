// The demo member's messages and bookmarks. Every message tells of something the demo
// world holds: one per line of his ledger (top-ups, payments, the refund, the withdrawal,
// prizes), read long ago, and an unread reminder of his voucher that ends first; with the
// welcome and the two unread notes he already has, sixteen messages over two pages, three
// unread. Bookmarks: five stores and four offers, the newest first.
#include <cstdint>
#include <string>

#include "apps/sandbox/demo_data.h"
#include "apps/sandbox/sandbox_texts.h"
#include "apps/sandbox/sandbox_util.h"

namespace qmv::sandbox {
namespace {

constexpr int64_t kDay = 86400;

void addMessage(SandboxStore& db, int64_t member, const std::string& title, const std::string& content,
                int64_t created, bool read) {
  db.execute("INSERT INTO messages(member_id, title, content, created, is_read) VALUES(?,?,?,?,?)",
             {member, title, content, created, read ? 1 : 0});
}

std::string withoutPrefix(const std::string& text, const std::string& prefix) {
  return text.compare(0, prefix.size(), prefix) == 0 ? text.substr(prefix.size()) : text;
}

void seedMessages(SandboxStore& db, int64_t demo, int64_t now) {
  for (const Json& row : db.query("SELECT amount, kind, title, ref, created FROM ledger WHERE member_id = ? ORDER BY id",
                                  {demo})) {
    const int64_t amount = row["amount"].get<int64_t>();
    const std::string yuan = yuanText(amount < 0 ? -amount : amount);
    const std::string kind = row["kind"].get<std::string>();
    const std::string ref = row["ref"].get<std::string>();
    const int64_t created = row["created"].get<int64_t>();
    if (kind == "topup") {
      addMessage(db, demo, "充值成功", "您已成功充值" + yuan + "元，可在钱包中查看余额。", created, true);
    } else if (kind == "pay") {
      addMessage(db, demo, "支付成功", "您的订单" + ref + "已支付成功，余额支付" + yuan + "元。", created, true);
    } else if (kind == "refund") {
      addMessage(db, demo, "退款成功", "您的订单" + ref + "已退款，" + yuan + "元已退回账户余额。", created, true);
    } else if (kind == "withdraw") {
      const std::string tail = ref.size() >= 4 ? ref.substr(ref.size() - 4) : ref;
      addMessage(db, demo, "提现已受理",
                 "您申请提现" + yuan + "元至尾号" + tail + "的银行卡，将在1-3个工作日内到账。", created, true);
    } else if (kind == "prize") {
      addMessage(db, demo, "转盘中奖",
                 "恭喜您在幸运大转盘中获得" + withoutPrefix(row["title"].get<std::string>(), kMemoWheelPrize) +
                     "，奖金已存入余额。",
                 created, true);
    }
  }
  const Json voucher = db.queryOne(
      "SELECT title, expires FROM vouchers WHERE member_id = ? AND status = '0' AND expires >= ? "
      "ORDER BY expires, id LIMIT 1",
      {demo, dateText(now)});
  if (voucher.is_object()) {
    addMessage(db, demo, "代金券即将到期",
               "您的" + voucher["title"].get<std::string>() + "将于" + voucher["expires"].get<std::string>() +
                   "到期，请尽快使用。",
               now - 3 * kDay, false);
  }
}

void seedBookmarks(SandboxStore& db, int64_t demo, int64_t now) {
  // Stores 1 and 14 are bookmarked since the first seeding; three more, older.
  const int64_t stores[] = {3, 5, 8};
  int64_t age = 2;
  for (const int64_t store : stores) {
    if (db.queryOne("SELECT 1 FROM stores WHERE id = ?", {store}).is_null()) continue;
    db.execute("INSERT OR IGNORE INTO store_favorites(member_id, store_id, created) VALUES(?,?,?)",
               {demo, store, now - age++ * kDay});
  }
  // Each store has a package (2n-1) and a voucher (2n): the packages of stores 2, 5 and 8
  // and the voucher of store 1.
  const int64_t offers[] = {3, 9, 15, 2};
  age = 1;
  for (const int64_t offer : offers) {
    if (db.queryOne("SELECT 1 FROM commodities WHERE id = ?", {offer}).is_null()) continue;
    db.execute("INSERT OR IGNORE INTO commodity_favorites(member_id, commodity_id, created) VALUES(?,?,?)",
               {demo, offer, now - age++ * kDay});
  }
}

}  // namespace

void seedMemberPages(SandboxStore& db, int64_t now) {
  const Json demo = db.queryOne("SELECT id FROM members WHERE num = ?", {kDemoMemberNumber});
  if (!demo.is_object()) return;
  const int64_t id = demo["id"].get<int64_t>();
  seedMessages(db, id, now);
  seedBookmarks(db, id, now);
}

}  // namespace qmv::sandbox
