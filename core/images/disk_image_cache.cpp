#include "core/images/disk_image_cache.h"

#include <fstream>
#include <iterator>
#include <sstream>
#include <system_error>
#include <vector>
#include <utility>

#include "core/common/string_util.h"
#include "platform/clock.h"

namespace qmv {
namespace {

constexpr const char* kMetaSuffix = ".meta";

bool oneLine(const std::string& text) { return text.find_first_of("\r\n") == std::string::npos; }

std::optional<DiskImageEntry> parseMeta(const std::filesystem::path& path) {
  std::ifstream in(path, std::ios::binary);
  if (!in) return std::nullopt;
  DiskImageEntry entry;
  std::string line;
  int fields = 0;
  try {
    while (std::getline(in, line) && fields < 16) {
      ++fields;
      const auto space = line.find(' ');
      const std::string name = line.substr(0, space);
      const std::string value = space == std::string::npos ? "" : line.substr(space + 1);
      if (name == "url") entry.url = value;
      else if (name == "etag") entry.etag = value;
      else if (name == "last-modified") entry.lastModified = value;
      else if (name == "expires") entry.expiresAt = std::stoll(value);
      else if (name == "size") entry.size = std::stoull(value);
      else if (name == "last-use") entry.lastUse = std::stoll(value);
    }
  } catch (const std::exception&) {
    return std::nullopt;
  }
  if (entry.url.empty()) return std::nullopt;
  return entry;
}

}  // namespace

DiskImageCache::DiskImageCache(std::filesystem::path directory, std::size_t capacityBytes,
                               std::shared_ptr<const Clock> clock)
    : directory_(std::move(directory)), capacity_(capacityBytes), clock_(std::move(clock)) {}

void DiskImageCache::loadIndexLocked() {
  if (loaded_) return;
  loaded_ = true;
  std::error_code ec;
  std::filesystem::create_directories(directory_, ec);
  std::vector<std::filesystem::path> leftovers;
  for (const auto& file : std::filesystem::directory_iterator(directory_, ec)) {
    const auto path = file.path();
    if (path.extension() == kMetaSuffix) {
      const std::string name = path.stem().string();
      const auto entry = parseMeta(path);
      std::error_code sizeError;
      const auto size = std::filesystem::file_size(bodyPath(name), sizeError);
      if (!entry || sizeError || size != entry->size || StringUtil::getmd5WithString(entry->url) != name) {
        leftovers.push_back(path);
        leftovers.push_back(bodyPath(name));
        continue;
      }
      slots_[name] = {*entry, 0};
      bytes_ += entry->size;
    } else if (path.extension() == ".partial") {
      leftovers.push_back(path);
    }
  }
  for (const auto& path : leftovers) std::filesystem::remove(path, ec);
  // Bodies without a sidecar are orphans of an interrupted store.
  for (const auto& file : std::filesystem::directory_iterator(directory_, ec)) {
    const auto name = file.path().filename().string();
    if (file.path().extension().empty() && !slots_.count(name)) std::filesystem::remove(file.path(), ec);
  }
}

std::optional<DiskImageEntry> DiskImageCache::lookup(const std::string& url) {
  std::lock_guard lock(mutex_);
  loadIndexLocked();
  const auto found = slots_.find(StringUtil::getmd5WithString(url));
  if (found == slots_.end()) return std::nullopt;
  return found->second.entry;
}

std::optional<std::string> DiskImageCache::read(const std::string& url) {
  std::lock_guard lock(mutex_);
  loadIndexLocked();
  const std::string name = StringUtil::getmd5WithString(url);
  const auto found = slots_.find(name);
  if (found == slots_.end()) return std::nullopt;
  std::ifstream in(bodyPath(name), std::ios::binary);
  std::string bytes(found->second.entry.size, '\0');
  in.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  if (!in || static_cast<std::size_t>(in.gcount()) != bytes.size() || in.peek() != std::char_traits<char>::eof()) {
    removeLocked(name);
    return std::nullopt;
  }
  found->second.entry.lastUse = clock_->unixSeconds();
  found->second.tick = ++ticks_;
  writeMetaLocked(name, found->second.entry);
  return bytes;
}

bool DiskImageCache::store(const std::string& url, const std::string& bytes, DiskImageEntry validators) {
  if (bytes.size() > capacity_ || !oneLine(url) || !oneLine(validators.etag) || !oneLine(validators.lastModified)) {
    return false;
  }
  std::lock_guard lock(mutex_);
  loadIndexLocked();
  const std::string name = StringUtil::getmd5WithString(url);
  removeLocked(name);
  while (bytes_ + bytes.size() > capacity_ && !slots_.empty()) {
    auto oldest = slots_.begin();
    for (auto it = slots_.begin(); it != slots_.end(); ++it) {
      const auto& a = it->second;
      const auto& b = oldest->second;
      if (a.entry.lastUse < b.entry.lastUse || (a.entry.lastUse == b.entry.lastUse && a.tick < b.tick)) oldest = it;
    }
    removeLocked(oldest->first);
  }
  const auto partial = directory_ / (name + ".partial");
  {
    std::ofstream out(partial, std::ios::binary | std::ios::trunc);
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    out.close();
    std::error_code ec;
    if (!out) {
      std::filesystem::remove(partial, ec);
      return false;
    }
    std::filesystem::rename(partial, bodyPath(name), ec);
    if (ec) {
      std::filesystem::remove(partial, ec);
      return false;
    }
  }
  validators.url = url;
  validators.size = bytes.size();
  validators.lastUse = clock_->unixSeconds();
  if (!writeMetaLocked(name, validators)) {
    std::error_code ec;
    std::filesystem::remove(bodyPath(name), ec);
    return false;
  }
  slots_[name] = {validators, ++ticks_};
  bytes_ += bytes.size();
  return true;
}

void DiskImageCache::refresh(const std::string& url, const std::string& etag, const std::string& lastModified,
                             std::int64_t expiresAt) {
  std::lock_guard lock(mutex_);
  loadIndexLocked();
  const std::string name = StringUtil::getmd5WithString(url);
  const auto found = slots_.find(name);
  if (found == slots_.end()) return;
  auto& entry = found->second.entry;
  if (!etag.empty() && oneLine(etag)) entry.etag = etag;
  if (!lastModified.empty() && oneLine(lastModified)) entry.lastModified = lastModified;
  entry.expiresAt = expiresAt;
  entry.lastUse = clock_->unixSeconds();
  found->second.tick = ++ticks_;
  writeMetaLocked(name, entry);
}

void DiskImageCache::remove(const std::string& url) {
  std::lock_guard lock(mutex_);
  loadIndexLocked();
  removeLocked(StringUtil::getmd5WithString(url));
}

std::size_t DiskImageCache::bytes() {
  std::lock_guard lock(mutex_);
  loadIndexLocked();
  return bytes_;
}

bool DiskImageCache::fresh(const DiskImageEntry& entry) const { return clock_->unixSeconds() < entry.expiresAt; }

void DiskImageCache::removeLocked(std::string name) {
  if (const auto found = slots_.find(name); found != slots_.end()) {
    bytes_ -= found->second.entry.size;
    slots_.erase(found);
  }
  std::error_code ec;
  std::filesystem::remove(metaPath(name), ec);
  std::filesystem::remove(bodyPath(name), ec);
}

bool DiskImageCache::writeMetaLocked(const std::string& name, const DiskImageEntry& entry) {
  std::ostringstream text;
  text << "url " << entry.url << "\netag " << entry.etag << "\nlast-modified " << entry.lastModified << "\nexpires "
       << entry.expiresAt << "\nsize " << entry.size << "\nlast-use " << entry.lastUse << "\n";
  const auto partial = directory_ / (name + ".meta.partial");
  std::ofstream out(partial, std::ios::binary | std::ios::trunc);
  out << text.str();
  out.close();
  std::error_code ec;
  if (!out) {
    std::filesystem::remove(partial, ec);
    return false;
  }
  std::filesystem::rename(partial, metaPath(name), ec);
  return !ec;
}

}  // namespace qmv
