#include "apps/sandbox/demo_data.h"

#include <cmath>
#include <cstdint>
#include <limits>
#include <vector>

#include "apps/sandbox/demo_pictures.h"
#include "apps/sandbox/sandbox_util.h"
#include "core/common/string_util.h"
#include "core/sqlite/sqlite_database.h"

namespace qmv::sandbox {
namespace {

// "seq" is the row's place in the list as sent; "ver" the area version that last changed it.
constexpr const char* kAreasSchema = R"sql(
CREATE TABLE IF NOT EXISTS areas(id INTEGER PRIMARY KEY, parent_id INTEGER NOT NULL, name TEXT NOT NULL,
  py_name TEXT NOT NULL, type INTEGER NOT NULL, special INTEGER NOT NULL DEFAULT 0, seq INTEGER NOT NULL,
  ver INTEGER NOT NULL);
CREATE INDEX IF NOT EXISTS areas_parent ON areas(parent_id);
CREATE INDEX IF NOT EXISTS areas_ver ON areas(ver, seq);
)sql";

constexpr const char* kSchema = R"sql(
CREATE TABLE IF NOT EXISTS meta(key TEXT PRIMARY KEY, value TEXT NOT NULL);
CREATE TABLE IF NOT EXISTS members(id INTEGER PRIMARY KEY, num TEXT NOT NULL UNIQUE, phone TEXT NOT NULL UNIQUE,
  user_name TEXT NOT NULL, password TEXT NOT NULL, nick_name TEXT NOT NULL DEFAULT '', sex TEXT NOT NULL DEFAULT '',
  birthday TEXT NOT NULL DEFAULT '', email TEXT NOT NULL DEFAULT '', inviter_id INTEGER REFERENCES members(id),
  balance INTEGER NOT NULL DEFAULT 0 CHECK(balance >= 0), address TEXT NOT NULL DEFAULT '',
  address_name TEXT NOT NULL DEFAULT '', address_phone TEXT NOT NULL DEFAULT '', postcode TEXT NOT NULL DEFAULT '',
  now_exp INTEGER NOT NULL DEFAULT 0, name TEXT NOT NULL DEFAULT '', created INTEGER NOT NULL, portrait BLOB);
CREATE TABLE IF NOT EXISTS sessions(id TEXT PRIMARY KEY, member_id INTEGER NOT NULL REFERENCES members(id),
  created INTEGER NOT NULL);
CREATE TABLE IF NOT EXISTS sms_codes(id TEXT PRIMARY KEY, phone TEXT NOT NULL, code TEXT NOT NULL,
  created INTEGER NOT NULL, verified INTEGER NOT NULL DEFAULT 0, used INTEGER NOT NULL DEFAULT 0,
  attempts INTEGER NOT NULL DEFAULT 0);
CREATE TABLE IF NOT EXISTS stores(id INTEGER PRIMARY KEY, district_id INTEGER NOT NULL, category INTEGER NOT NULL,
  name TEXT NOT NULL, title TEXT NOT NULL, content TEXT NOT NULL, address TEXT NOT NULL, phone TEXT NOT NULL,
  hours TEXT NOT NULL, images TEXT NOT NULL, price_fen INTEGER NOT NULL, shop_price_fen INTEGER NOT NULL,
  star INTEGER NOT NULL, sold INTEGER NOT NULL, lng REAL, lat REAL, recommended INTEGER NOT NULL DEFAULT 0,
  popular INTEGER NOT NULL DEFAULT 0);
CREATE TABLE IF NOT EXISTS commodities(id INTEGER PRIMARY KEY, store_id INTEGER NOT NULL REFERENCES stores(id),
  name TEXT NOT NULL, content TEXT NOT NULL, image TEXT NOT NULL, now_fen INTEGER NOT NULL,
  price_fen INTEGER NOT NULL, first_fen INTEGER NOT NULL, sold INTEGER NOT NULL, valid TEXT NOT NULL,
  hours TEXT NOT NULL, desc_image TEXT NOT NULL, rules TEXT NOT NULL, taocan TEXT NOT NULL, remarks TEXT NOT NULL);
CREATE TABLE IF NOT EXISTS products(id INTEGER PRIMARY KEY, name TEXT NOT NULL, series INTEGER NOT NULL,
  share_fen INTEGER NOT NULL, image TEXT NOT NULL);
CREATE TABLE IF NOT EXISTS banners(id INTEGER PRIMARY KEY, title TEXT NOT NULL, url TEXT NOT NULL, image TEXT NOT NULL);
CREATE TABLE IF NOT EXISTS orders(id TEXT PRIMARY KEY, member_id INTEGER NOT NULL REFERENCES members(id),
  kind TEXT NOT NULL, store_id INTEGER, commodity_id INTEGER, product_id INTEGER, series TEXT NOT NULL DEFAULT '',
  name TEXT NOT NULL, image TEXT NOT NULL, unit_fen INTEGER NOT NULL, number INTEGER NOT NULL,
  total_fen INTEGER NOT NULL CHECK(total_fen > 0), content TEXT NOT NULL DEFAULT '', status TEXT NOT NULL,
  star INTEGER NOT NULL DEFAULT 0, promotion_code TEXT NOT NULL DEFAULT '', account_type TEXT NOT NULL,
  use_balance INTEGER NOT NULL, balance_fen INTEGER NOT NULL DEFAULT 0, prepay_id TEXT NOT NULL UNIQUE,
  is_first INTEGER NOT NULL DEFAULT 0, created INTEGER NOT NULL, paid INTEGER NOT NULL DEFAULT 0);
CREATE TABLE IF NOT EXISTS ledger(id INTEGER PRIMARY KEY, member_id INTEGER NOT NULL REFERENCES members(id),
  amount INTEGER NOT NULL, kind TEXT NOT NULL, title TEXT NOT NULL, ref TEXT NOT NULL DEFAULT '',
  created INTEGER NOT NULL);
CREATE TABLE IF NOT EXISTS bank_cards(member_id INTEGER PRIMARY KEY REFERENCES members(id), card_id TEXT NOT NULL,
  certif_id TEXT NOT NULL, name TEXT NOT NULL, card_bank TEXT NOT NULL, created INTEGER NOT NULL);
CREATE TABLE IF NOT EXISTS withdrawals(id INTEGER PRIMARY KEY, member_id INTEGER NOT NULL, amount INTEGER NOT NULL,
  card_id TEXT NOT NULL, created INTEGER NOT NULL);
CREATE TABLE IF NOT EXISTS remarks(id INTEGER PRIMARY KEY, store_id INTEGER NOT NULL, member_id INTEGER NOT NULL,
  order_id TEXT NOT NULL DEFAULT '', star INTEGER NOT NULL, content TEXT NOT NULL, created INTEGER NOT NULL);
CREATE TABLE IF NOT EXISTS store_favorites(member_id INTEGER NOT NULL, store_id INTEGER NOT NULL,
  created INTEGER NOT NULL, PRIMARY KEY(member_id, store_id));
CREATE TABLE IF NOT EXISTS commodity_favorites(member_id INTEGER NOT NULL, commodity_id INTEGER NOT NULL,
  created INTEGER NOT NULL, PRIMARY KEY(member_id, commodity_id));
CREATE TABLE IF NOT EXISTS messages(id INTEGER PRIMARY KEY, member_id INTEGER NOT NULL, title TEXT NOT NULL,
  content TEXT NOT NULL, created INTEGER NOT NULL, is_read INTEGER NOT NULL DEFAULT 0);
CREATE TABLE IF NOT EXISTS feedback(id INTEGER PRIMARY KEY, member_id INTEGER NOT NULL, content TEXT NOT NULL,
  contact TEXT NOT NULL, type TEXT NOT NULL, created INTEGER NOT NULL);
CREATE TABLE IF NOT EXISTS vouchers(id INTEGER PRIMARY KEY, member_id INTEGER NOT NULL, title TEXT NOT NULL,
  amount_fen INTEGER NOT NULL, expires TEXT NOT NULL, status TEXT NOT NULL, store_id INTEGER,
  starts TEXT NOT NULL DEFAULT '');
CREATE TABLE IF NOT EXISTS wheels(id INTEGER PRIMARY KEY, image TEXT NOT NULL, rule TEXT NOT NULL,
  starts INTEGER NOT NULL, ends INTEGER NOT NULL, spins INTEGER NOT NULL, items TEXT NOT NULL);
CREATE TABLE IF NOT EXISTS wheel_spins(id INTEGER PRIMARY KEY, wheel_id INTEGER NOT NULL, member_id INTEGER NOT NULL,
  item_index INTEGER NOT NULL, result TEXT NOT NULL, created INTEGER NOT NULL);
CREATE INDEX IF NOT EXISTS orders_member ON orders(member_id, created);
CREATE INDEX IF NOT EXISTS ledger_member ON ledger(member_id, id);
CREATE INDEX IF NOT EXISTS members_inviter ON members(inviter_id);
)sql";

// Old picture addresses (/sandbox/img/...) to the art each record has now. Offers are named
// by their own id, orders by the offer, product or store they show.
constexpr const char* kArtAddresses = R"sql(
UPDATE stores SET images = replace(replace(images, '/sandbox/img/', '/oss/art/'), '.png', '.jpg')
  WHERE images LIKE '%/sandbox/img/%';
UPDATE commodities SET image = '/oss/art/commodity_' || id || '.jpg' WHERE image LIKE '/sandbox/img/%';
UPDATE commodities SET desc_image = '/oss/art/desc_' || id || '.jpg' WHERE desc_image LIKE '/sandbox/img/%';
UPDATE banners SET image = '/oss/art/banner_' || id || '.jpg' WHERE image LIKE '/sandbox/img/%';
UPDATE products SET image = '/oss/art/product_' || id || '.jpg' WHERE image LIKE '/sandbox/img/%';
UPDATE wheels SET image = '/oss/art/wheel_' || id || '.jpg' WHERE image LIKE '/sandbox/img/%';
UPDATE orders SET image = (SELECT image FROM commodities WHERE id = orders.commodity_id)
  WHERE image LIKE '/sandbox/img/%' AND commodity_id IN (SELECT id FROM commodities);
UPDATE orders SET image = (SELECT image FROM products WHERE id = orders.product_id)
  WHERE image LIKE '/sandbox/img/%' AND product_id IN (SELECT id FROM products);
UPDATE orders SET image = '/oss/art/store_' || store_id || '_1.jpg'
  WHERE image LIKE '/sandbox/img/%' AND store_id IS NOT NULL;
)sql";

struct DemoStore {
  int district;
  int category;
  const char* name;
  const char* title;
  const char* address;
  double wgsLat;
  double wgsLng;
  int priceFen;
};

// Positions are WGS-84 of the named places; they are stored converted to BD-09.
const DemoStore kStores[] = {
    {371302, 11, "沂蒙小调火锅(人民广场店)", "鲜切牛肉火锅双人餐", "兰山区人民广场南侧沂蒙路", 35.0603, 118.3425, 6800},
    {371302, 12, "海纳百川自助餐厅", "海鲜自助晚餐", "兰山区北京路临沂万达广场4楼", 35.0949, 118.3562, 11800},
    {371302, 13, "临沂糁馆(银雀山店)", "正宗临沂糁", "兰山区银雀山路银雀山汉墓东", 35.0550, 118.3380, 1500},
    {371302, 14, "书法广场甜品站", "手作杨枝甘露", "兰山区王羲之故居西门", 35.0569, 118.3462, 2200},
    {371302, 15, "沂州生日蛋糕坊", "8寸水果奶油蛋糕", "兰山区解放路与沂蒙路交汇", 35.0655, 118.3441, 16800},
    {371302, 16, "琅琊王宴请酒楼", "十人商务宴请套餐", "兰山区金雀山路琅琊王大酒店", 35.0586, 118.3503, 98800},
    {371302, 18, "蒙山烧烤大排档", "烤全羊腿套餐", "兰山区临沂批发城西郊", 35.0791, 118.3148, 8800},
    {371311, 17, "罗庄老街煎饼铺", "杂粮煎饼", "罗庄区罗庄街道沂河路", 34.9962, 118.2851, 800},
    {371312, 11, "河东铜锅涮肉", "老北京铜锅涮肉", "河东区人民大街河东区政府北", 35.0891, 118.4018, 7800},
    {371312, 13, "机场路快餐", "商务快餐套餐", "河东区临沂启阳机场航站楼", 35.0462, 118.4123, 2500},
    {371302, 21, "沂蒙足道养生馆", "90分钟足疗", "兰山区通达路与北京路交汇", 35.0921, 118.3505, 12800},
    {371302, 22, "临沂大学体育馆健身中心", "游泳健身月卡", "兰山区临沂大学西校区", 35.1152, 118.3011, 19900},
    {371311, 24, "罗庄温泉汗蒸会馆", "温泉汗蒸通票", "罗庄区湖东路", 34.9891, 118.2912, 8800},
    {371302, 31, "万达影城(临沂店)", "2D电影通兑券", "兰山区北京路临沂万达广场5楼", 35.0952, 118.3566, 3500},
    {371302, 32, "唱吧麦颂KTV", "欢唱3小时", "兰山区蒙山大道与金雀山路交汇", 35.0591, 118.3296, 9800},
    {371312, 33, "沂河边咖啡", "手冲咖啡双人份", "河东区滨河东路沂河风景区", 35.0702, 118.3712, 5800},
    {371302, 35, "桌游吧·书院", "桌游畅玩一下午", "兰山区书院街", 35.0575, 118.3487, 3900},
    {371302, 41, "沂蒙舞蹈工作室", "爵士舞体验课", "兰山区新华路", 35.0624, 118.3389, 4900},
    {371302, 42, "千丝美发沙龙", "洗剪吹套餐", "兰山区沂蒙路天元商业广场", 35.0703, 118.3457, 3800},
    {371312, 43, "指尖美甲", "日式美甲", "河东区东兴路", 35.0880, 118.3990, 9800},
    {371302, 44, "悦美容养生SPA", "面部深层护理", "兰山区银雀山路", 35.0541, 118.3402, 16800},
    {371302, 51, "沂州花坊", "11枝红玫瑰花束", "兰山区解放路花卉市场", 35.0650, 118.3320, 13800},
    {371311, 52, "罗庄汽车美容", "精致洗车", "罗庄区罗程路", 34.9990, 118.2800, 3000},
    {371302, 53, "临沂新东方培训", "英语体验课", "兰山区北京路", 35.0930, 118.3480, 9900},
    {371302, 55, "沂蒙山摄影工作室", "个人写真套系", "兰山区涑河北街", 35.0700, 118.3400, 39900},
    {371302, 60, "临沂开元名都大酒店", "豪华大床房", "兰山区北京路与沂蒙路交汇", 35.0970, 118.3460, 39800},
    {371302, 70, "沂蒙特产馆", "蒙阴蜜桃礼盒", "兰山区人民广场北侧", 35.0636, 118.3431, 12800},
    {371302, 81, "临沂城市书房", "读书会门票", "兰山区临沂市图书馆", 35.0830, 118.3520, 1000},
    {370102, 11, "泉城老火锅(泉城广场店)", "麻辣火锅双人餐", "历下区泉城广场银座商城6楼", 36.6609, 117.0192, 7800},
    {370102, 13, "趵突泉把子肉", "把子肉米饭", "历下区趵突泉南门", 36.6602, 117.0112, 2000},
    {370102, 14, "大明湖荷花甜品", "荷叶冰饮", "历下区大明湖南门", 36.6735, 117.0243, 1800},
    {370102, 31, "恒隆广场影城", "3D电影票", "历下区泉城路恒隆广场", 36.6645, 117.0268, 4500},
    {370105, 60, "济南站前酒店", "标准间", "天桥区车站街济南站对面", 36.6712, 116.9903, 26800},
    {370104, 52, "济南西站汽车服务", "汽车保养", "槐荫区济南西站东广场", 36.6683, 116.8902, 19900},
    {370103, 42, "魏家庄万达造型", "烫染套餐", "市中区魏家庄万达广场", 36.6580, 116.9955, 29800},
    {370102, 22, "千佛山登山健身俱乐部", "健身年卡", "历下区千佛山路", 36.6402, 117.0309, 99900},
    {371302, 12, "沂蒙老家自助烤肉", "自助烤肉午餐", "兰山区沂蒙路与北京路交汇", 35.0985, 118.3452, 5900},
    {371321, 13, "沂南朱家林农家菜", "农家土菜四人餐", "沂南县界湖街道澳柯玛大道", 35.5496, 118.4653, 12800},
    {371325, 16, "费县沂蒙山宴", "沂蒙全羊宴", "费县费城街道建设路", 35.2660, 117.9770, 58800},
    {370112, 18, "山大路烧烤", "烤串套餐", "历城区山大南路", 36.6748, 117.0592, 6600},
};

// WGS-84 -> GCJ-02 -> BD-09, the grids the platform's maps use.
double transformLat(double x, double y) {
  double r = -100.0 + 2.0 * x + 3.0 * y + 0.2 * y * y + 0.1 * x * y + 0.2 * std::sqrt(std::fabs(x));
  r += (20.0 * std::sin(6.0 * x * M_PI) + 20.0 * std::sin(2.0 * x * M_PI)) * 2.0 / 3.0;
  r += (20.0 * std::sin(y * M_PI) + 40.0 * std::sin(y / 3.0 * M_PI)) * 2.0 / 3.0;
  r += (160.0 * std::sin(y / 12.0 * M_PI) + 320.0 * std::sin(y * M_PI / 30.0)) * 2.0 / 3.0;
  return r;
}

double transformLng(double x, double y) {
  double r = 300.0 + x + 2.0 * y + 0.1 * x * x + 0.1 * x * y + 0.1 * std::sqrt(std::fabs(x));
  r += (20.0 * std::sin(6.0 * x * M_PI) + 20.0 * std::sin(2.0 * x * M_PI)) * 2.0 / 3.0;
  r += (20.0 * std::sin(x * M_PI) + 40.0 * std::sin(x / 3.0 * M_PI)) * 2.0 / 3.0;
  r += (150.0 * std::sin(x / 12.0 * M_PI) + 300.0 * std::sin(x / 30.0 * M_PI)) * 2.0 / 3.0;
  return r;
}

std::pair<double, double> wgsToBd09(double lat, double lng) {
  constexpr double kEe = 0.006693421622965943;
  double dLat = transformLat(lng - 105.0, lat - 35.0);
  double dLng = transformLng(lng - 105.0, lat - 35.0);
  const double radLat = lat / 180.0 * M_PI;
  const double s = std::sin(radLat);
  const double magic = 1 - kEe * s * s;
  const double sqrtMagic = std::sqrt(magic);
  dLat = (dLat * 180.0) / ((6335552.717000426 / (magic * sqrtMagic)) * M_PI);
  dLng = (dLng * 180.0) / ((6378245.0 / sqrtMagic) * std::cos(radLat) * M_PI);
  const double gLat = lat + dLat;
  const double gLng = lng + dLng;
  const double z = std::sqrt(gLng * gLng + gLat * gLat) + 0.00002 * std::sqrt(gLat * M_PI);
  const double theta = std::atan2(gLat, gLng) + 0.000003 * std::cos(gLng * M_PI);
  return {z * std::sin(theta) + 0.006, z * std::cos(theta) + 0.0065};
}

// The client's own table, row for row and in its order (a municipality's city row before
// its province of the same name, since look-ups by name take the first row), all at
// kAreaVersion.
Status seedAreas(SandboxStore& db, const std::filesystem::path& areaDatabase) {
  SQLiteDatabase shipped = SQLiteDatabase::atPath(areaDatabase, SQLiteDatabase::Mode::kImmutable);
  if (const Status opened = shipped.openDatabase(); !opened.ok()) {
    return Status::ioError("the shipped area database " + areaDatabase.string() + " cannot be read: " +
                           opened.message());
  }
  // Read a batch at a time (by rowid, the table's order): the whole table as row objects
  // would be several times its size, left behind in the arena of a fresh home's start.
  constexpr std::int64_t kBatch = 256;
  std::int64_t seq = 0;
  for (std::int64_t after = std::numeric_limits<std::int64_t>::min();;) {
    const Json rows = shipped
                          .getRowsForQuery(
                              "SELECT rowid AS shipped_rowid, area_id, parent_id, area_name, py_name, area_type, special "
                              "FROM areas WHERE rowid > ? ORDER BY rowid LIMIT ?",
                              {after, kBatch})
                          .valueOr(Json());
    // A batch that fails to read leaves the table incomplete: refused like an empty one.
    if (!rows.is_array() || (rows.empty() && seq == 0)) {
      shipped.closeDatabase();
      return Status::notFound("no areas in " + areaDatabase.string());
    }
    if (seq == 0) db.execute("DELETE FROM areas");
    for (const Json& row : rows) {
      // NULL columns are left out of a row; the table refuses such an area.
      const auto column = [&row](const char* name) {
        const auto it = row.find(name);
        return it == row.end() ? Json() : *it;
      };
      db.execute("INSERT INTO areas(id, parent_id, name, py_name, type, special, seq, ver) VALUES(?,?,?,?,?,?,?,?)",
                 {column("area_id"), column("parent_id"), column("area_name"), column("py_name"), column("area_type"),
                  column("special").is_null() ? Json(0) : column("special"), ++seq, kAreaVersion});
    }
    if (static_cast<std::int64_t>(rows.size()) < kBatch) break;
    after = rows.back()["shipped_rowid"].get<std::int64_t>();
  }
  shipped.closeDatabase();
  db.execute("INSERT OR REPLACE INTO meta(key, value) VALUES('area_ver', ?)", {std::to_string(kAreaVersion)});
  return {};
}

void seedStores(SandboxStore& db) {
  int64_t index = 0;
  for (const DemoStore& store : kStores) {
    ++index;
    const auto [lat, lng] = wgsToBd09(store.wgsLat, store.wgsLng);
    const std::string images =
        "/oss/art/store_" + std::to_string(index) + "_1.jpg|/oss/art/store_" + std::to_string(index) + "_2.jpg";
    const int64_t star = 3 + index % 3;
    db.execute(
        "INSERT INTO stores(id, district_id, category, name, title, content, address, phone, hours, images, "
        "price_fen, shop_price_fen, star, sold, lng, lat, recommended, popular) "
        "VALUES(?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?)",
        {index, store.district, store.category, store.name, store.title,
         std::string(store.name) + "：" + store.title + "，环境舒适，欢迎光临。", store.address,
         index % 7 == 0 ? std::string() : "0539-8" + std::to_string(100000 + index * 37), "09:00-22:00", images,
         store.priceFen, store.priceFen * 3 / 2, star, 20 + index * 13, lng, lat, index % 4 == 1 ? 1 : 0,
         index % 3 != 2 ? 1 : 0});
    // Two offers per store: a package with a first-purchase price and a plain voucher.
    const int64_t nowFen = store.priceFen;
    const int64_t package = 2 * index - 1, voucher = 2 * index;
    const Json rules = Json::array({{{"rule", "每人每次限用一张"}}, {{"rule", "不与店内其他优惠同享"}}});
    const Json remarks = Json::array({{{"remark", "请提前一天预约"}}, {{"remark", "节假日通用"}}});
    const Json taocan = Json::array(
        {{{"title", "套餐内容"},
          {"contentList", Json::array({{{"commodity", store.title}, {"amount", "1份"}, {"price", yuanText(nowFen)}},
                                       {{"commodity", "饮品"}, {"amount", "2杯"}, {"price", "10.00"}}})}}});
    db.execute(
        "INSERT INTO commodities(id, store_id, name, content, image, now_fen, price_fen, first_fen, sold, valid, "
        "hours, desc_image, rules, taocan, remarks) VALUES(?,?,?,?,?,?,?,?,?,?,?,?,?,?,?)",
        {package, index, std::string(store.title), std::string("超值") + store.title + "，首单立减。",
         "/oss/art/commodity_" + std::to_string(package) + ".jpg", nowFen, nowFen * 3 / 2,
         std::max<int64_t>(100, nowFen / 2), 5 + index * 7, "2016-10-01至2027-12-31", "10:00-21:00",
         index % 2 ? "/oss/art/desc_" + std::to_string(package) + ".jpg" : "", rules.dump(), taocan.dump(),
         remarks.dump()});
    db.execute(
        "INSERT INTO commodities(id, store_id, name, content, image, now_fen, price_fen, first_fen, sold, valid, "
        "hours, desc_image, rules, taocan, remarks) VALUES(?,?,?,?,?,?,?,?,?,?,?,?,?,?,?)",
        {voucher, index, "100元代金券", "全场通用代金券", "/oss/art/commodity_" + std::to_string(voucher) + ".jpg", 8800,
         10000, 8800, 100 + index,
         "2016-10-01至2027-12-31", "全天", "", Json::array({{{"rule", "不找零"}}}).dump(), Json::array().dump(),
         Json::array({{{"remark", "无需预约"}}}).dump()});
  }
}

int64_t addMember(SandboxStore& db, const std::string& num, const std::string& phone, const std::string& name,
                  Json inviter, int64_t balance, int64_t exp, int64_t created) {
  db.execute(
      "INSERT INTO members(num, phone, user_name, password, nick_name, sex, birthday, email, inviter_id, balance, "
      "address, address_name, address_phone, postcode, now_exp, name, created) "
      "VALUES(?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?)",
      {num, phone, phone, StringUtil::getmd5WithString(kDemoPassword), name, "1", "1990-01-01", "", std::move(inviter), balance,
       "临沂市兰山区沂蒙路100号", name, phone, "276000", exp, name, created});
  const int64_t id = db.lastInsertId();
  if (balance > 0) {
    db.execute("INSERT INTO ledger(member_id, amount, kind, title, created) VALUES(?,?,'topup','充值',?)",
               {id, balance, created});
  }
  return id;
}

// The demo member's orders: every status the client knows ("1" to use, "2" to rate, "3"
// refunded) and one it does not ("4", done and rated), offer orders with redemption codes
// of 4, 6, 8 and 12 characters, and direct store payments, which carry no code and no
// quantity. Fifteen in all, so that the all tab has a second page.
void seedOrders(SandboxStore& db, int64_t demo, int64_t now) {
  struct DemoOrder {
    const char* kind;  // "1" store payment, "2" offer
    const char* status;
    int64_t item;  // commodity id of an offer, store id of a store payment
    const char* code;
    int64_t number;
  };
  const DemoOrder orders[] = {{"2", "1", 1, "83629105", 1},      {"2", "1", 3, "5271", 2},
                              {"2", "2", 5, "402918", 1},        {"1", "2", 4, "", 0},
                              {"2", "2", 7, "731955028461", 1},  {"2", "3", 9, "66120873", 1},
                              {"2", "4", 11, "9034", 1},         {"1", "4", 6, "", 0},
                              {"2", "4", 13, "118274", 3},       {"2", "1", 15, "30571947", 1},
                              {"2", "2", 17, "2285", 1},         {"1", "2", 9, "", 0},
                              {"2", "4", 19, "574102938816", 1}, {"2", "1", 21, "6043", 1},
                              {"2", "3", 23, "190427", 1}};
  const int64_t day = 86400;
  int64_t n = 0;
  for (const DemoOrder& order : orders) {
    ++n;
    const bool offer = std::string(order.kind) == "2";
    Json storeId, commodityId;
    std::string name, image, content;
    int64_t unit = 0;
    if (offer) {
      const Json c =
          db.queryOne("SELECT id, store_id, name, image, now_fen FROM commodities WHERE id = ?", {order.item});
      storeId = c["store_id"];
      commodityId = c["id"];
      name = c["name"].get<std::string>();
      image = c["image"].get<std::string>();
      unit = c["now_fen"].get<int64_t>();
      content = "套餐内容：" + name;
    } else {
      const Json s = db.queryOne("SELECT id, name, images, price_fen FROM stores WHERE id = ?", {order.item});
      storeId = s["id"];
      name = s["name"].get<std::string>() + "买单";
      const std::string images = s["images"].get<std::string>();
      image = images.substr(0, images.find('|'));
      unit = s["price_fen"].get<int64_t>();
    }
    const bool rated = std::string(order.status) == "4";
    const int64_t created = now - (30 - n) * day;
    const std::string id = "SB" + std::to_string(20161000000 + n);
    db.execute(
        "INSERT INTO orders(id, member_id, kind, store_id, commodity_id, name, image, unit_fen, number, total_fen, "
        "content, status, star, promotion_code, account_type, use_balance, balance_fen, prepay_id, created, paid) "
        "VALUES(?,?,?,?,?,?,?,?,?,?,?,?,?,?,'0',0,0,?,?,?)",
        {id, demo, order.kind, storeId, commodityId, name, image, unit, order.number,
         unit * std::max<int64_t>(order.number, 1), content, order.status, rated ? 5 : 0, order.code,
         "seed" + std::to_string(n), created, created});
    if (rated) {
      db.execute("INSERT INTO remarks(store_id, member_id, order_id, star, content, created) VALUES(?,?,?,5,?,?)",
                 {storeId, demo, id, "味道不错，服务热情！", created + day});
    }
  }
}

void seedMembers(SandboxStore& db, int64_t now) {
  const int64_t day = 86400;
  const int64_t demo =
      addMember(db, kDemoMemberNumber, kDemoPhone, "演示会员", nullptr, kDemoBalanceFen, 1250, now - 400 * day);
  const int64_t a = addMember(db, "100002", "13800000001", "张三", demo, 1000, 300, now - 300 * day);
  const int64_t b = addMember(db, "100003", "13800000002", "李四", demo, 0, 50, now - 200 * day);
  addMember(db, "100004", "13800000003", "王五", demo, 0, 0, now - 100 * day);
  addMember(db, "100005", "13800000004", "赵六", a, 0, 0, now - 90 * day);
  addMember(db, "100006", "13800000005", "孙七", a, 0, 0, now - 80 * day);
  addMember(db, "100007", "13800000006", "周八", b, 0, 0, now - 70 * day);

  seedOrders(db, demo, now);
  db.execute(
      "INSERT INTO remarks(store_id, member_id, star, content, created) VALUES(1, ?, 4, '环境很好，下次还来', ?), "
      "(1, ?, 3, '排队有点久', ?), (2, ?, 5, '品种很多', ?)",
      {a, now - 5 * day, b, now - 4 * day, a, now - 3 * day});
  db.execute(
      "INSERT INTO messages(member_id, title, content, created, is_read) VALUES(?, '欢迎加入', "
      "'欢迎使用本地生活，完善资料可获得经验值。', ?, 1), (?, '订单提醒', '您有待使用的订单，请及时消费。', ?, 0), "
      "(?, '活动通知', '幸运大转盘上线啦，快来试试手气！', ?, 0)",
      {demo, now - 10 * day, demo, now - 2 * day, demo, now - day});
  db.execute(
      "INSERT INTO vouchers(member_id, title, amount_fen, expires, status) VALUES(?, '新人5元券', 500, '2027-12-31', "
      "'0'), (?, '满100减20', 2000, '2027-06-30', '0')",
      {demo, demo});
  db.execute("INSERT INTO store_favorites(member_id, store_id, created) VALUES(?, 1, ?), (?, 14, ?)",
             {demo, now - day, demo, now});
}

void seedContent(SandboxStore& db, int64_t now) {
  db.execute(
      "INSERT INTO banners(title, url, image) VALUES('一元夺宝', '/static/coinone/index.html', "
      "'/oss/art/banner_1.jpg'), "
      "('幸运大转盘', '/static/dial/index.html', '/oss/art/banner_2.jpg'), "
      "('圈子', '/static/lebbs/index.html', '/oss/art/banner_3.jpg')");
  db.execute(
      "INSERT INTO products(name, series, share_fen, image) VALUES('iPhone 7 128G', 12, 100, '/oss/art/product_1.jpg'), "
      "('沂蒙山旅游双人游', 3, 100, '/oss/art/product_2.jpg')");
  const Json items = Json::array({{{"name", "谢谢参与"}, {"fen", 0}, {"weight", 50}},
                                  {{"name", "1元红包"}, {"fen", 100}, {"weight", 30}},
                                  {{"name", "5元红包"}, {"fen", 500}, {"weight", 15}},
                                  {{"name", "20元红包"}, {"fen", 2000}, {"weight", 4}},
                                  {{"name", "谢谢参与"}, {"fen", 0}, {"weight", 0}},
                                  {{"name", "100元红包"}, {"fen", 10000}, {"weight", 1}}});
  db.execute("INSERT INTO wheels(image, rule, starts, ends, spins, items) VALUES('',?,?,?,3,?)",
             {"活动期间每位会员可抽奖3次，红包直接存入余额。", now - 86400, now + 3650LL * 86400, items.dump()});
  nameWheelPicture(db);
}

}  // namespace

Status prepareDatabase(SandboxStore& db, const std::filesystem::path& areaDatabase) {
  Status areas;
  const Result<bool> done = db.transact(true, [&] {
    // Areas of homes seeded before they carried versions are a few demo rows: replaced.
    const bool versioned = db.queryOne("SELECT 1 FROM pragma_table_info('areas') WHERE name = 'ver'").is_object();
    if (!versioned) db.executeScript("DROP TABLE IF EXISTS areas");
    db.executeScript(kAreasSchema);
    db.executeScript(kSchema);
    if (!versioned && !(areas = seedAreas(db, areaDatabase)).ok()) return false;
    // Homes made before codes counted their wrong attempts.
    if (db.queryOne("SELECT 1 FROM pragma_table_info('sms_codes') WHERE name = 'attempts'").is_null()) {
      db.executeScript("ALTER TABLE sms_codes ADD COLUMN attempts INTEGER NOT NULL DEFAULT 0");
    }
    // Homes made before vouchers named their store and first day.
    if (db.queryOne("SELECT 1 FROM pragma_table_info('vouchers') WHERE name = 'store_id'").is_null()) {
      db.executeScript(
          "ALTER TABLE vouchers ADD COLUMN store_id INTEGER; "
          "ALTER TABLE vouchers ADD COLUMN starts TEXT NOT NULL DEFAULT ''");
    }
    const int64_t now = nowSeconds();
    if (db.queryOne("SELECT value FROM meta WHERE key = 'seeded'").is_null()) {
      seedStores(db);
      seedContent(db, now);
      seedMembers(db, now);
      db.execute("INSERT INTO meta(key, value) VALUES('seeded', ?)", {timeText(now)});
    }
    // Homes seeded before the member centre gain its rows once.
    if (db.queryOne("SELECT value FROM meta WHERE key = 'member_demo'").is_null()) {
      seedMemberCentre(db, now);
      db.execute("INSERT INTO meta(key, value) VALUES('member_demo', '1')");
    }
    // And its messages and bookmarks, once.
    if (db.queryOne("SELECT value FROM meta WHERE key = 'member_pages_demo'").is_null()) {
      seedMemberPages(db, now);
      db.execute("INSERT INTO meta(key, value) VALUES('member_pages_demo', '1')");
    }
    // Homes seeded when every picture was one grey placeholder get their records' own art.
    if (db.queryOne("SELECT value FROM meta WHERE key = 'art_addresses'").is_null()) {
      db.executeScript(kArtAddresses);
      db.execute("INSERT INTO meta(key, value) VALUES('art_addresses', '1')");
    }
    return true;
  });
  if (!areas.ok()) return areas;
  return done.status();
}

void nameWheelPicture(SandboxStore& db) {
  const int64_t id = db.lastInsertId();
  db.execute("UPDATE wheels SET image = ? WHERE id = ?", {"/oss/art/wheel_" + std::to_string(id) + ".jpg", id});
}

}  // namespace qmv::sandbox
