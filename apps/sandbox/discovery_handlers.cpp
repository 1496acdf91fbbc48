// Discovery endpoints: catalogue, templates, areas, store search and map, details, home
// content, ratings and bookmarks.
#include <algorithm>
#include <limits>

#include "apps/sandbox/demo_catalogue.h"
#include "apps/sandbox/demo_data.h"
#include "apps/sandbox/endpoint_table.h"
#include "apps/sandbox/sandbox_records.h"
#include "apps/sandbox/sandbox_texts.h"
#include "apps/sandbox/sandbox_util.h"

namespace qmv::sandbox {
namespace {

constexpr int kMapLimit = 100;

Json withAbsoluteImages(const Call& call, Json groups) {
  for (Json& group : groups) {
    for (Json& sub : group["list"]) sub["imgURL"] = absoluteUrl(call, sub["imgURL"].get<std::string>());
  }
  return groups;
}

// SQL condition (and its parameters) restricting stores "s" to an area: a city covers its
// districts. An empty area matches every store.
void areaFilter(const std::string& area, std::string& where, std::vector<Json>& params) {
  if (area.empty()) return;
  where += " AND (s.district_id = ? OR s.district_id IN (SELECT id FROM areas WHERE parent_id = ?))";
  params.push_back(area);
  params.push_back(area);
}

// Main categories (multiples of ten up to 80) cover their sub-categories; "0" is every category.
bool typeFilter(const std::string& type, std::string& where, std::vector<Json>& params) {
  if (type.empty() || type == "0") return true;
  const auto id = parseInteger(type, 1, 1000000);
  if (!id) return false;
  if (*id % 10 == 0 && *id <= 80) {
    where += " AND s.category >= ? AND s.category <= ?";
    params.push_back(*id);
    params.push_back(*id + 9);
  } else {
    where += " AND s.category = ?";
    params.push_back(*id);
  }
  return true;
}

double distanceTo(const Json& row, const std::pair<double, double>& from) {
  if (!row["lat"].is_number() || !row["lng"].is_number()) return 1e12;
  return distanceMetres(from.first, from.second, row["lat"].get<double>(), row["lng"].get<double>());
}

Json storePage(const Call& call, std::vector<Json> rows, int64_t page) {
  Json list = Json::array();
  const size_t begin = static_cast<size_t>((page - 1) * kPageSize);
  for (size_t i = begin; i < rows.size() && i < begin + kPageSize; ++i) list.push_back(storeRecord(call, rows[i]));
  return {{"dataList", list}, {"count", rows.size()}};
}

Reply categoryList(Call& call) { return Reply::ok({{"dataList", withAbsoluteImages(call, catalogue())}}); }

Reply templateList(Call& call) { return Reply::ok({{"dataList", withAbsoluteImages(call, templates())}}); }

// The keys of an area as sent (quoted, with their colon) and the columns they hold.
constexpr std::pair<const char*, const char*> kAreaColumns[] = {
    {"\"id\":", "id"},         {"\"parentId\":", "parent_id"}, {"\"name\":", "name"},
    {"\"pyName\":", "py_name"}, {"\"type\":", "type"},          {"\"special\":", "special"}};
// About the text of one area: the answer's text is reserved once, not grown by copies.
constexpr std::size_t kAreaBytesPerRow = 100;
// Room for the envelope that the server puts around the text.
constexpr std::size_t kEnvelopeBytes = 64;
// Rows read at a time: the whole table as rows would be several times its text.
constexpr int64_t kAreaBatch = 256;

// The rows changed after the version the client holds, in the table's order ("seq"); the
// whole table for "0" and for any version this server never had. The highest id goes last,
// since the client takes the last id for the highest one that its rebuilt cache must hold.
// Thousands of rows: read a batch at a time and written straight into the answer's text,
// they are never all held at once, nor as a tree.
Reply areaList(Call& call) {
  const std::string current =
      call.db.queryOne("SELECT value FROM meta WHERE key = 'area_ver'")["value"].get<std::string>();
  const int64_t held = parseInteger(call.arg("ver"), 0, std::stoll(current)).value_or(0);
  const Json counted = call.db.queryOne("SELECT COUNT(*) AS n, MAX(id) AS highest FROM areas WHERE ver > ?", {held});
  const Json highest = counted["highest"];
  std::string text = "{\"dataList\":[";
  text.reserve(kAreaBytesPerRow * counted["n"].get<std::size_t>() + kEnvelopeBytes);
  const auto write = [&text](Json& row) {
    if (text.back() != '[') text += ',';
    const char* separator = "{";
    for (const auto& [key, column] : kAreaColumns) {
      text.append(separator).append(key).append(dumpJson(row[column]));
      separator = ",";
    }
    text += '}';
  };
  constexpr const char* kColumns = "SELECT id, parent_id, name, py_name, type, special, seq FROM areas ";
  for (int64_t after = std::numeric_limits<int64_t>::min();;) {
    std::vector<Json> rows = call.db.query(std::string(kColumns) + "WHERE ver > ? AND seq > ? ORDER BY seq LIMIT ?",
                                           {held, after, kAreaBatch});
    for (Json& row : rows) {
      if (row["id"] != highest) write(row);
    }
    if (static_cast<int64_t>(rows.size()) < kAreaBatch) break;
    after = rows.back()["seq"].get<int64_t>();
  }
  if (!highest.is_null()) {
    Json row = call.db.queryOne(std::string(kColumns) + "WHERE id = ?", {highest});
    write(row);
  }
  text.append("],\"ver\":").append(dumpJson(current)).push_back('}');
  return Reply::okWritten(std::move(text));
}

Reply searchList(Call& call) {
  const auto page = parsePage(call.arg("page"));
  if (!page) return Reply::refuse(kMsgBadArgument);
  const std::string keyword = call.arg("keyword");
  std::string where = "1";
  std::vector<Json> params;
  if (!keyword.empty()) {
    where += " AND (instr(s.name, ?) > 0 OR instr(s.title, ?) > 0 OR instr(s.content, ?) > 0)";
    params.insert(params.end(), {keyword, keyword, keyword});
  }
  areaFilter(call.arg("area"), where, params);
  auto rows = call.db.query(std::string("SELECT ") + kStoreColumns + " FROM stores s WHERE " + where + " ORDER BY s.id",
                            params);
  return Reply::ok(storePage(call, std::move(rows), *page));
}

Reply typeSearchList(Call& call) {
  const auto page = parsePage(call.arg("page"));
  const auto sort = call.hasArg("sort") ? parseInteger(call.arg("sort"), 0, 3) : std::optional<int64_t>(0);
  if (!page || !sort) return Reply::refuse(kMsgBadArgument);
  std::string where = "1";
  std::vector<Json> params;
  if (!typeFilter(call.arg("type"), where, params)) return Reply::refuse(kMsgBadArgument);
  areaFilter(call.arg("area"), where, params);
  auto rows = call.db.query(std::string("SELECT ") + kStoreColumns + " FROM stores s WHERE " + where + " ORDER BY s.id",
                            params);
  const auto from = parseLatLng(call.arg("coordinate"));
  if (*sort == 1 && from) {
    std::stable_sort(rows.begin(), rows.end(),
                     [&](const Json& a, const Json& b) { return distanceTo(a, *from) < distanceTo(b, *from); });
  } else if (*sort == 2) {
    std::stable_sort(rows.begin(), rows.end(), [](const Json& a, const Json& b) {
      return a["price_fen"].get<int64_t>() < b["price_fen"].get<int64_t>();
    });
  } else if (*sort == 3) {
    std::stable_sort(rows.begin(), rows.end(), [](const Json& a, const Json& b) {
      return std::make_pair(a["star"].get<int64_t>(), a["star_num"].get<int64_t>()) >
             std::make_pair(b["star"].get<int64_t>(), b["star_num"].get<int64_t>());
    });
  }
  return Reply::ok(storePage(call, std::move(rows), *page));
}

Reply mapList(Call& call) {
  std::string where = "s.lat IS NOT NULL AND s.lng IS NOT NULL";
  std::vector<Json> params;
  if (!typeFilter(call.arg("type"), where, params)) return Reply::refuse(kMsgBadArgument);
  areaFilter(call.arg("area"), where, params);
  auto rows = call.db.query(std::string("SELECT ") + kStoreColumns + " FROM stores s WHERE " + where + " ORDER BY s.id",
                            params);
  if (const auto from = parseLatLng(call.arg("coordinate"))) {
    std::stable_sort(rows.begin(), rows.end(),
                     [&](const Json& a, const Json& b) { return distanceTo(a, *from) < distanceTo(b, *from); });
  }
  if (rows.size() > kMapLimit) rows.resize(kMapLimit);
  Json list = Json::array();
  for (const Json& row : rows) list.push_back(storeRecord(call, row));
  return Reply::ok({{"dataList", list}, {"count", list.size()}});
}

Json remarkRecord(const Json& row) {
  std::string phone = row["phone"].get<std::string>();
  if (phone.size() == 11) phone = phone.substr(0, 3) + "****" + phone.substr(7);
  return {{"userName", phone},
          {"nickName", row["nick_name"]},
          {"star", std::to_string(row["star"].get<int64_t>())},
          {"content", row["content"]},
          {"time", timeText(row["created"].get<int64_t>())},
          {"storeId", std::to_string(row["store_id"].get<int64_t>())},
          {"storeName", row["store_name"]}};
}

constexpr const char* kRemarkSelect =
    "SELECT r.*, m.phone, m.nick_name, s.name AS store_name FROM remarks r JOIN members m ON m.id = r.member_id "
    "JOIN stores s ON s.id = r.store_id ";

Reply storeDetail(Call& call) {
  const auto id = parseInteger(call.arg("storeId"), 1, INT64_MAX);
  if (!id) return Reply::refuse(kMsgNoStore);
  const Json row = call.db.queryOne(std::string("SELECT ") + kStoreColumns + " FROM stores s WHERE s.id = ?", {*id});
  if (!row.is_object()) return Reply::refuse(kMsgNoStore);
  Json store = storeRecord(call, row);
  Json offers = Json::array();
  for (const Json& c : call.db.query(std::string("SELECT ") + kCommodityColumns +
                                         " FROM commodities c JOIN stores s ON s.id = c.store_id WHERE c.store_id = ? "
                                         "ORDER BY c.id",
                                     {*id})) {
    offers.push_back(commodityRecord(call, c));
  }
  store["commodityList"] = offers;
  Json remarks = Json::array();
  for (const Json& r :
       call.db.query(std::string(kRemarkSelect) + "WHERE r.store_id = ? ORDER BY r.created DESC LIMIT 3", {*id})) {
    remarks.push_back(remarkRecord(r));
  }
  store["dataList"] = remarks;
  return Reply::ok(store);
}

Reply commodityDetail(Call& call) {
  const auto id = parseInteger(call.arg("commodityId"), 1, INT64_MAX);
  if (!id) return Reply::refuse(kMsgNoCommodity);
  const Json row = call.db.queryOne(std::string("SELECT ") + kCommodityColumns +
                                        " FROM commodities c JOIN stores s ON s.id = c.store_id WHERE c.id = ?",
                                    {*id});
  if (!row.is_object()) return Reply::refuse(kMsgNoCommodity);
  return Reply::ok(commodityRecord(call, row));
}

Reply storeRemarks(Call& call) {
  const auto id = parseInteger(call.arg("storeId"), 1, INT64_MAX);
  const auto page = parsePage(call.arg("page"));
  const auto star = call.hasArg("star") ? parseInteger(call.arg("star"), 0, 5) : std::optional<int64_t>(0);
  if (!id || !page || !star) return Reply::refuse(kMsgBadArgument);
  if (call.db.queryOne("SELECT 1 FROM stores WHERE id = ?", {*id}).is_null()) return Reply::refuse(kMsgNoStore);
  const std::string where = *star > 0 ? "WHERE r.store_id = ?1 AND r.star = ?2 " : "WHERE r.store_id = ?1 AND ?2 = 0 ";
  Json list = Json::array();
  for (const Json& r : call.db.query(std::string(kRemarkSelect) + where + "ORDER BY r.created DESC LIMIT ?3 OFFSET ?4",
                                     {*id, *star, kPageSize, (*page - 1) * kPageSize})) {
    list.push_back(remarkRecord(r));
  }
  const Json count = call.db.queryOne("SELECT COUNT(*) AS n FROM remarks r " + where, {*id, *star});
  return Reply::ok({{"dataList", list}, {"count", count["n"]}});
}

Reply myRemarks(Call& call) {
  const auto page = parsePage(call.arg("page"));
  if (!page) return Reply::refuse(kMsgBadArgument);
  Json list = Json::array();
  for (const Json& r : call.db.query(std::string(kRemarkSelect) + "WHERE r.member_id = ? ORDER BY r.created DESC "
                                                                  "LIMIT ? OFFSET ?",
                                     {call.memberId(), kPageSize, (*page - 1) * kPageSize})) {
    list.push_back(remarkRecord(r));
  }
  const Json count = call.db.queryOne("SELECT COUNT(*) AS n FROM remarks WHERE member_id = ?", {call.memberId()});
  return Reply::ok({{"dataList", list}, {"count", count["n"]}});
}

Reply grade(Call& call) {
  const auto star = parseInteger(call.arg("star"), 1, 5);
  if (!star) return Reply::refuse(kMsgBadStar);
  const Json order =
      call.db.queryOne("SELECT * FROM orders WHERE id = ? AND member_id = ?", {call.arg("orderId"), call.memberId()});
  if (!order.is_object()) return Reply::refuse(kMsgNoOrder);
  if (order["status"] != "2" || !order["store_id"].is_number_integer()) return Reply::refuse(kMsgCannotGrade);
  call.db.execute("UPDATE orders SET status = '4', star = ? WHERE id = ?", {*star, order["id"]});
  call.db.execute("INSERT INTO remarks(store_id, member_id, order_id, star, content, created) VALUES(?,?,?,?,?,?)",
                  {order["store_id"], call.memberId(), order["id"], *star, call.arg("content"), nowSeconds()});
  call.db.execute("UPDATE members SET now_exp = now_exp + 10 WHERE id = ?", {call.memberId()});
  return Reply::ok();
}

// Bookmarks toggle: the answer says whether the item is bookmarked now.
Reply toggleFavorite(Call& call, const char* table, const char* column, const char* itemTable, const char* argument,
                     const char* missing) {
  const auto id = parseInteger(call.arg(argument), 1, INT64_MAX);
  if (!id) return Reply::refuse(missing);
  if (call.db.queryOne(std::string("SELECT 1 FROM ") + itemTable + " WHERE id = ?", {*id}).is_null()) {
    return Reply::refuse(missing);
  }
  const int64_t removed = call.db.execute(
      std::string("DELETE FROM ") + table + " WHERE member_id = ? AND " + column + " = ?", {call.memberId(), *id});
  if (removed == 0) {
    call.db.execute(std::string("INSERT INTO ") + table + "(member_id, " + column + ", created) VALUES(?,?,?)",
                    {call.memberId(), *id, nowSeconds()});
  }
  return Reply::ok({{"favorite", removed == 0 ? "1" : "0"}});
}

Reply myFavoriteStores(Call& call) {
  const auto page = parsePage(call.arg("page"));
  if (!page) return Reply::refuse(kMsgBadArgument);
  auto rows = call.db.query(std::string("SELECT ") + kStoreColumns +
                                " FROM stores s JOIN store_favorites f ON f.store_id = s.id WHERE f.member_id = ? "
                                "ORDER BY f.created DESC, s.id",
                            {call.memberId()});
  return Reply::ok(storePage(call, std::move(rows), *page));
}

Reply myFavoriteCommodities(Call& call) {
  const auto page = parsePage(call.arg("page"));
  if (!page) return Reply::refuse(kMsgBadArgument);
  Json list = Json::array();
  for (const Json& row : call.db.query(std::string("SELECT ") + kCommodityColumns +
                                           " FROM commodities c JOIN stores s ON s.id = c.store_id JOIN "
                                           "commodity_favorites f ON f.commodity_id = c.id WHERE f.member_id = ? "
                                           "ORDER BY f.created DESC, c.id LIMIT ? OFFSET ?",
                                       {call.memberId(), kPageSize, (*page - 1) * kPageSize})) {
    list.push_back(commodityRecord(call, row));
  }
  return Reply::ok({{"dataList", list}});
}

Reply carousel(Call& call) {
  Json list = Json::array();
  for (const Json& row : call.db.query("SELECT * FROM banners ORDER BY id")) {
    list.push_back({{"title", row["title"]},
                    {"url", absoluteUrl(call, row["url"].get<std::string>())},
                    {"imageURL", absoluteUrl(call, row["image"].get<std::string>())}});
  }
  return Reply::ok({{"dataList", list}});
}

Reply recommended(Call& call) {
  std::string where = "s.recommended = 1";
  std::vector<Json> params;
  areaFilter(call.arg("area"), where, params);
  Json list = Json::array();
  for (const Json& row : call.db.query(
           std::string("SELECT ") + kStoreColumns + " FROM stores s WHERE " + where + " ORDER BY s.id LIMIT 6",
           params)) {
    list.push_back(storeRecord(call, row));
  }
  return Reply::ok({{"dataList", list}});
}

Reply popular(Call& call) {
  const auto page = parsePage(call.arg("page"));
  if (!page) return Reply::refuse(kMsgBadArgument);
  std::string where = "s.popular = 1";
  std::vector<Json> params;
  areaFilter(call.arg("area"), where, params);
  auto rows = call.db.query(
      std::string("SELECT ") + kStoreColumns + " FROM stores s WHERE " + where + " ORDER BY s.sold DESC, s.id", params);
  return Reply::ok(storePage(call, std::move(rows), *page));
}

}  // namespace

void registerDiscoveryHandlers(EndpointTable& table) {
  using enum HttpMethod;
  using enum SessionRule;
  table.add("getCategoryList", {kGet, kNone, false, categoryList});
  table.add("getCategorTemplates1", {kGet, kNone, false, templateList});
  table.add("getAreaList", {kGet, kNone, false, areaList});
  table.add("getSearchList", {kGet, kOptional, false, searchList});
  table.add("getTypeSearchList", {kGet, kOptional, false, typeSearchList});
  table.add("getMapList", {kGet, kOptional, false, mapList});
  // Details are browsed signed out too; a session adds bookmarks and first-purchase state.
  table.add("getStoreDetailInfo", {kGet, kOptional, false, storeDetail});
  table.add("getCommodityDetailInfo", {kGet, kOptional, false, commodityDetail});
  table.add("getRemarkMeByUser", {kGet, kNone, false, storeRemarks});
  table.add("getMyRemark", {kGet, kRequired, false, myRemarks});
  table.add("PostGrade", {kPost, kRequired, true, grade});
  table.add("postBookmark", {kPost, kRequired, true, [](Call& call) {
                               return toggleFavorite(call, "store_favorites", "store_id", "stores", "storeId",
                                                     kMsgNoStore);
                             }});
  table.add("postCollectCommodity", {kPost, kRequired, true, [](Call& call) {
                                       return toggleFavorite(call, "commodity_favorites", "commodity_id", "commodities",
                                                             "commodityId", kMsgNoCommodity);
                                     }});
  table.add("getMyFavorite", {kGet, kRequired, false, myFavoriteStores});
  table.add("getMyCommodityFavorite", {kGet, kRequired, false, myFavoriteCommodities});
  table.add("getCarouselList", {kGet, kNone, false, carousel});
  table.add("getRecommendStore", {kGet, kOptional, false, recommended});
  table.add("getPopularList", {kGet, kOptional, false, popular});
}

}  // namespace qmv::sandbox
