#include "apps/sandbox/art_routes.h"

#include <httplib.h>

#include <algorithm>
#include <iterator>
#include <regex>

#include "apps/sandbox/artwork.h"
#include "apps/sandbox/demo_catalogue.h"
#include "apps/sandbox/file_answer.h"
#include "apps/sandbox/sandbox_util.h"

namespace qmv::sandbox {
namespace {

constexpr const char* kCacheControl = "public, max-age=86400";
constexpr int kWidths[] = {128, 256, 375, 750};

std::string textOf(const Json& row, const char* key) {
  const auto it = row.find(key);
  return it != row.end() && it->is_string() ? it->get<std::string>() : std::string();
}

int64_t integerOf(const Json& row, const char* key) {
  const auto it = row.find(key);
  return it != row.end() && it->is_number_integer() ? it->get<int64_t>() : 0;
}

// Whether the catalogue or the home's templates list sub-category `subId`: both hand out
// its icon's address.
bool inCatalogue(int subId) {
  for (const Json& groups : {catalogue(), templates()}) {
    for (const Json& group : groups) {
      for (const Json& sub : group["list"]) {
        if (sub["id"] == std::to_string(subId)) return true;
      }
    }
  }
  return false;
}

std::vector<std::string> prizesOf(const std::string& items) {
  std::vector<std::string> prizes;
  const Json list = Json::parse(items, nullptr, false);
  if (!list.is_array()) return prizes;
  for (const Json& item : list) {
    if (item.is_object()) prizes.push_back(textOf(item, "name"));
  }
  return prizes;
}

// Draws the picture `name` stands for, or "" when it stands for none.
std::string draw(const std::string& name, int width, const ArtRecordLookup& lookup) {
  static const std::regex store(R"(store_([0-9]{1,9})_([12])\.jpg)");
  static const std::regex record(R"((commodity|desc|banner|product|wheel)_([0-9]{1,9})\.jpg)");
  static const std::regex icon(R"(category_([0-9]{1,5})\.png)");
  std::smatch m;
  if (std::regex_match(name, m, store)) {
    const Json row = lookup("SELECT id, name, category FROM stores WHERE id = ?", {std::stoll(m[1].str())});
    if (!row.is_object()) return {};
    return drawStore(integerOf(row, "id"), std::stoi(m[2].str()), static_cast<int>(integerOf(row, "category")),
                     textOf(row, "name"), width);
  }
  if (std::regex_match(name, m, icon)) {
    const int subId = std::stoi(m[1].str());
    return inCatalogue(subId) ? drawCategoryIcon(subId, width) : std::string();
  }
  if (!std::regex_match(name, m, record)) return {};
  const std::string kind = m[1].str();
  const int64_t id = std::stoll(m[2].str());
  if (kind == "commodity" || kind == "desc") {
    const Json row = lookup(
        "SELECT c.name, c.content, c.now_fen, s.category FROM commodities c JOIN stores s ON s.id = c.store_id "
        "WHERE c.id = ?",
        {id});
    if (!row.is_object()) return {};
    const int category = static_cast<int>(integerOf(row, "category"));
    return kind == "commodity" ? drawOffer(id, category, textOf(row, "name"), integerOf(row, "now_fen"), width)
                               : drawDescription(id, category, textOf(row, "name"), textOf(row, "content"), width);
  }
  if (kind == "banner") {
    const Json row = lookup("SELECT title FROM banners WHERE id = ?", {id});
    return row.is_object() ? drawBanner(id, textOf(row, "title"), width) : std::string();
  }
  if (kind == "product") {
    const Json row = lookup("SELECT name FROM products WHERE id = ?", {id});
    return row.is_object() ? drawProduct(id, textOf(row, "name"), width) : std::string();
  }
  const Json row = lookup("SELECT items FROM wheels WHERE id = ?", {id});
  return row.is_object() ? drawWheel(id, prizesOf(textOf(row, "items")), width) : std::string();
}

// The native width of the picture `name` names, for deciding whether ?w= scales it.
int nativeWidth(const std::string& name) {
  if (name.rfind("category_", 0) == 0) return kCategoryIconSide;
  return kStorePhotoWidth;  // every photo is 750 wide
}

}  // namespace

std::optional<std::string> artNameOfOldImage(const std::string& oldName) {
  static const std::regex store(R"(store_([0-9]{1,9})_([12])\.png)");
  static const std::regex numbered(R"((banner|category)_([0-9]{1,9})\.png)");
  static const std::regex commodity(R"(commodity_([0-9]{1,9})\.png)");
  static const std::regex product(R"(p([0-9]{1,9})\.png)");
  std::smatch m;
  if (std::regex_match(oldName, m, store)) return "store_" + m[1].str() + "_" + m[2].str() + ".jpg";
  if (std::regex_match(oldName, m, numbered)) return m[1].str() + "_" + m[2].str() + (m[1] == "banner" ? ".jpg" : ".png");
  // Old offer pictures were numbered by store, whose first offer came first of its two.
  if (std::regex_match(oldName, m, commodity)) return "commodity_" + std::to_string(std::stoll(m[1].str()) * 2 - 1) + ".jpg";
  if (std::regex_match(oldName, m, product)) return "product_" + m[1].str() + ".jpg";
  if (oldName == "desc.png") return "desc_1.jpg";
  if (oldName == "voucher.png") return "commodity_2.jpg";
  if (oldName == "wheel.png") return "wheel_1.jpg";
  return std::nullopt;
}

void registerArtRoutes(httplib::Server& server, const std::filesystem::path& directory, ArtRecordLookup lookup) {
  server.Get(R"(/oss/art/([A-Za-z0-9_.]{1,64}))", [directory, lookup](const httplib::Request& req,
                                                                        httplib::Response& res) {
    const std::string name = req.matches[1].str();
    const std::string type = name.size() > 4 && name.compare(name.size() - 4, 4, ".png") == 0 ? "image/png" : "image/jpeg";
    int width = 0;
    std::string file = name;
    if (req.has_param("w")) {
      const auto wanted = parseInteger(req.get_param_value("w"), 1, 10000);
      if (!wanted || std::find(std::begin(kWidths), std::end(kWidths), *wanted) == std::end(kWidths)) {
        res.status = 400;
        return;
      }
      if (*wanted < nativeWidth(name)) {
        width = static_cast<int>(*wanted);
        const size_t dot = name.rfind('.');
        file = name.substr(0, dot) + "@" + std::to_string(width) + name.substr(dot);
      }
    }
    if (answerWithFile(req, res, directory / file, type, kCacheControl)) return;
    const std::string bytes = draw(name, width, lookup);
    if (bytes.empty() || !writeFileAtomically(directory, file, bytes) ||
        !answerWithFile(req, res, directory / file, type, kCacheControl)) {
      res.status = 404;
    }
  });
  server.Get(R"(/sandbox/img/([A-Za-z0-9_.-]{1,64}))", [](const httplib::Request& req, httplib::Response& res) {
    const auto name = artNameOfOldImage(req.matches[1].str());
    if (!name) {
      res.status = 404;
      return;
    }
    res.set_redirect("/oss/art/" + *name, 301);
  });
}

}  // namespace qmv::sandbox
