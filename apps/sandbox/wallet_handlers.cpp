// Wallet endpoints: the bound bank card, withdrawals and fund records.
#include "apps/sandbox/endpoint_table.h"
#include "apps/sandbox/sandbox_records.h"
#include "apps/sandbox/sandbox_texts.h"
#include "apps/sandbox/sandbox_util.h"

namespace qmv::sandbox {
namespace {

constexpr int64_t kMinimumWithdrawal = 1000;

bool luhnValid(const std::string& number) {
  int sum = 0;
  bool doubled = false;
  for (auto it = number.rbegin(); it != number.rend(); ++it) {
    int digit = *it - '0';
    if (doubled) {
      digit *= 2;
      if (digit > 9) digit -= 9;
    }
    sum += digit;
    doubled = !doubled;
  }
  return sum % 10 == 0;
}

bool certificateValid(const std::string& id) {
  if (id.size() != 18 || !isDigits(id.substr(0, 17), 17, 17)) return false;
  const char last = id[17];
  return (last >= '0' && last <= '9') || last == 'X' || last == 'x';
}

// Bank names by card prefix (a few common ones; the rest are named generically).
std::string bankName(const std::string& card) {
  for (const auto& [prefix, name] : kBankNames) {
    if (card.rfind(prefix, 0) == 0) return name;
  }
  return kGenericBankName;
}

Reply boundCard(Call& call) {
  const Json card = call.db.queryOne("SELECT * FROM bank_cards WHERE member_id = ?", {call.memberId()});
  if (!card.is_object()) return Reply::ok();
  return Reply::ok({{"cardId", card["card_id"]},
                    {"certifId", card["certif_id"]},
                    {"name", card["name"]},
                    {"cardBank", card["card_bank"]}});
}

Reply bindCard(Call& call) {
  const std::string name = call.arg("name");
  const std::string cardId = call.arg("cardId");
  const std::string certifId = call.arg("certifId");
  if (name.empty()) return Reply::refuse(kMsgNoName);
  if (!certificateValid(certifId)) return Reply::refuse(kMsgBadCertificate);
  if (!(isDigits(cardId, 16, 16) || isDigits(cardId, 19, 19)) || !luhnValid(cardId)) return Reply::refuse(kMsgBadCard);
  // The code was asked for with "getMobileCode" for the member's own phone.
  const Json code =
      call.db.queryOne("SELECT id FROM sms_codes WHERE phone = ? AND code = ? AND used = 0 AND created > ?",
                       {call.member["phone"], call.arg("identifying"), nowSeconds() - kSmsCodeLifetimeSeconds});
  if (!code.is_object()) return Reply::refuse(kMsgBadCode);
  if (!call.db.queryOne("SELECT 1 FROM bank_cards WHERE member_id = ?", {call.memberId()}).is_null()) {
    return Reply::refuse(kMsgAlreadyBound);
  }
  call.db.execute("UPDATE sms_codes SET used = 1 WHERE id = ?", {code["id"]});
  call.db.execute("INSERT INTO bank_cards(member_id, card_id, certif_id, name, card_bank, created) VALUES(?,?,?,?,?,?)",
                  {call.memberId(), cardId, certifId, name, bankName(cardId), nowSeconds()});
  return Reply::ok({{"cardBank", bankName(cardId)}});
}

Reply unbindCard(Call& call) {
  if (call.db.execute("DELETE FROM bank_cards WHERE member_id = ?", {call.memberId()}) == 0) {
    return Reply::refuse(kMsgNotBound);
  }
  return Reply::ok();
}

Reply withdraw(Call& call) {
  const auto amount = parseInteger(call.arg("amount"), 1, 1000000000);
  if (!amount) return Reply::refuse(kMsgBadWithdrawAmount);
  if (*amount < kMinimumWithdrawal) return Reply::refuse(kMsgMinimum);
  const Json card = call.db.queryOne("SELECT card_id FROM bank_cards WHERE member_id = ?", {call.memberId()});
  if (!card.is_object()) return Reply::refuse(kMsgNotBound);
  if (!moveBalance(call.db, call.memberId(), -*amount, "withdraw", kMemoWithdrawal, card["card_id"].get<std::string>())) {
    return Reply::refuse(kMsgInsufficientBalance);
  }
  call.db.execute("INSERT INTO withdrawals(member_id, amount, card_id, created) VALUES(?,?,?,?)",
                  {call.memberId(), *amount, card["card_id"], nowSeconds()});
  const Json member = memberById(call.db, call.memberId());
  return Reply::ok({{"balance", std::to_string(member["balance"].get<int64_t>())}});
}

// Fund records, newest first, of one kind: "type" "0" (or none) every record, "1" top-ups,
// "2" payments, "3" withdrawals, "4" refunds, "5" prizes. "count" is the number of that kind.
Reply fundRecords(Call& call) {
  const auto page = parsePage(call.arg("page"));
  const auto type = call.hasArg("type") ? parseInteger(call.arg("type"), 0, 5) : std::optional<int64_t>(0);
  if (!page || !type) return Reply::refuse(kMsgBadArgument);
  static const char* const kKinds[] = {"", "topup", "pay", "withdraw", "refund", "prize"};
  const std::string filter = *type == 0 ? "" : " AND kind = ?";
  std::vector<Json> arguments{call.memberId()};
  if (*type != 0) arguments.push_back(kKinds[*type]);
  std::vector<Json> paged = arguments;
  paged.push_back(kPageSize);
  paged.push_back((*page - 1) * kPageSize);
  Json list = Json::array();
  const std::string sql =
      "SELECT * FROM ledger WHERE member_id = ?" + filter + " ORDER BY created DESC, id DESC LIMIT ? OFFSET ?";
  for (const Json& row : call.db.query(sql, paged)) {
    list.push_back({{"id", std::to_string(row["id"].get<int64_t>())},
                    {"amount", std::to_string(row["amount"].get<int64_t>())},
                    {"type", row["kind"]},
                    {"title", row["title"]},
                    {"orderId", row["ref"]},
                    {"time", timeText(row["created"].get<int64_t>())}});
  }
  const Json count = call.db.queryOne("SELECT COUNT(*) AS n FROM ledger WHERE member_id = ?" + filter, arguments);
  return Reply::ok({{"dataList", list}, {"count", count["n"]}});
}

}  // namespace

void registerWalletHandlers(EndpointTable& table) {
  using enum HttpMethod;
  using enum SessionRule;
  table.add("getBoundBankCard", {kGet, kRequired, false, boundCard});
  table.add("bindBankCard", {kPost, kRequired, true, bindCard});
  table.add("unBindingBankCard", {kPost, kRequired, true, unbindCard});
  table.add("withDraw", {kPost, kRequired, true, withdraw});
  table.add("getTopUpListForUser", {kGet, kRequired, false, fundRecords});
}

}  // namespace qmv::sandbox
