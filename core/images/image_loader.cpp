#include "core/images/image_loader.h"

#include <utility>

#include "core/images/image_loader_core.h"
#include "platform/env.h"
#include "platform/file_locations.h"

namespace qmv {

ImageLoader::ImageLoader(std::shared_ptr<MainLoop> loop, std::shared_ptr<HttpTransport> http,
                         std::shared_ptr<WorkQueue> work, std::shared_ptr<const ImageDecoder> decoder,
                         std::filesystem::path directory, std::shared_ptr<const Clock> clock,
                         ImageLoaderOptions options)
    : core_(std::make_shared<ImageLoaderCore>(
          std::move(loop), std::move(http), std::move(work), std::move(decoder),
          std::make_shared<DiskImageCache>(std::move(directory), options.diskBytes, clock), clock, options)) {}

ImageLoader::ImageLoader(const Env& env, std::shared_ptr<WorkQueue> work, ImageLoaderOptions options)
    : ImageLoader(env.mainLoop, env.http, std::move(work), env.imageDecoder, env.files->cachesDirectory() / "images",
                  env.clock, options) {}

ImageLoader::~ImageLoader() = default;

ImageTicket ImageLoader::load(const std::string& url, ImageSize box, Callback callback) {
  return ImageTicket(core_, core_->load(url, box, std::move(callback)));
}

std::optional<std::string> ImageLoader::cachedBytes(const std::string& url) { return core_->cachedBytes(url); }

void ImageLoader::forget(const std::string& url) { core_->forget(url); }

}  // namespace qmv
