#include "core/images/memory_image_cache.h"

#include <climits>

namespace qmv {

std::shared_ptr<const DecodedImage> MemoryImageCache::find(const std::string& url, ImageSize box) {
  const auto found = index_.find(keyOf(url, box));
  if (found == index_.end()) return nullptr;
  order_.splice(order_.begin(), order_, found->second);
  return found->second->image;
}

void MemoryImageCache::insert(const std::string& url, ImageSize box, std::shared_ptr<const DecodedImage> image) {
  if (!image) return;
  const Key key = keyOf(url, box);
  if (const auto found = index_.find(key); found != index_.end()) erase(found->second);
  const std::size_t size = image->pixels.size();
  if (size > capacity_) return;
  while (bytes_ + size > capacity_ && !order_.empty()) erase(std::prev(order_.end()));
  order_.push_front({key, std::move(image)});
  index_[key] = order_.begin();
  bytes_ += size;
}

void MemoryImageCache::removeUrl(const std::string& url) {
  for (auto it = index_.lower_bound({url, {INT_MIN, INT_MIN}}); it != index_.end() && it->first.first == url;) {
    const auto entry = it->second;
    ++it;
    erase(entry);
  }
}

void MemoryImageCache::erase(std::list<Entry>::iterator it) {
  bytes_ -= it->image->pixels.size();
  index_.erase(it->key);
  order_.erase(it);
}

}  // namespace qmv
