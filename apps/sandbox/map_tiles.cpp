#include "apps/sandbox/map_tiles.h"

#include <cairo.h>
#include <httplib.h>
#include <pango/pangocairo.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <list>
#include <sstream>
#include <unordered_map>

#include "apps/sandbox/sandbox_util.h"
#include "core/common/json.h"
#include "core/common/log.h"
#include "core/common/string_util.h"
#include "core/sqlite/sqlite_database.h"

namespace qmv::sandbox {
namespace {

constexpr double kPi = 3.14159265358979323846;
// Web Mercator ends where the map is square.
constexpr double kMaxLatitude = 85.05112878;
constexpr const char* kFont = "Noto Sans CJK SC";
constexpr const char* kCacheControl = "public, max-age=86400";
// Lines are cut a little outside the tile so that their ends and the cut edges fall
// out of sight, and so that cairo never sees coordinates far beyond its fixed-point range.
constexpr double kClipMargin = 8;
// How far outside the tile a name may start and still reach into it.
constexpr double kLabelReach = 160;
constexpr int kFirstCityNameZoom = 6;
constexpr int kLastCityNameZoom = 12;
constexpr int kFirstCountyNameZoom = 9;

struct Rgb {
  double r, g, b;
};

constexpr Rgb kLand{0.949, 0.937, 0.914};
constexpr Rgb kCountyFills[] = {{0.925, 0.894, 0.839}, {0.878, 0.918, 0.851}, {0.871, 0.906, 0.937},
                                {0.937, 0.882, 0.890}, {0.914, 0.914, 0.835}, {0.890, 0.878, 0.937}};
constexpr Rgb kCountyLine{0.62, 0.55, 0.68};
constexpr Rgb kCityLine{0.45, 0.30, 0.52};
constexpr Rgb kCountyText{0.27, 0.25, 0.31};
constexpr Rgb kCityText{0.16, 0.10, 0.22};

struct Box {
  double minX, minY, maxX, maxY;
  bool meets(const Box& o) const { return minX <= o.maxX && o.minX <= maxX && minY <= o.maxY && o.minY <= maxY; }
  bool holds(const Box& o) const { return minX <= o.minX && o.maxX <= maxX && minY <= o.minY && o.maxY <= maxY; }
};

// A ring in Web Mercator units: the world is the square [0, 1) x [0, 1).
struct Ring {
  std::vector<double> xy;
  Box box;
};

struct Area {
  int64_t id = 0;
  bool city = false;
  std::string name;
  double labelX = 0, labelY = 0;
  std::vector<Ring> rings;
  Box box{1, 1, 0, 0};
};

double mercatorX(double longitude) { return (longitude + 180.0) / 360.0; }

double mercatorY(double latitude) {
  const double phi = std::clamp(latitude, -kMaxLatitude, kMaxLatitude) * kPi / 180.0;
  return 0.5 - std::log(std::tan(kPi / 4 + phi / 2)) / (2 * kPi);
}

Box joined(const Box& a, const Box& b) {
  return {std::min(a.minX, b.minX), std::min(a.minY, b.minY), std::max(a.maxX, b.maxX), std::max(a.maxY, b.maxY)};
}

// "lng lat lng lat ..." as a ring; nothing when the text is not pairs of degrees.
std::optional<Ring> parseRing(const std::string& text) {
  Ring ring;
  ring.box = {1, 1, 0, 0};
  std::istringstream in(text);
  double lng = 0;
  double lat = 0;
  while (in >> lng >> lat) {
    if (!std::isfinite(lng) || !std::isfinite(lat) || std::abs(lng) > 180 || std::abs(lat) > 90) return std::nullopt;
    const double x = mercatorX(lng);
    const double y = mercatorY(lat);
    ring.xy.push_back(x);
    ring.xy.push_back(y);
    ring.box = joined(ring.box, {x, y, x, y});
  }
  if (!in.eof() || ring.xy.size() < 6) return std::nullopt;
  return ring;
}

// Cuts a closed polygon to `clip` (Sutherland-Hodgman, one edge of the box at a time).
// Along the box the cut leaves edges that lie outside the tile, so they never show.
std::vector<double> clipped(const std::vector<double>& points, const Box& clip) {
  std::vector<double> in = points;
  std::vector<double> out;
  for (int edge = 0; edge < 4 && in.size() >= 6; ++edge) {
    const auto inside = [&](double x, double y) {
      switch (edge) {
        case 0: return x >= clip.minX;
        case 1: return x <= clip.maxX;
        case 2: return y >= clip.minY;
        default: return y <= clip.maxY;
      }
    };
    const auto cross = [&](double ax, double ay, double bx, double by) {
      const double t = edge == 0   ? (clip.minX - ax) / (bx - ax)
                       : edge == 1 ? (clip.maxX - ax) / (bx - ax)
                       : edge == 2 ? (clip.minY - ay) / (by - ay)
                                   : (clip.maxY - ay) / (by - ay);
      out.push_back(ax + t * (bx - ax));
      out.push_back(ay + t * (by - ay));
    };
    out.clear();
    const std::size_t n = in.size() / 2;
    for (std::size_t i = 0; i < n; ++i) {
      const double ax = in[2 * ((i + n - 1) % n)], ay = in[2 * ((i + n - 1) % n) + 1];
      const double bx = in[2 * i], by = in[2 * i + 1];
      const bool aIn = inside(ax, ay);
      const bool bIn = inside(bx, by);
      if (bIn) {
        if (!aIn) cross(ax, ay, bx, by);
        out.push_back(bx);
        out.push_back(by);
      } else if (aIn) {
        cross(ax, ay, bx, by);
      }
    }
    std::swap(in, out);
  }
  return in;
}

// Where the tile is in the world and what of the world it shows.
struct View {
  double scale;  // pixels across the world
  double originX, originY;
  Box visible;   // in Mercator units, with the clip margin
  Box clip;      // in pixels of the tile

  double px(double x) const { return x * scale - originX; }
  double py(double y) const { return y * scale - originY; }
};

// Adds `ring` to the path in tile pixels, dropping points closer than half a pixel to
// the last one kept (at a low zoom a county is a few pixels across).
void addRing(cairo_t* cr, const Ring& ring, const View& view) {
  std::vector<double> points;
  points.reserve(ring.xy.size());
  for (std::size_t i = 0; i + 1 < ring.xy.size(); i += 2) {
    const double x = view.px(ring.xy[i]);
    const double y = view.py(ring.xy[i + 1]);
    const std::size_t n = points.size();
    if (n >= 2 && std::abs(x - points[n - 2]) < 0.5 && std::abs(y - points[n - 1]) < 0.5) continue;
    points.push_back(x);
    points.push_back(y);
  }
  const Box inPixels{view.px(ring.box.minX), view.py(ring.box.minY), view.px(ring.box.maxX), view.py(ring.box.maxY)};
  if (!view.clip.holds(inPixels)) points = clipped(points, view.clip);
  if (points.size() < 6) return;
  cairo_move_to(cr, points[0], points[1]);
  for (std::size_t i = 2; i + 1 < points.size(); i += 2) cairo_line_to(cr, points[i], points[i + 1]);
  cairo_close_path(cr);
}

// Adds the rings of `area` that reach into the tile; false when none does.
bool addArea(cairo_t* cr, const Area& area, const View& view) {
  if (!area.box.meets(view.visible)) return false;
  bool any = false;
  for (const Ring& ring : area.rings) {
    if (!ring.box.meets(view.visible)) continue;
    addRing(cr, ring, view);
    any = true;
  }
  return any;
}

void setColour(cairo_t* cr, const Rgb& c) { cairo_set_source_rgb(cr, c.r, c.g, c.b); }

// A name laid out in its font, centred on its place, in tile pixels.
struct Label {
  PangoLayout* layout = nullptr;
  Box box{};
  bool city = false;
};

PangoLayout* layoutOf(cairo_t* cr, const std::string& text, double px, bool bold) {
  PangoLayout* layout = pango_cairo_create_layout(cr);
  PangoFontDescription* font = pango_font_description_new();
  pango_font_description_set_family(font, kFont);
  pango_font_description_set_weight(font, bold ? PANGO_WEIGHT_BOLD : PANGO_WEIGHT_NORMAL);
  pango_font_description_set_absolute_size(font, px * PANGO_SCALE);
  pango_layout_set_font_description(layout, font);
  pango_font_description_free(font);
  pango_layout_set_text(layout, text.c_str(), -1);
  return layout;
}

// The names the tile shows: a city's from zoom 6 to 12, a county's from 9, each only
// when its area is wider than the name; a county's name gives way to its city's. The
// choice depends on the world's pixels alone, so that a name cut by a tile's edge is
// drawn alike by the neighbouring tile.
std::vector<Label> labelsOf(cairo_t* cr, const std::vector<Area>& areas, int zoom, const View& view) {
  std::vector<Label> labels;
  std::vector<Box> cityBoxes;
  for (const bool cities : {true, false}) {
    if (cities && (zoom < kFirstCityNameZoom || zoom > kLastCityNameZoom)) continue;
    if (!cities && zoom < kFirstCountyNameZoom) continue;
    // A city's name is looked at farther out: the county names it covers may reach in.
    const double out = cities ? 2 * kLabelReach : kLabelReach;
    const Box reach{-out, -out, kTileSide + out, kTileSide + out};
    for (const Area& area : areas) {
      if (area.city != cities) continue;
      const double x = view.px(area.labelX);
      const double y = view.py(area.labelY);
      if (!reach.holds({x, y, x, y})) continue;
      const double size = cities ? (zoom >= 9 ? 16 : 13) : (zoom >= 12 ? 14 : 12);
      PangoLayout* layout = layoutOf(cr, area.name, size, cities);
      int w = 0;
      int h = 0;
      pango_layout_get_pixel_size(layout, &w, &h);
      const Box box{x - w / 2.0, y - h / 2.0, x + w / 2.0, y + h / 2.0};
      const double areaWidth = (area.box.maxX - area.box.minX) * view.scale;
      const bool covered = std::any_of(cityBoxes.begin(), cityBoxes.end(), [&](const Box& b) { return b.meets(box); });
      if (areaWidth < w + 8 || covered) {
        g_object_unref(layout);
        continue;
      }
      if (cities) cityBoxes.push_back(box);
      labels.push_back({layout, box, cities});
    }
  }
  return labels;
}

void drawLabels(cairo_t* cr, std::vector<Label>& labels) {
  cairo_set_line_join(cr, CAIRO_LINE_JOIN_ROUND);
  for (Label& label : labels) {
    cairo_move_to(cr, label.box.minX, label.box.minY);
    pango_cairo_layout_path(cr, label.layout);
    cairo_set_source_rgba(cr, 1, 1, 1, 0.85);
    cairo_set_line_width(cr, 3);
    cairo_stroke_preserve(cr);
    setColour(cr, label.city ? kCityText : kCountyText);
    cairo_fill(cr);
    g_object_unref(label.layout);
    label.layout = nullptr;
  }
}

std::string pngOf(cairo_surface_t* surface) {
  cairo_surface_flush(surface);
  std::string bytes;
  cairo_surface_write_to_png_stream(
      surface,
      [](void* closure, const unsigned char* data, unsigned int length) {
        static_cast<std::string*>(closure)->append(reinterpret_cast<const char*>(data), length);
        return CAIRO_STATUS_SUCCESS;
      },
      &bytes);
  return bytes;
}

// Drawn tiles, the least recently asked for going first.
class TileCache {
 public:
  explicit TileCache(std::size_t capacity) : capacity_(std::max<std::size_t>(capacity, 1)) {}

  struct Tile {
    std::string png;
    std::string etag;
  };

  std::optional<Tile> find(const std::string& key) {
    std::lock_guard lock(mutex_);
    const auto it = index_.find(key);
    if (it == index_.end()) return std::nullopt;
    order_.splice(order_.begin(), order_, it->second);
    return it->second->second;
  }

  void put(const std::string& key, const Tile& tile) {
    std::lock_guard lock(mutex_);
    if (index_.count(key) != 0) return;
    order_.emplace_front(key, tile);
    index_[key] = order_.begin();
    while (order_.size() > capacity_) {
      index_.erase(order_.back().first);
      order_.pop_back();
    }
  }

 private:
  std::size_t capacity_;
  std::mutex mutex_;
  std::list<std::pair<std::string, Tile>> order_;
  std::unordered_map<std::string, std::list<std::pair<std::string, Tile>>::iterator> index_;
};

// A tile coordinate: 1 to 7 digits (2^19 has 6) in 0..max.
std::optional<int64_t> tileNumber(const std::string& text, int64_t max) {
  if (!isDigits(text, 1, 7)) return std::nullopt;
  return parseInteger(text, 0, max);
}

}  // namespace

struct TileMap::Data {
  std::vector<Area> areas;  // cities first, so that their names are placed first
};

TileMap::TileMap(std::filesystem::path database) : database_(std::move(database)) {}

TileMap::~TileMap() = default;

const TileMap::Data& TileMap::data() const {
  std::call_once(loaded_, [this] {
    data_ = std::make_unique<Data>();
    SQLiteDatabase db = SQLiteDatabase::atPath(database_, SQLiteDatabase::Mode::kImmutable);
    const Result<Json> areas = db.getRowsForQuery(
        "SELECT area_id, area_type, area_name, label_latitude, label_longitude FROM map_areas "
        "ORDER BY area_type, area_id");
    const Result<Json> rings = db.getRowsForQuery("SELECT area_id, points FROM map_rings ORDER BY area_id, ring");
    if (!areas.ok() || !rings.ok()) {
      logLine("[sandbox] no map data in " + database_.string() + " (" +
              (areas.ok() ? rings.status() : areas.status()).message() + "): map tiles are blank");
      return;
    }
    std::unordered_map<int64_t, std::size_t> indexOf;
    for (const Json& row : *areas) {
      Area area;
      area.id = row.value("area_id", int64_t{0});
      area.city = row.value("area_type", 0) == 2;
      area.name = row.value("area_name", std::string());
      area.labelX = mercatorX(row.value("label_longitude", 0.0));
      area.labelY = mercatorY(row.value("label_latitude", 0.0));
      indexOf[area.id] = data_->areas.size();
      data_->areas.push_back(std::move(area));
    }
    std::size_t bad = 0;
    for (const Json& row : *rings) {
      const auto it = indexOf.find(row.value("area_id", int64_t{0}));
      const auto ring = parseRing(row.value("points", std::string()));
      if (it == indexOf.end() || !ring) {
        ++bad;
        continue;
      }
      Area& area = data_->areas[it->second];
      area.box = joined(area.box, ring->box);
      area.rings.push_back(std::move(*ring));
    }
    if (bad > 0) logLine("[sandbox] " + std::to_string(bad) + " unreadable outlines left out of the map");
  });
  return *data_;
}

std::size_t TileMap::areaCount() const { return data().areas.size(); }

std::string TileMap::draw(int z, int x, int y) const {
  const std::vector<Area>& areas = data().areas;
  cairo_surface_t* surface = cairo_image_surface_create(CAIRO_FORMAT_RGB24, kTileSide, kTileSide);
  cairo_t* cr = cairo_create(surface);
  setColour(cr, kLand);
  cairo_paint(cr);

  View view{};
  view.scale = kTileSide * std::ldexp(1.0, z);
  view.originX = static_cast<double>(x) * kTileSide;
  view.originY = static_cast<double>(y) * kTileSide;
  view.clip = {-kClipMargin, -kClipMargin, kTileSide + kClipMargin, kTileSide + kClipMargin};
  view.visible = {(view.originX - kClipMargin) / view.scale, (view.originY - kClipMargin) / view.scale,
                  (view.originX + kTileSide + kClipMargin) / view.scale,
                  (view.originY + kTileSide + kClipMargin) / view.scale};

  cairo_set_fill_rule(cr, CAIRO_FILL_RULE_EVEN_ODD);
  cairo_set_line_join(cr, CAIRO_LINE_JOIN_ROUND);
  for (const Area& area : areas) {
    if (area.city || !addArea(cr, area, view)) continue;
    setColour(cr, kCountyFills[area.id % std::size(kCountyFills)]);
    cairo_fill(cr);
  }
  // County lines, then the city outlines over them.
  const double county = z < 8 ? 0.5 : z < 11 ? 0.9 : 1.3;
  const double city = z < 8 ? 1.0 : z < 11 ? 2.0 : 3.0;
  for (const bool cities : {false, true}) {
    for (const Area& area : areas) {
      if (area.city == cities) addArea(cr, area, view);
    }
    setColour(cr, cities ? kCityLine : kCountyLine);
    cairo_set_line_width(cr, cities ? city : county);
    cairo_stroke(cr);
  }
  std::vector<Label> labels = labelsOf(cr, areas, z, view);
  drawLabels(cr, labels);

  std::string png = pngOf(surface);
  cairo_destroy(cr);
  cairo_surface_destroy(surface);
  return png;
}

void registerTileRoutes(httplib::Server& server, std::shared_ptr<const TileMap> map, std::size_t cacheTiles) {
  auto cache = std::make_shared<TileCache>(cacheTiles);
  server.Get(R"(/tiles/([^/]{1,32})/([^/]{1,32})/([^/]{1,32})\.png)", [map, cache](const httplib::Request& req,
                                                                               httplib::Response& res) {
    const auto refuse = [&](const std::string& why) {
      res.status = 400;
      res.set_content(why + "\n", "text/plain; charset=utf-8");
    };
    const auto z = tileNumber(req.matches[1].str(), kMaxTileZoom);
    if (!z) return refuse("the zoom must be a whole number from 0 to " + std::to_string(kMaxTileZoom));
    const int64_t last = (int64_t{1} << *z) - 1;
    const auto x = tileNumber(req.matches[2].str(), last);
    const auto y = tileNumber(req.matches[3].str(), last);
    if (!x || !y) return refuse("at zoom " + std::to_string(*z) + " x and y are whole numbers from 0 to " +
                                std::to_string(last));
    const std::string key = std::to_string(*z) + "/" + std::to_string(*x) + "/" + std::to_string(*y);
    auto tile = cache->find(key);
    if (!tile) {
      TileCache::Tile drawn;
      drawn.png = map->draw(static_cast<int>(*z), static_cast<int>(*x), static_cast<int>(*y));
      drawn.etag = "\"" + StringUtil::getmd5WithString(drawn.png) + "\"";
      cache->put(key, drawn);
      tile = std::move(drawn);
    }
    res.set_header("ETag", tile->etag);
    res.set_header("Cache-Control", kCacheControl);
    const std::string wanted = req.get_header_value("If-None-Match");
    if (!wanted.empty() && (wanted.find(tile->etag) != std::string::npos || wanted == "*")) {
      res.status = 304;
      return;
    }
    res.set_content(std::move(tile->png), "image/png");
  });
}

}  // namespace qmv::sandbox
