#include "shell/app_config.h"

#include <gtest/gtest.h>

namespace qmv {
namespace {

TEST(AppConfigTest, ReadsKnownKeysAndReportsBadLines) {
  const std::string text =
      "# deployment\n"
      "server = http://10.0.0.1:8080/qmv/app/v3/ \n"
      "wechat_app_id=wx-test\n"
      "no equals sign here\n"
      "colour = blue\n"
      "url_scheme = custom=scheme\n"
      "max_response_bytes = 4096\n"
      "max_response_bytes = -1\n";
  std::vector<std::string> warnings;
  const AppConfig config = AppConfig::parse(text, "qmv.conf", &warnings);
  EXPECT_EQ(config.serverBaseUrl, "http://10.0.0.1:8080/qmv/app/v3/");
  EXPECT_EQ(config.wechatAppId, "wx-test");
  EXPECT_EQ(config.urlScheme, "custom=scheme");  // only the first "=" splits
  EXPECT_EQ(config.maxResponseBytes, 4096u);
  ASSERT_EQ(warnings.size(), 3u);
  EXPECT_EQ(warnings[0], "qmv.conf:4: expected key = value");
  EXPECT_NE(warnings[1].find("unknown key \"colour\""), std::string::npos);
  EXPECT_NE(warnings[2].find(":8: expected a positive byte count"), std::string::npos);

  const AppConfig missing = AppConfig::parse("", "qmv.conf", &warnings);
  EXPECT_TRUE(missing.serverBaseUrl.empty());
  EXPECT_EQ(missing.urlScheme, "qqqmmmvvv");
}

TEST(AppConfigTest, MapTilesComeFromAValidTemplateElseTheDefaultServer) {
  std::vector<std::string> warnings;
  const AppConfig defaults = AppConfig::parse("", "qmv.conf", &warnings);
  EXPECT_EQ(defaults.mapTiles().urlTemplate, kDefaultTileUrl);
  EXPECT_EQ(defaults.mapTiles().attribution, shell_texts::kDefaultTileAttribution);

  const AppConfig configured = AppConfig::parse(
      "map_tile_url = https://tiles.test/{z}/{x}/{y}.png\nmap_tile_attribution = © Test\n"
      "map_tile_url = ftp://tiles.test/{z}/{x}/{y}.png\n",
      "qmv.conf", &warnings);
  EXPECT_EQ(configured.mapTiles().urlTemplate, "https://tiles.test/{z}/{x}/{y}.png") << "a bad line keeps the good one";
  EXPECT_EQ(configured.mapTiles().attribution, "© Test");
  ASSERT_EQ(warnings.size(), 1u);
  EXPECT_NE(warnings[0].find("qmv.conf:3: expected an http or https URL with {z}, {x} and {y}"), std::string::npos);

  for (const char* bad : {"", "tiles.test/{z}/{x}/{y}.png", "javascript://{z}/{x}/{y}", "http:///{z}/{x}/{y}",
                          "https://tiles.test/{z}/{x}.png", "https://tiles.test/{z}/{x}/{Y}.png",
                          "https://tiles.test/{z}/{x}/{y}.png?a=b c"}) {
    EXPECT_FALSE(AppConfig::isTileUrlTemplate(bad)) << bad;
  }
  EXPECT_TRUE(AppConfig::isTileUrlTemplate("http://127.0.0.1:8080/tiles/{z}/{x}/{y}.png"));
}

}  // namespace
}  // namespace qmv
