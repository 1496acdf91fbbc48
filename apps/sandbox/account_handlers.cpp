// Account endpoints: login, SMS codes, registration, password recovery and change, profile,
// portrait, messages and feedback.
#include <glib.h>

#include <cstdio>

#include "apps/sandbox/endpoint_table.h"
#include "apps/sandbox/sandbox_records.h"
#include "apps/sandbox/sandbox_server.h"
#include "apps/sandbox/sandbox_texts.h"
#include "apps/sandbox/sandbox_util.h"
#include "apps/sandbox/user_names.h"
#include "core/common/string_util.h"
#include "platform/codecs/image_codecs.h"

namespace qmv::sandbox {
namespace {

constexpr size_t kMaxPortraitBytes = 2 * 1024 * 1024;
constexpr int kMaxPortraitSide = 4096;
constexpr glong kMaxFeedbackCharacters = 500;
constexpr glong kMaxContactCharacters = 50;
// Wrong guesses a code survives; six digits would otherwise fall to a loop of requests
// well within a code's ten minutes.
constexpr int64_t kMaxCodeAttempts = 5;
// Codes one phone may be sent within a code's lifetime.
constexpr int64_t kMaxCodesPerPhone = 5;
// Carries the code session that getCheckCode verified back to postFindPassword and to a
// phone change, whose arguments name only the phone: the change belongs to whoever
// verified the code.
constexpr const char* kCodeCookie = "codeSessionId";

std::string cookie(const std::string& name, const std::string& value, const char* path, int64_t maxAge) {
  return name + "=" + value + "; Path=" + path + "; Max-Age=" + std::to_string(maxAge) + "; HttpOnly; SameSite=Strict";
}

glong characters(const std::string& text) { return g_utf8_strlen(text.data(), static_cast<gssize>(text.size())); }

bool isSexValue(const std::string& text) { return text == "1" || text == "2"; }

// yyyy-MM-dd, a real date from 1900 to today.
bool isBirthday(const std::string& text) {
  if (text.size() != 10 || text[4] != '-' || text[7] != '-') return false;
  const std::string year = text.substr(0, 4), month = text.substr(5, 2), day = text.substr(8, 2);
  if (!isDigits(year, 4, 4) || !isDigits(month, 2, 2) || !isDigits(day, 2, 2)) return false;
  const int y = std::stoi(year), m = std::stoi(month), d = std::stoi(day);
  if (y < 1900 || !g_date_valid_dmy(static_cast<GDateDay>(d), static_cast<GDateMonth>(m), static_cast<GDateYear>(y))) {
    return false;
  }
  GDate date, today;
  g_date_clear(&date, 1);
  g_date_clear(&today, 1);
  g_date_set_dmy(&date, static_cast<GDateDay>(d), static_cast<GDateMonth>(m), static_cast<GDateYear>(y));
  g_date_set_time_t(&today, static_cast<time_t>(nowSeconds()));
  return g_date_compare(&date, &today) <= 0;
}

bool isEmail(const std::string& text) {
  return characters(text) <= 50 &&
         g_regex_match_simple("^[A-Za-z0-9._%+-]+@[A-Za-z0-9-]+(\\.[A-Za-z0-9-]+)*\\.[A-Za-z]{2,}$", text.c_str(),
                              G_REGEX_DEFAULT, G_REGEX_MATCH_DEFAULT);
}

bool isPostcode(const std::string& text) { return isDigits(text, 6, 6); }

// Profile fields a member may change with "postChangeSelf": request key, column, the most
// characters (0: the check bounds it) and the check its value must pass. A value is
// required; the argument rules have already refused control characters and bad UTF-8.
struct EditableField {
  const char* key;
  const char* column;
  glong maxCharacters;
  bool (*valid)(const std::string&);
  const char* refusal;
};
constexpr EditableField kEditableFields[] = {
    {"nickName", "nick_name", 20, nullptr, kMsgBadNickName},
    {"sex", "sex", 0, isSexValue, kMsgBadSex},
    {"birthday", "birthday", 0, isBirthday, kMsgBadBirthday},
    {"email", "email", 0, isEmail, kMsgBadEmail},
    {"address", "address", 100, nullptr, kMsgBadAddress},
    {"address_name", "address_name", 20, nullptr, kMsgBadAddressName},
    {"address_phone", "address_phone", 0, isPhone, kMsgBadPhone},
    {"postcode", "postcode", 0, isPostcode, kMsgBadPostcode},
    {"name", "name", 20, nullptr, kMsgBadName},
};

// Opens a session for the member (dropping expired ones) and sets its cookie.
std::string newSession(Call& call, int64_t memberId) {
  const int64_t now = nowSeconds();
  call.db.execute("DELETE FROM sessions WHERE created <= ?", {now - kSessionLifetimeSeconds});
  const std::string id = randomHex(32);
  call.db.execute("INSERT INTO sessions(id, member_id, created) VALUES(?,?,?)", {id, memberId, now});
  call.setCookies.push_back(cookie(kSessionCookie, id, "/", kSessionLifetimeSeconds));
  return id;
}

// The throttle's key for the member `row` (one for his phone and his user name alike), or
// for the typed name when no member has it.
std::string throttleKey(const Json& row, const std::string& typed) {
  return row.is_object() ? "member:" + std::to_string(row["id"].get<int64_t>()) : "name:" + typed;
}

// Whether the password of `account` may be checked now (see LoginThrottle).
bool mayTryPassword(const Call& call, const std::string& account) {
  return call.throttle == nullptr || call.throttle->wait(account, call.peer) == LoginThrottle::Clock::duration::zero();
}

void notePassword(const Call& call, const std::string& account, bool right) {
  if (call.throttle == nullptr) return;
  if (right) {
    call.throttle->succeeded(account);
  } else {
    call.throttle->failed(account, call.peer);
  }
}

Reply login(Call& call) {
  const std::string user = call.arg("userName");
  const std::string password = call.arg("userPassword");
  if (user.empty() || password.empty()) return Reply::refuse(kMsgLoginFailed);
  // A phone number signs in its own member even where an older account took it as a name.
  const Json member = call.db.queryOne(
      "SELECT * FROM members WHERE phone = ? OR user_name = ? ORDER BY phone = ? DESC, id LIMIT 1", {user, user, user});
  const std::string account = throttleKey(member, user);
  if (!mayTryPassword(call, account)) return Reply::refuse(kMsgTooManyLogins);
  const bool right = member.is_object() && member["password"].get<std::string>() == password;
  notePassword(call, account, right);
  if (!right) return Reply::refuse(kMsgLoginFailed);
  const std::string session = newSession(call, member["id"].get<int64_t>());
  call.member = member;
  return Reply::ok(memberRecord(call, member, session));
}

Reply mobileCode(Call& call) {
  const std::string phone = call.arg("mobile");
  if (!isPhone(phone)) return Reply::refuse(kMsgBadPhone);
  const int64_t now = nowSeconds();
  call.db.execute("DELETE FROM sms_codes WHERE created <= ?", {now - kSmsCodeLifetimeSeconds});
  if (call.db.queryOne("SELECT COUNT(*) AS n FROM sms_codes WHERE phone = ?", {phone})["n"].get<int64_t>() >=
      kMaxCodesPerPhone) {
    return Reply::refuse(kMsgTooManyCodes);
  }
  const std::string code = call.demoSmsCode ? std::string(kDemoSmsCode) : randomDigits(6);
  const std::string id = randomHex(32);
  call.db.execute("INSERT INTO sms_codes(id, phone, code, created) VALUES(?,?,?,?)", {id, phone, code, now});
  std::fprintf(stderr, "[sandbox] SMS code for %s: %s\n", phone.c_str(), code.c_str());
  return Reply::ok({{"sessionId", id}});
}

// Whether the request's "code" is the one of the unexpired, unused code record `sessionId`
// for `phone`. A wrong code counts against the record, which dies after kMaxCodeAttempts;
// the count is kept although the request is then refused.
bool codeMatches(Call& call, const std::string& sessionId, const std::string& phone) {
  const std::string code = call.arg("code");
  if (sessionId.empty() || code.empty()) return false;
  const Json record =
      call.db.queryOne("SELECT code, attempts FROM sms_codes WHERE id = ? AND phone = ? AND used = 0 AND created > ?",
                       {sessionId, phone, nowSeconds() - kSmsCodeLifetimeSeconds});
  if (!record.is_object() || record["attempts"].get<int64_t>() >= kMaxCodeAttempts) return false;
  if (record["code"].get<std::string>() == code) return true;
  call.db.execute("UPDATE sms_codes SET attempts = attempts + 1 WHERE id = ?", {sessionId});
  call.keepWritesOnRefusal = true;
  return false;
}

Reply checkCode(Call& call) {
  const std::string phone = call.arg("mobile");
  const std::string codeSession = call.arg("sessionId");
  if (!isPhone(phone)) return Reply::refuse(kMsgBadPhone);
  if (!codeMatches(call, codeSession, phone)) return Reply::refuse(kMsgBadCode);
  call.db.execute("UPDATE sms_codes SET verified = 1 WHERE id = ?", {codeSession});
  call.setCookies.push_back(cookie(kCodeCookie, codeSession, "/qmv/app/v3/", kSmsCodeLifetimeSeconds));
  return Reply::ok();
}

Reply registerMember(Call& call) {
  const std::string phone = call.arg("phone");
  const std::string password = call.arg("password");
  if (!isPhone(phone)) return Reply::refuse(kMsgBadPhone);
  if (!isMd5Hex(password)) return Reply::refuse(kMsgBadPassword);
  if (!codeMatches(call, call.arg("sessionId"), phone)) return Reply::refuse(kMsgBadCode);
  if (!call.db.queryOne("SELECT 1 FROM members WHERE phone = ?", {phone}).is_null())
    return Reply::refuse(kMsgPhoneTaken);
  const std::string typedName = normalizedUserName(call.arg("userName"));
  const std::string userName = typedName.empty() ? phone : typedName;
  if (const char* problem = userNameProblem(call.db, userName, phone)) return Reply::refuse(problem);
  Json inviter;
  const std::string invite = call.arg("inviteId");
  if (!invite.empty()) {
    const Json row = call.db.queryOne("SELECT id FROM members WHERE num = ? OR phone = ?", {invite, invite});
    if (!row.is_object()) return Reply::refuse(kMsgBadInvite);
    inviter = row["id"];
  }
  const Json last = call.db.queryOne("SELECT MAX(CAST(num AS INTEGER)) AS n FROM members");
  const int64_t number = last["n"].is_number_integer() ? last["n"].get<int64_t>() + 1 : 100001;
  call.db.execute(
      "INSERT INTO members(num, phone, user_name, name_key, password, nick_name, inviter_id, created) "
      "VALUES(?,?,?,?,?,?,?,?)",
      {std::to_string(number), phone, userName, userNameKey(userName), password, userName, inviter, nowSeconds()});
  call.db.execute("UPDATE sms_codes SET used = 1 WHERE id = ?", {call.arg("sessionId")});
  return Reply::ok();
}

Reply findPassword(Call& call) {
  const std::string phone = call.arg("phone");
  const std::string password = call.arg("newPassword");
  if (!isPhone(phone)) return Reply::refuse(kMsgBadPhone);
  if (!isMd5Hex(password)) return Reply::refuse(kMsgBadPassword);
  // One reset per code that the caller itself verified for this phone: its code session
  // comes back in the cookie getCheckCode set, or as "sessionId" from a client without cookies.
  const auto fromCookie = call.cookies.find(kCodeCookie);
  const std::string codeSession = call.hasArg("sessionId")       ? call.arg("sessionId")
                                  : fromCookie != call.cookies.end() ? fromCookie->second
                                                                     : std::string();
  const Json verified = call.db.queryOne(
      "SELECT id FROM sms_codes WHERE id = ? AND phone = ? AND verified = 1 AND used = 0 AND created > ?",
      {codeSession, phone, nowSeconds() - kSmsCodeLifetimeSeconds});
  if (codeSession.empty() || !verified.is_object()) return Reply::refuse(kMsgNotVerified);
  const Json member = call.db.queryOne("SELECT id FROM members WHERE phone = ?", {phone});
  if (!member.is_object()) return Reply::refuse(kMsgNoSuchPhone);
  call.db.execute("UPDATE sms_codes SET used = 1 WHERE id = ?", {codeSession});
  call.db.execute("UPDATE members SET password = ? WHERE id = ?", {password, member["id"]});
  // Whoever held the old password may hold a session too.
  call.db.execute("DELETE FROM sessions WHERE member_id = ?", {member["id"]});
  call.setCookies.push_back(cookie(kCodeCookie, "", "/qmv/app/v3/", 0));
  return Reply::ok();
}

Reply logout(Call& call) {
  call.db.execute("DELETE FROM sessions WHERE id = ?", {call.sessionId});
  call.setCookies.push_back(cookie(kSessionCookie, "", "/", 0));
  return Reply::ok();
}

Reply changePassword(Call& call) {
  const std::string oldPassword = call.arg("oldPassword");
  const std::string newPassword = call.arg("newPassword");
  if (!isMd5Hex(newPassword)) return Reply::refuse(kMsgBadPassword);
  // A session left open somewhere must not become a way to guess the password.
  const std::string account = throttleKey(call.member, "");
  if (!mayTryPassword(call, account)) return Reply::refuse(kMsgTooManyLogins);
  const bool right = call.member["password"].get<std::string>() == oldPassword;
  notePassword(call, account, right);
  if (!right) return Reply::refuse(kMsgOldPassword);
  call.db.execute("UPDATE members SET password = ? WHERE id = ?", {newPassword, call.memberId()});
  // The session that changed the password stays; every other one ends with the old password.
  call.db.execute("DELETE FROM sessions WHERE member_id = ? AND id != ?", {call.memberId(), call.sessionId});
  return Reply::ok();
}

Reply userInfo(Call& call) { return Reply::ok(memberRecord(call, call.member, call.sessionId)); }

// The code session verified for `phone` that came back in the cookie getCheckCode set, or
// "" when there is none (unverified, used, expired or for another phone).
std::string verifiedCodeSession(const Call& call, const std::string& phone) {
  const auto fromCookie = call.cookies.find(kCodeCookie);
  if (fromCookie == call.cookies.end() || fromCookie->second.empty()) return {};
  const Json verified = call.db.queryOne(
      "SELECT id FROM sms_codes WHERE id = ? AND phone = ? AND verified = 1 AND used = 0 AND created > ?",
      {fromCookie->second, phone, nowSeconds() - kSmsCodeLifetimeSeconds});
  return verified.is_object() ? fromCookie->second : std::string();
}

// Every value is checked before any is stored, so a refused change stores nothing. The
// phone is taken only from whoever verified a code for it, as the password reset is.
Reply changeSelf(Call& call) {
  int changed = 0;
  for (const auto& field : kEditableFields) {
    if (!call.args.contains(field.key)) continue;
    const std::string value = call.arg(field.key);
    const glong length = characters(value);
    if (length == 0 || (field.maxCharacters > 0 && length > field.maxCharacters)) return Reply::refuse(field.refusal);
    if (field.valid != nullptr && !field.valid(value)) return Reply::refuse(field.refusal);
    ++changed;
  }
  std::string codeSession;
  if (call.args.contains("phone")) {
    const std::string phone = call.arg("phone");
    if (!isPhone(phone)) return Reply::refuse(kMsgBadPhone);
    codeSession = verifiedCodeSession(call, phone);
    if (codeSession.empty()) return Reply::refuse(kMsgNotVerified);
    if (!call.db.queryOne("SELECT 1 FROM members WHERE phone = ?", {phone}).is_null()) {
      return Reply::refuse(kMsgPhoneTaken);
    }
    ++changed;
  }
  if (changed == 0) return Reply::refuse(kMsgNothingToChange);
  for (const auto& field : kEditableFields) {
    if (!call.args.contains(field.key)) continue;
    call.db.execute(std::string("UPDATE members SET ") + field.column + " = ? WHERE id = ?",
                    {call.arg(field.key), call.memberId()});
  }
  if (!codeSession.empty()) {
    call.db.execute("UPDATE sms_codes SET used = 1 WHERE id = ?", {codeSession});
    call.db.execute("UPDATE members SET phone = ? WHERE id = ?", {call.arg("phone"), call.memberId()});
    call.setCookies.push_back(cookie(kCodeCookie, "", "/qmv/app/v3/", 0));
  }
  return Reply::ok(memberRecord(call, memberById(call.db, call.memberId()), call.sessionId));
}

Reply portrait(Call& call) {
  const UploadedFile* image = nullptr;
  for (const auto& [name, file] : call.files) {
    if (!file.content.empty()) image = &file;
  }
  if (image == nullptr) return Reply::refuse(kMsgNoImage);
  if (image->content.size() > kMaxPortraitBytes) return Reply::refuse(kMsgImageTooLarge);
  // A picture that does not decode, or declares a size past the caps, is not stored.
  ImageLimits limits;
  limits.maxBytes = kMaxPortraitBytes;
  limits.maxSide = kMaxPortraitSide;
  limits.maxPixels = static_cast<std::int64_t>(kMaxPortraitSide) * kMaxPortraitSide;
  const auto size = readImageSize(image->content, limits);
  const Status readable = size.ok() ? decodeImage(image->content, limits, fitWithin(*size, 64)).status() : size.status();
  if (!readable.ok()) {
    return Reply::refuse(imageErrorOf(readable) == ImageError::kTooLarge ? kMsgImageTooLarge : kMsgNoImage);
  }
  call.db.execute("UPDATE members SET portrait = ? WHERE id = ?", {image->content, call.memberId()});
  const Json member = memberById(call.db, call.memberId());
  return Reply::ok({{"imgUrl", memberRecord(call, member, "")["imgUrl"]}});
}

Reply myMessages(Call& call) {
  const auto page = parsePage(call.arg("page"));
  if (!page) return Reply::refuse(kMsgBadArgument);
  Json list = Json::array();
  for (const Json& row :
       call.db.query("SELECT * FROM messages WHERE member_id = ? ORDER BY created DESC, id DESC LIMIT ? OFFSET ?",
                     {call.memberId(), kPageSize, (*page - 1) * kPageSize})) {
    list.push_back({{"id", std::to_string(row["id"].get<int64_t>())},
                    {"contact", row["title"]},
                    {"time", timeText(row["created"].get<int64_t>())},
                    {"content", row["content"]},
                    {"isRead", std::to_string(row["is_read"].get<int64_t>())}});
  }
  const Json count = call.db.queryOne("SELECT COUNT(*) AS n FROM messages WHERE member_id = ?", {call.memberId()});
  return Reply::ok({{"dataList", list}, {"count", count["n"]}});
}

// Marks every message read; answers how many were unread.
Reply readMessages(Call& call) {
  const int64_t changed =
      call.db.execute("UPDATE messages SET is_read = 1 WHERE member_id = ? AND is_read = 0", {call.memberId()});
  return Reply::ok({{"count", std::to_string(changed)}});
}

Reply feedback(Call& call) {
  const std::string content = call.arg("concent");
  const std::string contact = call.arg("contact");
  if (trimmed(content).empty()) return Reply::refuse(kMsgEmptyFeedback);
  // The argument rules bound the bytes; the client counts characters. Both are UTF-8 here.
  if (g_utf8_strlen(content.data(), static_cast<gssize>(content.size())) > kMaxFeedbackCharacters) {
    return Reply::refuse(kMsgFeedbackTooLong);
  }
  if (g_utf8_strlen(contact.data(), static_cast<gssize>(contact.size())) > kMaxContactCharacters) {
    return Reply::refuse(kMsgContactTooLong);
  }
  if (call.hasArg("type") && call.arg("type") != "0") return Reply::refuse(kMsgBadArgument);
  call.db.execute("INSERT INTO feedback(member_id, content, contact, type, created) VALUES(?,?,?,?,?)",
                  {call.memberId(), content, contact, "0", nowSeconds()});
  return Reply::ok();
}

}  // namespace

void registerAccountHandlers(EndpointTable& table) {
  using enum HttpMethod;
  using enum SessionRule;
  table.add("getUserLogin", {kGet, kNone, true, login});
  table.add("postUserRegisterWeb", {kPost, kNone, true, registerMember});
  // Asked for before registration too, so a missing session is fine.
  table.add("getMobileCode", {kGet, kOptional, true, mobileCode});
  table.add("getCheckCode4ChgMobile", {kGet, kRequired, true, mobileCode});
  table.add("getCheckCode", {kGet, kNone, true, checkCode});
  table.add("postFindPassword", {kPost, kNone, true, findPassword});
  table.add("getUserLogout", {kGet, kRequired, true, logout});
  table.add("postChangePassword", {kPost, kRequired, true, changePassword});
  table.add("getUserInfo", {kGet, kRequired, false, userInfo});
  table.add("postChangeSelf", {kPost, kRequired, true, changeSelf});
  table.add("postPortrait", {kPost, kRequired, true, portrait});
  table.add("getMyMessage", {kGet, kRequired, false, myMessages});
  table.add("getMyReadMessage", {kGet, kRequired, true, readMessages});
  table.add("postFeedback", {kPost, kRequired, true, feedback});
}

}  // namespace qmv::sandbox
