#include "core/images/image_loader_core.h"

#include <algorithm>
#include <cctype>
#include <mutex>
#include <vector>

#include "platform/clock.h"
#include "platform/image_decoder.h"
#include "platform/main_loop.h"
#include "platform/work_queue.h"

namespace qmv {
namespace {

std::string lowered(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(), [](unsigned char c) { return std::tolower(c); });
  return text;
}

std::string headerValue(const ResponseHeaders& headers, std::string_view name) {
  for (const auto& [field, value] : headers) {
    if (lowered(field) == name) return value;
  }
  return {};
}

// The object store answers application/octet-stream for everything it keeps.
bool pictureContentType(const std::string& contentType) {
  const std::string type = lowered(contentType.substr(0, contentType.find(';')));
  const auto end = type.find_last_not_of(" \t");
  const std::string bare = end == std::string::npos ? "" : type.substr(0, end + 1);
  return bare.rfind("image/", 0) == 0 || bare == "application/octet-stream";
}

struct Freshness {
  std::int64_t expiresAt = 0;
  bool storable = true;
};

Freshness freshnessOf(const ResponseHeaders& headers, std::int64_t now, std::int64_t defaultSeconds) {
  const std::string control = lowered(headerValue(headers, "cache-control"));
  Freshness freshness{now + defaultSeconds, control.find("no-store") == std::string::npos};
  if (control.find("no-cache") != std::string::npos) {
    freshness.expiresAt = now;
  } else if (const auto at = control.find("max-age="); at != std::string::npos) {
    const char* digits = control.c_str() + at + 8;
    std::int64_t seconds = 0;
    int count = 0;
    while (std::isdigit(static_cast<unsigned char>(*digits)) && count < 12) {
      seconds = seconds * 10 + (*digits++ - '0');
      ++count;
    }
    freshness.expiresAt = now + seconds;
  }
  return freshness;
}

ImageLoadError loadErrorOf(const Status& status) {
  switch (imageErrorOf(status)) {
    case ImageError::kUnsupported: return ImageLoadError::kUnsupported;
    case ImageError::kTooLarge: return ImageLoadError::kTooLarge;
    default: return ImageLoadError::kCorrupt;
  }
}

// The picture shrunk to fit in `box` (its own size when `box` is empty), never enlarged.
Result<DecodedImage> decodeToFit(const ImageDecoder& decoder, const std::string& bytes, const ImageLimits& limits,
                                 ImageSize box) {
  const auto size = decoder.readSize(bytes, limits);
  if (!size.ok()) return size.status();
  ImageSize target = *size;
  if (!box.empty()) {
    const double scale = std::min({1.0, static_cast<double>(box.width) / size->width,
                                   static_cast<double>(box.height) / size->height});
    target = {std::max(1, static_cast<int>(size->width * scale + 0.5)),
              std::max(1, static_cast<int>(size->height * scale + 0.5))};
  }
  return decoder.decode(bytes, limits, target);
}

}  // namespace

struct ImageLoaderCore::PendingStore {
  std::once_flag once;
  std::string key;
  std::shared_ptr<const std::string> bytes;
  DiskImageEntry validators;
  void commit(DiskImageCache& disk) {
    std::call_once(once, [&] { disk.store(key, *bytes, validators); });
  }
};

ImageLoaderCore::ImageLoaderCore(std::shared_ptr<MainLoop> loop, std::shared_ptr<HttpTransport> http,
                                 std::shared_ptr<WorkQueue> work, std::shared_ptr<const ImageDecoder> decoder,
                                 std::shared_ptr<DiskImageCache> disk, std::shared_ptr<const Clock> clock,
                                 ImageLoaderOptions options)
    : loop_(std::move(loop)),
      http_(std::move(http)),
      work_(std::move(work)),
      decoder_(std::move(decoder)),
      disk_(std::move(disk)),
      clock_(std::move(clock)),
      options_(options),
      memory_(options.memoryBytes) {}

ImageLoaderCore::~ImageLoaderCore() {
  for (const auto& [url, fetch] : fetches_) {
    if (fetch.transfer) http_->cancel(*fetch.transfer);
  }
}

std::uint64_t ImageLoaderCore::load(const std::string& url, ImageSize box, ImageLoader::Callback callback) {
  const std::uint64_t id = ++nextId_;
  waiters_[id] = {url, box, std::move(callback)};
  const std::weak_ptr<ImageLoaderCore> weak = weak_from_this();
  if (!decoder_ || !work_) {
    ImageOutcome outcome;
    outcome.error = ImageLoadError::kUnavailable;
    outcome.message = "pictures are not available here";
    loop_->post([weak, id, outcome] {
      if (const auto core = weak.lock()) core->deliver(id, outcome);
    });
    return id;
  }
  if (auto image = memory_.find(url, box)) {
    loop_->post([weak, id, image] {
      if (const auto core = weak.lock()) core->deliver(id, ImageOutcome{image, ImageSource::kMemory, {}, {}});
    });
    return id;
  }
  auto [found, created] = fetches_.try_emplace(url);
  Fetch& fetch = found->second;
  fetch.waiters.insert(id);
  if (created) {
    fetch.generation = ++nextGeneration_;
    start(url, fetch);
  } else if (fetch.bytes && !fetch.decoding.count({box.width, box.height})) {
    decode(url, fetch, box);
  }
  return id;
}

std::string ImageLoaderCore::diskKey(const std::string& url) const {
  const std::string& base = options_.objectStoreBase;
  if (base.empty() || url.compare(0, base.size(), base) != 0) return url;
  // scheme://host[:port]/... with the port left out.
  const std::size_t scheme = url.find("://");
  if (scheme == std::string::npos) return url;
  const std::size_t authority = scheme + 3;
  const std::size_t path = std::min(url.find('/', authority), url.size());
  const std::size_t colon = url.rfind(':', path);
  if (colon == std::string::npos || colon < authority || url.find(']', colon) < path) return url;
  return url.substr(0, colon) + url.substr(path);
}

void ImageLoaderCore::cancel(std::uint64_t id) {
  const auto waiter = waiters_.find(id);
  if (waiter == waiters_.end()) return;
  const std::string url = waiter->second.url;
  waiters_.erase(waiter);
  const auto fetch = fetches_.find(url);
  if (fetch == fetches_.end()) return;
  fetch->second.waiters.erase(id);
  finishIfIdle(url);
}

void ImageLoaderCore::start(const std::string& url, Fetch& fetch) {
  const auto kept = disk_->lookup(diskKey(url));
  if (kept && disk_->fresh(*kept)) {
    readKept(url, fetch);
    return;
  }
  fetch.kept = kept;
  requestNetwork(url, fetch);
}

void ImageLoaderCore::readKept(const std::string& url, Fetch& fetch) {
  work_->run([disk = disk_, loop = loop_, weak = weak_from_this(), url, key = diskKey(url),
              generation = fetch.generation] {
    auto bytes = disk->read(key);
    auto shared = bytes ? std::make_shared<const std::string>(std::move(*bytes)) : nullptr;
    loop->post([weak, url, generation, shared] {
      if (const auto core = weak.lock()) core->onBytes(url, generation, shared, ImageSource::kDisk);
    });
  });
}

void ImageLoaderCore::requestNetwork(const std::string& url, Fetch& fetch) {
  fetch.queued = true;
  queue_.push_back(url);
  sendNext();
}

void ImageLoaderCore::sendNext() {
  while (transfers_ < options_.maxTransfers && !queue_.empty()) {
    const std::string url = queue_.back();
    queue_.pop_back();
    const auto found = fetches_.find(url);
    if (found == fetches_.end() || !found->second.queued) continue;
    Fetch& fetch = found->second;
    fetch.queued = false;
    HttpRequest request;
    request.url = url;
    request.timeout = options_.timeout;
    request.maxResponseBytes = options_.limits.maxBytes;
    if (fetch.kept && !fetch.kept->etag.empty()) request.headers.emplace_back("If-None-Match", fetch.kept->etag);
    if (fetch.kept && !fetch.kept->lastModified.empty()) {
      request.headers.emplace_back("If-Modified-Since", fetch.kept->lastModified);
    }
    ++transfers_;
    fetch.transfer = http_->send(std::move(request), [weak = weak_from_this(), url, generation = fetch.generation](
                                                         HttpResponse response) {
      if (const auto core = weak.lock()) core->onResponse(url, generation, std::move(response));
    });
  }
}

void ImageLoaderCore::onResponse(const std::string& url, std::uint64_t generation, HttpResponse response) {
  --transfers_;
  Fetch* fetch = fetchOf(url, generation);
  if (fetch) fetch->transfer.reset();
  sendNext();
  if (!fetch) return;
  if (response.error == TransportError::tooLarge) {
    failAll(url, ImageLoadError::kTooLarge, "the picture is larger than the limit");
    return;
  }
  if (response.error != TransportError::none || (response.status != 200 && response.status != 304)) {
    // Out of reach or refusing: a kept copy, even a stale one, beats a placeholder.
    if (fetch->kept) {
      readKept(url, *fetch);
    } else {
      failAll(url, ImageLoadError::kNetwork,
              response.error != TransportError::none ? response.errorMessage
                                                      : "HTTP " + std::to_string(response.status));
    }
    return;
  }
  const std::int64_t now = clock_->unixSeconds();
  const Freshness freshness = freshnessOf(response.headers, now, options_.defaultFreshSeconds);
  if (response.status == 304) {
    if (!fetch->kept) {
      failAll(url, ImageLoadError::kNetwork, "HTTP 304 for a picture not kept");
      return;
    }
    disk_->refresh(diskKey(url), headerValue(response.headers, "etag"), headerValue(response.headers, "last-modified"),
                   freshness.expiresAt);
    readKept(url, *fetch);
    return;
  }
  const std::string contentType = headerValue(response.headers, "content-type");
  if (!pictureContentType(contentType)) {
    failAll(url, ImageLoadError::kContentType, "not a picture: " + contentType.substr(0, 64));
    return;
  }
  if (response.body.size() > options_.limits.maxBytes) {
    failAll(url, ImageLoadError::kTooLarge, "the picture is larger than the limit");
    return;
  }
  auto bytes = std::make_shared<const std::string>(std::move(response.body));
  fetch->kept.reset();
  memory_.removeUrl(url);
  if (freshness.storable) {
    fetch->store = std::make_shared<PendingStore>();
    fetch->store->key = diskKey(url);
    fetch->store->bytes = bytes;
    fetch->store->validators.etag = headerValue(response.headers, "etag");
    fetch->store->validators.lastModified = headerValue(response.headers, "last-modified");
    fetch->store->validators.expiresAt = freshness.expiresAt;
  }
  onBytes(url, generation, std::move(bytes), ImageSource::kNetwork);
}

void ImageLoaderCore::onBytes(const std::string& url, std::uint64_t generation,
                              std::shared_ptr<const std::string> bytes, ImageSource source) {
  Fetch* fetch = fetchOf(url, generation);
  if (!fetch) return;
  if (!bytes) {
    // The kept copy was damaged and has been removed.
    if (fetch->kept) {
      failAll(url, ImageLoadError::kCorrupt, "the kept copy cannot be read");
    } else {
      requestNetwork(url, *fetch);
    }
    return;
  }
  fetch->bytes = std::move(bytes);
  fetch->source = source;
  std::set<Box> boxes;
  for (const auto id : fetch->waiters) {
    const ImageSize box = waiters_.at(id).box;
    boxes.insert({box.width, box.height});
  }
  for (const auto& [width, height] : boxes) decode(url, *fetch, {width, height});
}

void ImageLoaderCore::decode(const std::string& url, Fetch& fetch, ImageSize box) {
  fetch.decoding.insert({box.width, box.height});
  work_->run([decoder = decoder_, disk = disk_, loop = loop_, weak = weak_from_this(), url,
              generation = fetch.generation, box, bytes = fetch.bytes, store = fetch.store,
              limits = options_.limits] {
    auto result = std::make_shared<Result<DecodedImage>>(decodeToFit(*decoder, *bytes, limits, box));
    if (result->ok() && store) store->commit(*disk);
    loop->post([weak, url, generation, box, result] {
      if (const auto core = weak.lock()) core->onDecoded(url, generation, box, std::move(*result));
    });
  });
}

void ImageLoaderCore::onDecoded(const std::string& url, std::uint64_t generation, ImageSize box,
                                Result<DecodedImage> result) {
  Fetch* fetch = fetchOf(url, generation);
  if (!fetch) return;
  fetch->decoding.erase({box.width, box.height});
  ImageOutcome outcome;
  outcome.source = fetch->source;
  if (result.ok()) {
    outcome.image = std::make_shared<const DecodedImage>(std::move(result).value());
    memory_.insert(url, box, outcome.image);
  } else {
    outcome.error = loadErrorOf(result.status());
    outcome.message = result.status().message();
    // Kept bytes that no longer decode are of no use to the next screen either.
    if (fetch->source == ImageSource::kDisk) disk_->remove(diskKey(url));
  }
  std::vector<std::uint64_t> ids;
  for (const auto id : fetch->waiters) {
    if (waiters_.at(id).box == box) ids.push_back(id);
  }
  for (const auto id : ids) deliver(id, outcome);
  finishIfIdle(url);
}

void ImageLoaderCore::failAll(const std::string& url, ImageLoadError error, const std::string& message) {
  const auto found = fetches_.find(url);
  if (found == fetches_.end()) return;
  const std::set<std::uint64_t> ids = std::move(found->second.waiters);
  if (found->second.transfer) http_->cancel(*found->second.transfer);
  fetches_.erase(found);
  for (const auto id : ids) deliver(id, ImageOutcome{nullptr, ImageSource::kNetwork, error, message});
}

void ImageLoaderCore::deliver(std::uint64_t id, const ImageOutcome& outcome) {
  const auto waiter = waiters_.find(id);
  if (waiter == waiters_.end()) return;
  auto callback = std::move(waiter->second.callback);
  const std::string url = waiter->second.url;
  waiters_.erase(waiter);
  if (const auto fetch = fetches_.find(url); fetch != fetches_.end()) fetch->second.waiters.erase(id);
  if (callback) callback(outcome);
}

void ImageLoaderCore::finishIfIdle(const std::string& url) {
  const auto found = fetches_.find(url);
  if (found == fetches_.end() || !found->second.waiters.empty()) return;
  if (found->second.transfer) http_->cancel(*found->second.transfer);
  fetches_.erase(found);
}

ImageLoaderCore::Fetch* ImageLoaderCore::fetchOf(const std::string& url, std::uint64_t generation) {
  const auto found = fetches_.find(url);
  return found != fetches_.end() && found->second.generation == generation ? &found->second : nullptr;
}

}  // namespace qmv
