#pragma once
// Picture bytes as the server sent them, under <caches>/images/. Each entry is two files
// named by the MD5 of its URL: the bytes, and a sidecar "<name>.meta" of text lines (URL,
// ETag, Last-Modified, expiry, size, last use). A sidecar per entry rather than an SQLite
// index: an entry and its metadata then come and go together with one rename each, and a
// damaged sidecar costs one entry, not the index. Bytes are written to "<name>.partial"
// and renamed, so a crash leaves no half picture. Bounded in bytes; adding evicts the least
// recently used. Anything that does not add up (sidecar unreadable, size differs) is a
// miss and is removed. Thread-safe: workers read and store while the interface thread looks up.
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

namespace qmv {

class Clock;

struct DiskImageEntry {
  std::string url;
  std::string etag;
  std::string lastModified;
  std::int64_t expiresAt = 0;  // unix seconds; past it the entry is revalidated before use
  std::size_t size = 0;
  std::int64_t lastUse = 0;  // unix seconds
};

class DiskImageCache {
 public:
  DiskImageCache(std::filesystem::path directory, std::size_t capacityBytes, std::shared_ptr<const Clock> clock);

  std::optional<DiskImageEntry> lookup(const std::string& url);
  // The bytes (marking the entry used); a missing or damaged entry is removed.
  std::optional<std::string> read(const std::string& url);
  // Replaces any entry for the URL. False (and nothing kept) when it cannot be written
  // or is larger than the whole cache.
  bool store(const std::string& url, const std::string& bytes, DiskImageEntry validators);
  // After a 304: new validators and expiry for the same bytes.
  void refresh(const std::string& url, const std::string& etag, const std::string& lastModified, std::int64_t expiresAt);
  void remove(const std::string& url);

  std::size_t bytes();
  bool fresh(const DiskImageEntry& entry) const;

 private:
  struct Slot {
    DiskImageEntry entry;
    std::uint64_t tick = 0;  // orders uses within one second
  };
  void loadIndexLocked();
  void removeLocked(std::string name);  // by value: callers pass keys of slots_
  bool writeMetaLocked(const std::string& name, const DiskImageEntry& entry);
  std::filesystem::path bodyPath(const std::string& name) const { return directory_ / name; }
  std::filesystem::path metaPath(const std::string& name) const { return directory_ / (name + ".meta"); }

  std::filesystem::path directory_;
  std::size_t capacity_;
  std::shared_ptr<const Clock> clock_;
  std::mutex mutex_;
  bool loaded_ = false;
  std::map<std::string, Slot> slots_;  // by file name
  std::size_t bytes_ = 0;
  std::uint64_t ticks_ = 0;
};

}  // namespace qmv
