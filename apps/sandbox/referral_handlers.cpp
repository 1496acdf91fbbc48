// Referral endpoints: a member's direct contacts and a direct contact's own invitees.
#include "apps/sandbox/endpoint_table.h"
#include "apps/sandbox/sandbox_records.h"
#include "apps/sandbox/sandbox_texts.h"
#include "apps/sandbox/sandbox_util.h"

namespace qmv::sandbox {
namespace {


Reply contactsOf(Call& call, int64_t inviterId, int64_t page) {
  Json list = Json::array();
  for (const Json& row :
       call.db.query("SELECT m.id, m.num, m.phone, m.nick_name, m.user_name, m.created, "
                     "(SELECT COUNT(*) FROM members x WHERE x.inviter_id = m.id) AS invited FROM members m "
                     "WHERE m.inviter_id = ? ORDER BY m.created, m.id LIMIT ? OFFSET ?",
                     {inviterId, kPageSize, (page - 1) * kPageSize})) {
    list.push_back(contactRecord(call, row, row["invited"].get<int64_t>()));
  }
  const Json counts = call.db.queryOne(
      "SELECT (SELECT COUNT(*) FROM members WHERE inviter_id = ?1) AS one, "
      "(SELECT COUNT(*) FROM members WHERE inviter_id IN (SELECT id FROM members WHERE inviter_id = ?1)) AS two",
      {call.memberId()});
  return Reply::ok({{"dataList", list},
                    {"oneContact", std::to_string(counts["one"].get<int64_t>())},
                    {"twoContact", std::to_string(counts["two"].get<int64_t>())}});
}

Reply myContacts(Call& call) {
  const auto page = parsePage(call.arg("page"));
  if (!page) return Reply::refuse(kMsgBadArgument);
  return contactsOf(call, call.memberId(), *page);
}

// Only the invitees of one's own direct contacts are shown (two levels, no further).
Reply indirectContacts(Call& call) {
  const auto page = parsePage(call.arg("page"));
  if (!page) return Reply::refuse(kMsgBadArgument);
  const Json contact = call.db.queryOne("SELECT id FROM members WHERE phone = ? AND inviter_id = ?",
                                        {call.arg("phone"), call.memberId()});
  if (!contact.is_object()) return Reply::refuse(kMsgNotContact);
  return contactsOf(call, contact["id"].get<int64_t>(), *page);
}

}  // namespace

void registerReferralHandlers(EndpointTable& table) {
  using enum HttpMethod;
  using enum SessionRule;
  table.add("getMyContacts", {kGet, kRequired, false, myContacts});
  table.add("getIndirectContacts", {kGet, kRequired, false, indirectContacts});
}

}  // namespace qmv::sandbox
