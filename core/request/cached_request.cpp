#include "core/request/cached_request.h"

#include <unistd.h>

#include <atomic>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "core/common/log.h"
#include "core/request/network_config.h"
#include "core/request/network_util.h"
#include "platform/env.h"
#include "platform/file_locations.h"

namespace qmv {
namespace {

namespace fs = std::filesystem;

constexpr const char* kCacheFormat = "qmv-request-cache-1";
constexpr const char* kVersionFormat = "qmv-request-cache-version-1";
constexpr const char* kCacheDirectoryName = "RequestCache";

// Reads a whole file; nullopt when it can't be opened.
std::optional<std::string> readFile(const fs::path& path) {
  std::ifstream in(path, std::ios::binary);
  if (!in) return std::nullopt;
  std::ostringstream out;
  out << in.rdbuf();
  if (in.bad()) return std::nullopt;
  return std::move(out).str();
}

// Writes through a temporary file and a rename, so that readers see the old file or
// the whole new one.
bool writeFileAtomically(const fs::path& path, const std::string& content) {
  static std::atomic<unsigned> counter{0};
  fs::path temp = path;
  temp += ".tmp." + std::to_string(::getpid()) + "." + std::to_string(counter++);
  {
    std::ofstream out(temp, std::ios::binary | std::ios::trunc);
    if (!out) return false;
    out << content;
    out.flush();
    if (!out) {
      std::error_code ec;
      fs::remove(temp, ec);
      return false;
    }
  }
  std::error_code ec;
  fs::rename(temp, path, ec);
  if (ec) fs::remove(temp, ec);
  return !ec;
}

// The payload of an archive text written by this format; nullopt for anything else.
std::optional<Json> archivePayload(std::string_view text, const char* format, const char* key) {
  Json document = parseJson(text);
  if (!isParsed(document) || !document.is_object()) return std::nullopt;
  const auto marker = document.find("format");
  if (marker == document.end() || *marker != format) return std::nullopt;
  const auto payload = document.find(key);
  if (payload == document.end()) return std::nullopt;
  return *payload;
}

std::string describe(const Json& value) { return value.is_null() ? "(null)" : dumpJson(value); }

fs::path libraryDirectory() {
  return Env::current().files->libraryDirectory();
  return HomeFileLocations::defaultHome() / "Library";
}

}  // namespace

void CachedRequest::start() {
  if (ignoreCache || cacheTimeInSeconds() < 0) {
    startWithoutCache();
    return;
  }
  const auto storedVersion = cacheVersionFileContent();
  if (!storedVersion || *storedVersion != cacheVersion()) {
    startWithoutCache();
    return;
  }
  const std::string path = cacheFilePath();
  std::error_code ec;
  if (!fs::exists(path, ec)) {
    startWithoutCache();
    return;
  }
  const std::int64_t age = cacheFileDuration(path);
  if (age < 0 || age > cacheTimeInSeconds()) {
    startWithoutCache();
    return;
  }
  std::optional<Json> cached = loadCacheData();
  if (!cached) {
    startWithoutCache();
    return;
  }
  cacheJson_ = std::move(cached);
  dataFromCache_ = true;
  requestCompleteFilter();
  if (delegate != nullptr) delegate->requestFinished(*this);
  if (auto block = successCompletionBlock) block(*this);
  clearCompletionBlock();
}

void CachedRequest::startWithoutCache() {
  // A response from the network replaces what an earlier hit left.
  cacheJson_.reset();
  dataFromCache_ = false;
  BaseRequest::start();
}

Json CachedRequest::responseJSONObject() const {
  if (cacheJson_) return *cacheJson_;
  return BaseRequest::responseJSONObject();
}

void CachedRequest::requestCompleteFilter() {
  BaseRequest::requestCompleteFilter();
  saveJsonResponseToCacheFile(responseJSONObject());
}

void CachedRequest::saveJsonResponseToCacheFile(const Json& jsonResponse) {
  if (cacheTimeInSeconds() <= 0 || dataFromCache_) return;
  const Json archive = {{"format", kCacheFormat}, {"json", jsonResponse}};
  if (!writeFileAtomically(cacheFilePath(), dumpJson(archive))) return;
  const Json version = {{"format", kVersionFormat}, {"version", cacheVersion()}};
  writeFileAtomically(cacheVersionFilePath(), dumpJson(version));
}

std::optional<Json> CachedRequest::loadCacheData() const {
  const auto text = readFile(cacheFilePath());
  return text ? cachedResponseOfText(*text) : std::nullopt;
}

std::optional<Json> CachedRequest::cachedResponseOfText(std::string_view text) {
  auto json = archivePayload(text, kCacheFormat, "json");
  // A stored null is an empty archive: nothing to serve.
  if (!json || json->is_null()) return std::nullopt;
  return json;
}

std::optional<std::int64_t> CachedRequest::cacheVersionOfText(std::string_view text) {
  const auto version = archivePayload(text, kVersionFormat, "version");
  if (!version || !version->is_number_integer()) return std::nullopt;
  return version->get<std::int64_t>();
}

std::string CachedRequest::cacheBasePath() const {
  std::string path = (libraryDirectory() / kCacheDirectoryName).string();
  const auto filters = NetworkConfig::sharedInstance().cacheDirPathFilters();
  for (const auto& filter : filters) path = filter->filterCacheDirPath(path, *this);
  checkDirectory(path);
  return path;
}

std::string CachedRequest::cacheFileName() const {
  const std::string description = "Method:" + std::to_string(static_cast<long>(requestMethod())) +
                                  " Host:" + NetworkConfig::sharedInstance().baseUrl() + " Url:" + requestUrl() +
                                  " Argument:" + describe(cacheFileNameFilterForRequestArgument(requestArgument())) +
                                  " AppVersion:" + NetworkUtil::appVersionString() +
                                  " Sensitive:" + describe(cacheSensitiveData());
  return NetworkUtil::md5StringFromString(description).value_or("");
}

std::string CachedRequest::cacheFilePath() const { return (fs::path(cacheBasePath()) / cacheFileName()).string(); }

std::string CachedRequest::cacheVersionFilePath() const { return cacheFilePath() + ".version"; }

std::optional<std::int64_t> CachedRequest::cacheVersionFileContent() const {
  const std::string path = cacheVersionFilePath();
  std::error_code ec;
  if (!fs::exists(path, ec)) return 0;
  const auto text = readFile(path);
  return text ? cacheVersionOfText(*text) : std::nullopt;
}

std::int64_t CachedRequest::cacheFileDuration(const std::string& path) const {
  std::error_code ec;
  const auto modified = fs::last_write_time(path, ec);
  if (ec) {
    logLine("Error get attributes for file at " + path + ": " + ec.message());
    return -1;
  }
  const auto modifiedAt = std::chrono::file_clock::to_sys(modified);
  return std::chrono::duration_cast<std::chrono::seconds>(std::chrono::system_clock::now() - modifiedAt).count();
}

void CachedRequest::checkDirectory(const std::string& path) {
  std::error_code ec;
  const auto status = fs::status(path, ec);
  if (!fs::exists(status)) {
    createBaseDirectoryAtPath(path);
  } else if (!fs::is_directory(status)) {
    fs::remove(path, ec);
    createBaseDirectoryAtPath(path);
  }
}

void CachedRequest::createBaseDirectoryAtPath(const std::string& path) {
  std::error_code ec;
  fs::create_directories(path, ec);
  if (ec || !fs::is_directory(path)) {
    logLine("create cache directory failed, error = " + (ec ? ec.message() : std::string("not a directory")));
    return;
  }
  NetworkUtil::addDoNotBackupAttribute(path);
}

}  // namespace qmv
