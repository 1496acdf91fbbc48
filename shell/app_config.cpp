#include "shell/app_config.h"

#include <charconv>
#include <map>
#include <sstream>
#include <string_view>
#include <utility>

#include "core/common/string_util.h"
#include "core/common/url_parts.h"

namespace qmv {
namespace {

constexpr const char* kMaxResponseBytesKey = "max_response_bytes";
constexpr const char* kMapTileUrlKey = "map_tile_url";

}  // namespace

bool AppConfig::set(const std::string& key, const std::string& value) {
  static const std::map<std::string, std::string AppConfig::*> kFields = {
      {"server", &AppConfig::serverBaseUrl},
      {"production_server", &AppConfig::productionServer},
      {"test_server", &AppConfig::testServer},
      {"object_storage_host", &AppConfig::objectStorageHost},
      {"welcome_image_url", &AppConfig::welcomeImageUrl},
      {"web_host", &AppConfig::webHost},
      {"map_tile_attribution", &AppConfig::mapTileAttribution},
      {"crash_reporter_app_id", &AppConfig::crashReporterAppId},
      {"push_app_key", &AppConfig::pushAppKey},
      {"analytics_app_key", &AppConfig::analyticsAppKey},
      {"wechat_app_id", &AppConfig::wechatAppId},
      {"wechat_partner_id", &AppConfig::wechatPartnerId},
      {"wechat_api_key", &AppConfig::wechatApiKey},
      {"share_app_key", &AppConfig::shareAppKey},
      {"url_scheme", &AppConfig::urlScheme},
  };
  if (key == kMaxResponseBytesKey) {
    std::size_t bytes = 0;
    const auto [end, ec] = std::from_chars(value.data(), value.data() + value.size(), bytes);
    if (ec != std::errc() || end != value.data() + value.size() || bytes == 0) return false;
    maxResponseBytes = bytes;
    return true;
  }
  if (key == kMapTileUrlKey) {
    if (!isTileUrlTemplate(value)) return false;
    mapTileUrl = value;
    return true;
  }
  const auto it = kFields.find(key);
  if (it == kFields.end()) return false;
  this->*(it->second) = value;
  return true;
}

bool AppConfig::isTileUrlTemplate(const std::string& url) {
  const std::string scheme = qmv::urlScheme(url);
  if ((scheme != "http" && scheme != "https") || urlHost(url).empty()) return false;
  for (const unsigned char c : url) {
    if (c <= ' ' || c == 0x7f) return false;
  }
  for (const char* placeholder : {"{z}", "{x}", "{y}"}) {
    if (url.find(placeholder) == std::string::npos) return false;
  }
  return true;
}

std::string MapTiles::urlFor(int z, long x, long y) const {
  std::string url = urlTemplate;
  const std::pair<const char*, std::string> values[] = {
      {"{z}", std::to_string(z)}, {"{x}", std::to_string(x)}, {"{y}", std::to_string(y)}};
  for (const auto& [placeholder, value] : values) {
    for (auto at = url.find(placeholder); at != std::string::npos; at = url.find(placeholder, at + value.size())) {
      url.replace(at, 3, value);
    }
  }
  return url;
}

MapTiles AppConfig::mapTiles() const {
  if (mapTileUrl.empty()) return {kDefaultTileUrl, shell_texts::kDefaultTileAttribution, ""};
  return {mapTileUrl, mapTileAttribution, mapTileCacheName};
}

std::string AppConfig::welcomeImage() const {
  if (!welcomeImageUrl.empty() || objectStorageHost.empty()) return welcomeImageUrl;
  std::string host = objectStorageHost;
  while (!host.empty() && host.back() == '/') host.pop_back();
  return host + "/welcome.png";
}

AppConfig AppConfig::parse(std::string_view text, const std::string& name, std::vector<std::string>* warnings) {
  AppConfig config;
  std::istringstream in{std::string(text)};
  const auto warn = [&](int line, const std::string& what) {
    if (warnings) warnings->push_back(name + ":" + std::to_string(line) + ": " + what);
  };
  std::string raw;
  for (int line = 1; std::getline(in, raw); ++line) {
    const std::string text(trimmed(raw));
    if (text.empty() || text.front() == '#') continue;
    const auto eq = text.find('=');
    if (eq == std::string::npos) {
      warn(line, "expected key = value");
      continue;
    }
    const std::string key(trimmed(std::string_view(text).substr(0, eq)));
    if (!config.set(key, std::string(trimmed(std::string_view(text).substr(eq + 1))))) {
      warn(line, key == kMaxResponseBytesKey ? "expected a positive byte count"
                 : key == kMapTileUrlKey
                     ? "expected an http or https URL with {z}, {x} and {y}; the map keeps its default tiles"
                     : "unknown key \"" + key + "\"");
    }
  }
  return config;
}

}  // namespace qmv
