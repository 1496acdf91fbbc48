#include "apps/sandbox/sandbox_records.h"

#include "apps/sandbox/demo_data.h"
#include "apps/sandbox/demo_pictures.h"
#include "apps/sandbox/sandbox_util.h"

namespace qmv::sandbox {
namespace {

std::string text(const Json& row, const char* key) {
  auto it = row.find(key);
  if (it == row.end() || it->is_null()) return "";
  if (it->is_string()) return it->get<std::string>();
  if (it->is_number_integer()) return std::to_string(it->get<int64_t>());
  return it->dump();
}

int64_t integer(const Json& row, const char* key) {
  auto it = row.find(key);
  return (it != row.end() && it->is_number_integer()) ? it->get<int64_t>() : 0;
}

// The served portrait of a member: his upload, else the one drawn for a demo member, else "".
std::string portraitUrl(const Call& call, const Json& m) {
  const bool hasPortrait =
      !call.db.queryOne("SELECT 1 FROM members WHERE id = ? AND portrait IS NOT NULL", {m["id"]}).is_null();
  if (hasPortrait) return call.rootUrl + "/sandbox/portrait/" + text(m, "num") + ".png";
  const std::string num = text(m, "num");
  const bool demo = num.size() == 6 && num >= kDemoMemberNumber && num <= kLastDemoMemberNumber;
  return demo ? call.rootUrl + "/oss/" + text(m, "user_name") + ".png" : "";
}

}  // namespace

const char* const kStoreColumns =
    "s.id, s.district_id, s.category, s.name, s.title, s.content, s.address, s.phone, s.hours, s.images, "
    "s.price_fen, s.shop_price_fen, s.star, s.sold, s.lng, s.lat, "
    "(SELECT COUNT(*) FROM remarks r WHERE r.store_id = s.id) AS star_num";

const char* const kCommodityColumns =
    "c.id, c.store_id, c.name, c.content, c.image, c.now_fen, c.price_fen, c.first_fen, c.sold, c.valid, c.hours, "
    "c.desc_image, c.rules, c.taocan, c.remarks, s.name AS store_name, s.phone AS store_phone, "
    "s.address AS store_address";

std::string absoluteUrl(const Call& call, const std::string& path) {
  if (path.empty() || path.rfind("http", 0) == 0) return path;
  return call.rootUrl + path;
}

Json memberRecord(const Call& call, const Json& m, const std::string& sessionId) {
  const bool hasCard = !call.db.queryOne("SELECT 1 FROM bank_cards WHERE member_id = ?", {m["id"]}).is_null();
  std::string inviter;
  if (m.contains("inviter_id") && m["inviter_id"].is_number_integer()) {
    inviter = text(call.db.queryOne("SELECT num FROM members WHERE id = ?", {m["inviter_id"]}), "num");
  }
  Json record = Json::object();
  record["sessionId"] = sessionId;
  record["phone"] = text(m, "phone");
  record["nickName"] = text(m, "nick_name");
  record["sex"] = text(m, "sex");
  record["birthday"] = text(m, "birthday");
  record["email"] = text(m, "email");
  // The login reader and the profile reader spell this key differently; both are sent.
  record["inviterID"] = inviter;
  record["inviterId"] = inviter;
  record["balance"] = std::to_string(integer(m, "balance"));
  record["bankCardNum"] = hasCard ? "1" : "0";
  record["imgUrl"] = portraitUrl(call, m);
  record["address"] = text(m, "address");
  record["address_name"] = text(m, "address_name");
  record["address_phone"] = text(m, "address_phone");
  record["postcode"] = text(m, "postcode");
  record["nowExp"] = std::to_string(integer(m, "now_exp"));
  record["name"] = text(m, "name");
  record["num"] = text(m, "num");
  record["time"] = timeText(integer(m, "created"));
  record["userName"] = text(m, "user_name");
  return record;
}

Json contactRecord(const Call& call, const Json& m, int64_t invitedCount) {
  // What the contacts screens show, and no more: a contact's balance, legal name, birthday
  // and addresses are his own. "name" is the name he goes by.
  const std::string nickName = text(m, "nick_name");
  Json record = Json::object();
  record["imgUrl"] = portraitUrl(call, m);
  record["name"] = nickName.empty() ? text(m, "user_name") : nickName;
  record["phone"] = text(m, "phone");
  record["time"] = dateText(integer(m, "created"));
  record["num"] = std::to_string(invitedCount);
  return record;
}

Json storeRecord(const Call& call, const Json& s) {
  Json record = Json::object();
  record["storeId"] = text(s, "id");
  std::string images;
  const std::string stored = text(s, "images");
  size_t start = 0;
  for (;;) {
    const size_t bar = stored.find('|', start);
    if (!images.empty() || start > 0) images += "|";
    images += absoluteUrl(call, stored.substr(start, bar == std::string::npos ? std::string::npos : bar - start));
    if (bar == std::string::npos) break;
    start = bar + 1;
  }
  record["imageURL"] = images;
  record["storeName"] = text(s, "name");
  record["address"] = text(s, "address");
  record["content"] = text(s, "content");
  record["title"] = text(s, "title");
  record["time"] = text(s, "hours");
  record["phone"] = text(s, "phone");
  bool favorite = false;
  if (call.memberId() != 0) {
    favorite =
        !call.db
             .queryOne("SELECT 1 FROM store_favorites WHERE member_id = ? AND store_id = ?", {call.memberId(), s["id"]})
             .is_null();
  }
  record["favorite"] = favorite ? "1" : "0";
  record["price"] = yuanText(integer(s, "price_fen"));
  record["shopPrice"] = yuanText(integer(s, "shop_price_fen"));
  record["mark"] = std::to_string(integer(s, "star")) + ".0";
  record["star"] = std::to_string(integer(s, "star"));
  record["num"] = std::to_string(integer(s, "sold"));
  record["starNum"] = std::to_string(integer(s, "star_num"));
  record["isFirst"] = "1";
  record["type"] = text(s, "category");
  record["area"] = text(s, "district_id");
  if (s.contains("lng") && s["lng"].is_number() && s.contains("lat") && s["lat"].is_number()) {
    char coordinate[64];
    std::snprintf(coordinate, sizeof coordinate, "%.6f,%.6f", s["lng"].get<double>(), s["lat"].get<double>());
    record["coordinate"] = coordinate;
  } else {
    record["coordinate"] = "";
  }
  return record;
}

Json commodityRecord(const Call& call, const Json& c) {
  Json record = Json::object();
  record["commodityId"] = text(c, "id");
  record["content"] = text(c, "content");
  record["name"] = text(c, "name");
  record["storeId"] = text(c, "store_id");
  record["storeName"] = text(c, "store_name");
  bool favorite = false;
  bool first = true;
  if (call.memberId() != 0) {
    favorite = !call.db
                    .queryOne("SELECT 1 FROM commodity_favorites WHERE member_id = ? AND commodity_id = ?",
                              {call.memberId(), c["id"]})
                    .is_null();
    first = call.db
                .queryOne("SELECT 1 FROM orders WHERE member_id = ? AND commodity_id = ? AND paid > 0",
                          {call.memberId(), c["id"]})
                .is_null();
  }
  record["favorite"] = favorite ? "1" : "0";
  record["storePhone"] = text(c, "store_phone");
  record["storeAddress"] = text(c, "store_address");
  record["imageURL"] = absoluteUrl(call, text(c, "image"));
  record["nowPrice"] = yuanText(integer(c, "now_fen"));
  record["price"] = yuanText(integer(c, "price_fen"));
  record["num"] = std::to_string(integer(c, "sold"));
  record["firstPrice"] = yuanText(integer(c, "first_fen"));
  record["isFirst"] = first ? "1" : "0";
  const std::string descImage = text(c, "desc_image");
  record["hasImage"] = descImage.empty() ? "0" : "1";
  record["descImage"] = absoluteUrl(call, descImage);
  record["date"] = text(c, "valid");
  record["time"] = text(c, "hours");
  for (const char* key : {"rules", "taocan", "remarks"}) {
    Json list = parseJson(text(c, key));
    if (!list.is_array()) list = Json::array();
    const std::string name = std::string(key) == "rules"    ? "ruleList"
                             : std::string(key) == "taocan" ? "taocanList"
                                                            : "remarkList";
    record[name] = std::move(list);
  }
  return record;
}

Json orderRecord(const Call& call, const Json& o) {
  Json record = Json::object();
  record["storeId"] = text(o, "store_id");
  record["storeName"] = text(o, "store_name");
  record["time"] = integer(o, "paid") > 0 ? timeText(integer(o, "paid")) : "";
  const std::string status = text(o, "status");
  record["isComment"] = integer(o, "star") > 0 ? "1" : "0";
  record["orderId"] = text(o, "id");
  record["price"] = yuanText(integer(o, "unit_fen"));
  record["name"] = text(o, "name");
  record["orderName"] = text(o, "name");
  record["commodityId"] = text(o, "commodity_id");
  record["imageURL"] = absoluteUrl(call, text(o, "image"));
  record["star"] = std::to_string(integer(o, "star"));
  record["promotionCode"] = text(o, "promotion_code");
  record["phone"] = text(o, "phone");
  record["number"] = std::to_string(integer(o, "number"));
  record["totalPrices"] = yuanText(integer(o, "total_fen"));
  record["content"] = text(o, "content");
  record["status"] = status;
  record["orderType"] = text(o, "kind");
  return record;
}

Json memberById(SandboxStore& db, int64_t id) { return db.queryOne("SELECT * FROM members WHERE id = ?", {id}); }

bool moveBalance(SandboxStore& db, int64_t memberId, int64_t amount, const std::string& kind, const std::string& title,
                 const std::string& ref) {
  const int64_t changed = db.execute("UPDATE members SET balance = balance + ? WHERE id = ? AND balance + ? >= 0",
                                     {amount, memberId, amount});
  if (changed != 1) return false;
  db.execute("INSERT INTO ledger(member_id, amount, kind, title, ref, created) VALUES(?,?,?,?,?,?)",
             {memberId, amount, kind, title, ref, nowSeconds()});
  return true;
}

}  // namespace qmv::sandbox
