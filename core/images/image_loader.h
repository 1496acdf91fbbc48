#pragma once
// Pictures by URL for the screens: memory first, then the disk cache, then the network
// (one transfer per URL however many screens wait, a few at once). A disk entry past its
// expiry is revalidated with a conditional GET before use; a 304 keeps its bytes, and when
// the server cannot be reached the kept bytes are used anyway. Decoding and scaling run
// on the work queue; every callback runs later on the main loop, never inside load().
// Bytes that are not a picture, too large or damaged end in an error and are never cached.
// Interface thread only.
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "core/common/decoded_image.h"
#include "core/images/image_outcome.h"
#include "core/images/image_ticket.h"

namespace qmv {

class Clock;
class HttpTransport;
class ImageDecoder;
class MainLoop;
class WorkQueue;
struct Env;

struct ImageLoaderOptions {
  std::size_t memoryBytes = std::size_t{8} << 20;
  std::size_t diskBytes = std::size_t{64} << 20;
  int maxTransfers = 4;
  ImageLimits limits;  // also the cap on a response body
  std::chrono::milliseconds timeout{15000};
  // Freshness of an answer that names none (no max-age).
  std::int64_t defaultFreshSeconds = 24 * 3600;
  // The object store's base URL. Its pictures are kept on disk under their address without
  // the port, so that a store reached at another port (the embedded sandbox takes a new one
  // on each start) still finds what it kept.
  std::string objectStoreBase;
};

class ImageLoader {
 public:
  using Callback = std::function<void(ImageOutcome)>;

  ImageLoader(std::shared_ptr<MainLoop> loop, std::shared_ptr<HttpTransport> http, std::shared_ptr<WorkQueue> work,
              std::shared_ptr<const ImageDecoder> decoder, std::filesystem::path directory,
              std::shared_ptr<const Clock> clock, ImageLoaderOptions options = {});
  // From the environment's ports, caching under <caches>/images/.
  ImageLoader(const Env& env, std::shared_ptr<WorkQueue> work, ImageLoaderOptions options = {});
  ~ImageLoader();
  ImageLoader(const ImageLoader&) = delete;
  ImageLoader& operator=(const ImageLoader&) = delete;

  // `box` empty: the picture at its own size; else shrunk to fit in it, proportions kept.
  [[nodiscard]] ImageTicket load(const std::string& url, ImageSize box, Callback callback);

  // The bytes the disk cache holds for `url` as the server sent them.
  std::optional<std::string> cachedBytes(const std::string& url);
  // Drops what memory and disk keep for `url`, so that the next load asks the server.
  void forget(const std::string& url);

 private:
  std::shared_ptr<ImageLoaderCore> core_;
};

}  // namespace qmv
