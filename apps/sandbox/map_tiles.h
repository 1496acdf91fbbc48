#pragma once
// GET /tiles/<z>/<x>/<y>.png: the sandbox's own map, 256-pixel tiles in the Web Mercator
// scheme every web map uses, drawn from the shipped map.db (county and city outlines
// of the province the demo world lies in, WGS-84, with where each name goes): land
// background, counties in gentle fills, county lines, stronger city outlines, and the
// names that fit the zoom. A tile outside the data is the plain background. Zoom 0..19,
// x and y within 0..2^z-1; anything else is a 400 with the reason, never drawn. Drawn
// tiles are kept in a bounded cache and answered with ETag and a day's Cache-Control.
#include <cstddef>
#include <filesystem>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "apps/sandbox/sandbox_texts.h"

namespace httplib {
class Server;
}

namespace qmv::sandbox {

inline constexpr int kTileSide = 256;
inline constexpr int kMaxTileZoom = 19;
// The route in the form map clients take: {z}, {x} and {y} stand for the tile.
inline constexpr const char* kTileRoute = "/tiles/{z}/{x}/{y}.png";

class TileMap {
 public:
  // The database is read on the first tile drawn; a missing or unreadable one leaves the
  // map empty (every tile the plain background) and says so once on stderr.
  explicit TileMap(std::filesystem::path database);
  ~TileMap();
  TileMap(const TileMap&) = delete;
  TileMap& operator=(const TileMap&) = delete;

  // The PNG of tile (z, x, y). REQUIRES: 0 <= z <= kMaxTileZoom, 0 <= x, y < 2^z.
  std::string draw(int z, int x, int y) const;
  // Areas read (cities and counties); loads the database when not yet done.
  std::size_t areaCount() const;

 private:
  struct Data;
  const Data& data() const;

  std::filesystem::path database_;
  mutable std::once_flag loaded_;
  mutable std::unique_ptr<Data> data_;
};

// `cacheTiles` bounds the drawn tiles kept in memory.
void registerTileRoutes(httplib::Server& server, std::shared_ptr<const TileMap> map, std::size_t cacheTiles = 512);

}  // namespace qmv::sandbox
