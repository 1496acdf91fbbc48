#include "apps/sandbox/map_tiles.h"

#include <cmath>
#include <map>

#include "apps/sandbox/sandbox_test_support.h"
#include "core/common/resource_directory.h"
#include "platform/codecs/image_codecs.h"

namespace qmv::sandbox::testing {
namespace {

using MapTilesTest = SandboxTest;

// The tile of zoom `z` that holds the WGS-84 point (lat, lng), as "z/x/y".
std::string tileAt(int z, double lat, double lng) {
  const double n = std::ldexp(1.0, z);
  const double phi = lat * M_PI / 180;
  const int x = static_cast<int>((lng + 180) / 360 * n);
  const int y = static_cast<int>((1 - std::asinh(std::tan(phi)) / M_PI) / 2 * n);
  return std::to_string(z) + "/" + std::to_string(x) + "/" + std::to_string(y);
}

// How many pixels of each colour a 256x256 PNG has; empty when it is not one.
std::map<uint32_t, int> coloursOf(const std::string& png) {
  std::map<uint32_t, int> colours;
  const auto image = decodeImage(png, {});
  if (!image.ok() || image->width != kTileSide || image->height != kTileSide) return colours;
  for (int y = 0; y < image->height; ++y) {
    const auto* row = reinterpret_cast<const unsigned char*>(image->pixels.data()) + y * image->stride;
    for (int x = 0; x < image->width; ++x) {
      const unsigned char* p = row + x * 4;
      ++colours[(uint32_t{p[0]} << 24) | (uint32_t{p[1]} << 16) | (uint32_t{p[2]} << 8) | p[3]];
    }
  }
  return colours;
}

TEST_F(MapTilesTest, TilesDrawTheCityAndAPlainBackgroundElsewhere) {
  httplib::Client& http = api_->raw();
  // Over 临沂 (the demo stores' city) at a city's and a street's zoom; far out at sea.
  const std::string city = "/tiles/" + tileAt(10, 35.06, 118.34) + ".png";
  const std::string street = "/tiles/" + tileAt(16, 35.09, 118.35) + ".png";
  const std::string sea = "/tiles/" + tileAt(10, 0.5, -150.0) + ".png";
  const auto cityTile = http.Get(city);
  const auto streetTile = http.Get(street);
  const auto seaTile = http.Get(sea);
  ASSERT_TRUE(cityTile && streetTile && seaTile);
  for (const auto* res : {&cityTile, &streetTile, &seaTile}) {
    EXPECT_EQ((*res)->status, 200);
    EXPECT_EQ((*res)->get_header_value("Content-Type"), "image/png");
  }
  const auto cityColours = coloursOf(cityTile->body);
  const auto seaColours = coloursOf(seaTile->body);
  ASSERT_FALSE(cityColours.empty()) << "a 256x256 PNG";
  ASSERT_EQ(seaColours.size(), 1u) << "outside the data: one plain colour";
  // Fills, lines and names: many colours, and the background is not most of it.
  EXPECT_GT(cityColours.size(), 20u);
  const auto background = seaColours.begin()->first;
  EXPECT_LT(cityColours.count(background) ? cityColours.at(background) : 0, kTileSide * kTileSide / 2);
  // Inside a county at a street's zoom: its fill, not the background.
  const auto streetColours = coloursOf(streetTile->body);
  ASSERT_FALSE(streetColours.empty());
  EXPECT_EQ(streetColours.count(background), 0u);

  // Kept by the client with its ETag.
  const std::string etag = cityTile->get_header_value("ETag");
  EXPECT_FALSE(etag.empty());
  EXPECT_NE(cityTile->get_header_value("Cache-Control").find("max-age"), std::string::npos);
  const auto again = http.Get(city, {{"If-None-Match", etag}});
  ASSERT_TRUE(again);
  EXPECT_EQ(again->status, 304);
  EXPECT_EQ(http.Get(city)->body, cityTile->body) << "the same tile from the cache";
}

TEST_F(MapTilesTest, HostileTileAddressesAreRefusedWithoutDrawing) {
  httplib::Client& http = api_->raw();
  const struct {
    const char* path;
    int status;
  } cases[] = {
      {"/tiles/20/0/0.png", 400},           {"/tiles/5/32/0.png", 400},
      {"/tiles/5/0/32.png", 400},           {"/tiles/5/-1/0.png", 400},
      {"/tiles/5/+1/0.png", 400},           {"/tiles/a/b/c.png", 400},
      {"/tiles/5/%2e%2e/1.png", 400},       {"/tiles/5/1e3/1.png", 400},
      {"/tiles/99999999999999999999/0/0.png", 400}, {"/tiles/19/524288/0.png", 400},
      {"/tiles/1/0.png", 404},              {"/tiles/1/0/0/0.png", 404},
      {"/tiles/1/0/0.jpg", 404},            {"/tiles/19/524287/524287.png", 200},
      {"/tiles/0/0/0.png", 200},
  };
  for (const auto& c : cases) {
    const auto res = http.Get(c.path);
    ASSERT_TRUE(res) << c.path;
    EXPECT_EQ(res->status, c.status) << c.path;
    if (c.status == 200) {
      EXPECT_FALSE(coloursOf(res->body).empty()) << c.path;
    }
  }
}

TEST(TileMap, WithoutItsDatabaseEveryTileIsThePlainBackground) {
  const TileMap missing("/nonexistent/map.db");
  EXPECT_EQ(missing.areaCount(), 0u);
  EXPECT_EQ(coloursOf(missing.draw(10, 851, 403)).size(), 1u);
  const TileMap shipped(defaultResourceDirectory() / "map.db");
  EXPECT_GT(shipped.areaCount(), 100u) << "Shandong's cities and counties";
}

}  // namespace
}  // namespace qmv::sandbox::testing
