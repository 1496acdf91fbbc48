#pragma once
// Deployment values: server base URL, object-storage host, vendor ids and keys, the URL
// scheme. They come from <home>/qmv.conf and from command-line options, never from code;
// the repository holds no real vendor value. The file is "key = value" lines; "#" starts
// a comment. An unknown key or a malformed line is reported, not fatal.
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "shell/shell_texts.h"

namespace qmv {

// Where a map's base layer comes from: a URL template with {z}, {x} and {y} for a
// 256-pixel Web Mercator tile, and the credit the map shows for it.
struct MapTiles {
  std::string urlTemplate;
  std::string attribution;
  // Names the tiles' disk cache; empty: named after the template. The embedded sandbox's
  // port changes every start while its tiles do not, so it keeps one name.
  std::string cacheName;

  // The template with every {z}, {x} and {y} replaced by the tile's numbers.
  std::string urlFor(int z, long x, long y) const;
};

// The public OpenStreetMap tile server, the map's base layer when nothing else is set.
inline constexpr const char* kDefaultTileUrl = "https://tile.openstreetmap.org/{z}/{x}/{y}.png";

struct AppConfig {
  // Empty: no server configured (the CLI then embeds the sandbox).
  std::string serverBaseUrl;
  std::string productionServer;  // behind "正式环境" of the server switch
  std::string testServer;        // behind "测试环境"
  std::string objectStorageHost;
  std::string welcomeImageUrl;  // the remote "welcome.png"; see welcomeImage()
  std::string webHost;          // root of the server-hosted pages
  // "map_tile_url" (only an http or https URL with {z}, {x} and {y} is taken) and
  // "map_tile_attribution"; empty: see mapTiles().
  std::string mapTileUrl;
  std::string mapTileAttribution;
  std::string mapTileCacheName;  // not a setting: see MapTiles::cacheName
  std::string crashReporterAppId;
  std::string pushAppKey;
  std::string analyticsAppKey;
  std::string wechatAppId;
  std::string wechatPartnerId;
  std::string wechatApiKey;
  std::string shareAppKey;
  std::string urlScheme = "qqqmmmvvv";
  // Bytes an answer may take before its request fails; 0 keeps the request layer's
  // default (HttpRequest::kDefaultMaxResponseBytes).
  std::size_t maxResponseBytes = 0;

  // Reads the text of a configuration file named `name`; empty text gives the defaults.
  // Problems are appended to `warnings` as "NAME:LINE: what" texts.
  static AppConfig parse(std::string_view text, const std::string& name, std::vector<std::string>* warnings = nullptr);

  // Applies one "key = value" setting; false for an unknown key, for
  // "max_response_bytes" a value that is not a positive byte count, and for
  // "map_tile_url" one that isTileUrlTemplate refuses (the setting is then left as it was).
  bool set(const std::string& key, const std::string& value);

  // An http or https URL with a host and each of {z}, {x} and {y}.
  static bool isTileUrlTemplate(const std::string& url);

  // The configured tile server, else the public OpenStreetMap one with its credit.
  MapTiles mapTiles() const;

  // The launch image's URL: welcomeImageUrl when configured, else "welcome.png" on the
  // object-storage host; empty when neither is known.
  std::string welcomeImage() const;
};

}  // namespace qmv
