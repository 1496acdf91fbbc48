#pragma once
// The state behind ImageLoader, shared with its tickets (weakly) and with the work and
// transfers in flight, so that anything arriving after the loader is gone is dropped.
#include <deque>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <utility>

#include "core/common/result.h"
#include "core/images/disk_image_cache.h"
#include "core/images/image_loader.h"
#include "core/images/memory_image_cache.h"
#include "platform/http_transport.h"

namespace qmv {

class ImageLoaderCore : public std::enable_shared_from_this<ImageLoaderCore> {
 public:
  ImageLoaderCore(std::shared_ptr<MainLoop> loop, std::shared_ptr<HttpTransport> http, std::shared_ptr<WorkQueue> work,
                  std::shared_ptr<const ImageDecoder> decoder, std::shared_ptr<DiskImageCache> disk,
                  std::shared_ptr<const Clock> clock, ImageLoaderOptions options);
  ~ImageLoaderCore();

  std::uint64_t load(const std::string& url, ImageSize box, ImageLoader::Callback callback);
  void cancel(std::uint64_t id);
  // The bytes the disk cache holds for `url`.
  std::optional<std::string> cachedBytes(const std::string& url) { return disk_->read(diskKey(url)); }
  void forget(const std::string& url) {
    memory_.removeUrl(url);
    disk_->remove(diskKey(url));
  }

 private:
  using Box = std::pair<int, int>;
  struct Waiter {
    std::string url;
    ImageSize box;
    ImageLoader::Callback callback;
  };
  // Network bytes are kept on disk only once one of their decodes has succeeded.
  struct PendingStore;
  struct Fetch {
    std::uint64_t generation = 0;
    std::set<std::uint64_t> waiters;
    std::optional<TransferId> transfer;
    bool queued = false;
    std::optional<DiskImageEntry> kept;  // the disk entry being revalidated
    std::shared_ptr<const std::string> bytes;
    ImageSource source = ImageSource::kNetwork;
    std::set<Box> decoding;
    std::shared_ptr<PendingStore> store;
  };

  void start(const std::string& url, Fetch& fetch);
  void readKept(const std::string& url, Fetch& fetch);
  void requestNetwork(const std::string& url, Fetch& fetch);
  void sendNext();
  void onResponse(const std::string& url, std::uint64_t generation, HttpResponse response);
  void onBytes(const std::string& url, std::uint64_t generation, std::shared_ptr<const std::string> bytes,
               ImageSource source);
  void decode(const std::string& url, Fetch& fetch, ImageSize box);
  void onDecoded(const std::string& url, std::uint64_t generation, ImageSize box, Result<DecodedImage> result);
  void failAll(const std::string& url, ImageLoadError error, const std::string& message);
  void deliver(std::uint64_t id, const ImageOutcome& outcome);
  void finishIfIdle(const std::string& url);
  Fetch* fetchOf(const std::string& url, std::uint64_t generation);
  // Under which name the disk cache keeps `url`.
  std::string diskKey(const std::string& url) const;

  std::shared_ptr<MainLoop> loop_;
  std::shared_ptr<HttpTransport> http_;
  std::shared_ptr<WorkQueue> work_;
  std::shared_ptr<const ImageDecoder> decoder_;
  std::shared_ptr<DiskImageCache> disk_;
  std::shared_ptr<const Clock> clock_;
  ImageLoaderOptions options_;
  MemoryImageCache memory_;
  std::map<std::uint64_t, Waiter> waiters_;
  std::map<std::string, Fetch> fetches_;
  std::deque<std::string> queue_;  // URLs waiting for a transfer slot, newest last
  int transfers_ = 0;
  std::uint64_t nextId_ = 0;
  std::uint64_t nextGeneration_ = 0;
};

}  // namespace qmv
