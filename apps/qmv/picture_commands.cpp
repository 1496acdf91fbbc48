// One picture through the client's image loader: where it came from (memory, disk or
// network) and its decoded size; --out saves the bytes as the server sent them, or the
// decoded picture as PNG when the server asked for its bytes not to be kept. --tile Z/X/Y
// takes the picture from the maps' tile server instead of a URL.
#include <fstream>
#include <iostream>
#include <memory>
#include <optional>
#include <regex>
#include <string>

#include "apps/qmv/cli_app.h"
#include "apps/qmv/cli_flow.h"
#include "apps/qmv/command_registry.h"
#include "core/images/image_loader.h"
#include "core/images/image_texts.h"
#include "platform/env.h"
#include "platform/image_decoder.h"
#include "shell/app_config.h"

namespace qmv::cli {
namespace {

struct PictureOptions {
  std::string url;
  std::string out;
  std::string tile;
  int width = 0;
};

// The tile template with "Z/X/Y" put in; empty when `tile` is not three numbers.
std::string tileUrl(const MapTiles& tiles, const std::string& tile) {
  static const std::regex numbers(R"(([0-9]{1,2})/([0-9]{1,7})/([0-9]{1,7}))");
  std::smatch m;
  if (!std::regex_match(tile, m, numbers)) return {};
  return tiles.urlFor(std::stoi(m[1].str()), std::stol(m[2].str()), std::stol(m[3].str()));
}

// A name without a scheme is an object in the application's object store.
std::string absoluteUrl(CliApp& app, const std::string& url) {
  if (url.find("://") != std::string::npos || app.config().objectStorageHost.empty()) return url;
  return app.config().objectStorageHost + (url.front() == '/' ? "" : "/") + url;
}

int runPicture(CliApp& app, const PictureOptions& options) {
  const MapTiles tiles = app.config().mapTiles();
  if (!options.tile.empty() && !options.url.empty()) {
    std::cerr << "picture: give a URL or --tile, not both\n";
    return kExitUsage;
  }
  std::string url;
  if (!options.tile.empty()) {
    url = tileUrl(tiles, options.tile);
    if (url.empty()) return failWith("picture: --tile expects Z/X/Y, three whole numbers");
  } else {
    if (options.url.empty()) return failWith("picture: an empty URL");
    url = absoluteUrl(app, options.url);
  }
  ImageLoader& loader = app.pictures();
  // --size is a width: the height follows from the picture's proportions.
  const ImageSize box = options.width > 0 ? ImageSize{options.width, ImageLimits{}.maxSide} : ImageSize{};
  std::optional<ImageOutcome> outcome;
  const ImageTicket ticket = loader.load(url, box, [&outcome](ImageOutcome o) { outcome = std::move(o); });
  if (!app.waitUntil([&outcome] { return outcome.has_value(); })) return timedOut("the picture");
  if (!outcome->ok()) {
    return failWith(std::string("picture: ") + image_texts::errorKey(outcome->error) + ": " + outcome->message);
  }
  CliOutput& out = app.output();
  const ImageSize size = outcome->image->size();
  out.line(std::string(image_texts::kSourceLabel) + image_texts::sourceWord(outcome->source));
  out.line(std::string(image_texts::kSizeLabel) + std::to_string(size.width) + "×" + std::to_string(size.height));
  out.data("url", url);
  if (!options.tile.empty()) {
    if (!tiles.attribution.empty()) out.line(tiles.attribution);
    out.data("map_tile_url", tiles.urlTemplate);
    out.data("attribution", tiles.attribution);
  }
  out.data("source", image_texts::sourceKey(outcome->source));
  out.data("width", size.width);
  out.data("height", size.height);
  if (options.out.empty()) return kExitOk;
  auto bytes = loader.cachedBytes(url);
  if (!bytes) {
    if (!app.env().imageDecoder) return failWith("picture: no picture encoder here; nothing written");
    auto png = app.env().imageDecoder->encodePng(*outcome->image);
    if (!png.ok()) return failWith("picture: " + png.status().message());
    bytes = std::move(png).value();
    out.line("the server asked for its bytes not to be kept: the decoded picture is written as PNG");
  }
  std::ofstream file(options.out, std::ios::binary | std::ios::trunc);
  file.write(bytes->data(), static_cast<std::streamsize>(bytes->size()));
  file.close();
  if (!file) return failWith("cannot write " + options.out);
  out.line(options.out + " (" + std::to_string(bytes->size()) + " bytes)");
  out.data("file", options.out);
  out.data("bytes", bytes->size());
  return kExitOk;
}

}  // namespace

void registerPictureCommands(CommandRegistry& registry) {
  auto options = std::make_shared<PictureOptions>();
  CLI::App* picture = registry.add("picture", "fetch a picture through the image cache and say where it came from",
                                   [options](CliApp& app) { return runPicture(app, *options); });
  picture->add_option("URL", options->url, "the picture's address, or a name in the object store");
  picture->add_option("--tile", options->tile, "fetch map tile Z/X/Y from the maps' tile server instead of a URL");
  picture->add_option("--out", options->out, "write the picture's original bytes to FILE");
  picture->add_option("--size", options->width, "scale to W pixels wide")->check(CLI::Range(1, 8192));
}

}  // namespace qmv::cli
