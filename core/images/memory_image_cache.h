#pragma once
// Decoded pictures kept for the interface thread, keyed by (URL, box), bounded by the
// bytes of their pixels; the least recently used go first. Interface thread only.
#include <cstddef>
#include <list>
#include <map>
#include <memory>
#include <string>
#include <utility>

#include "core/common/decoded_image.h"

namespace qmv {

class MemoryImageCache {
 public:
  explicit MemoryImageCache(std::size_t capacityBytes) : capacity_(capacityBytes) {}

  // Null when absent; a hit becomes the most recently used.
  std::shared_ptr<const DecodedImage> find(const std::string& url, ImageSize box);
  // A picture larger than the whole capacity is not kept.
  void insert(const std::string& url, ImageSize box, std::shared_ptr<const DecodedImage> image);
  // Every size of `url` (its bytes changed).
  void removeUrl(const std::string& url);

  std::size_t bytes() const { return bytes_; }

 private:
  using Key = std::pair<std::string, std::pair<int, int>>;
  struct Entry {
    Key key;
    std::shared_ptr<const DecodedImage> image;
  };
  static Key keyOf(const std::string& url, ImageSize box) { return {url, {box.width, box.height}}; }
  void erase(std::list<Entry>::iterator it);

  std::size_t capacity_;
  std::size_t bytes_ = 0;
  std::list<Entry> order_;  // most recent first
  std::map<Key, std::list<Entry>::iterator> index_;
};

}  // namespace qmv
