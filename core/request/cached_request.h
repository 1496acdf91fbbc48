#pragma once
// A request that may answer from a file cache. A subclass that declares a positive
// cacheTimeInSeconds is served from disk while its last stored response is younger than
// that and of the same cacheVersion; a network success is written back. Every cache fault
// (missing, old, foreign, truncated or unreadable files) falls back to the network.
//
// Files live in <library>/RequestCache (then every cache-path filter of NetworkConfig):
// the response under the MD5 of the request's description, and its cache version beside
// it in "<name>.version". Both are JSON documents with a format marker, written
// atomically (temporary file, then rename).
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "core/request/base_request.h"

namespace qmv {

class CachedRequest : public BaseRequest {
 public:
  // ---- Overridable (defaults of the base class) ----
  // Seconds a stored response stays usable; negative never reads nor writes, 0 never writes.
  virtual std::int64_t cacheTimeInSeconds() const { return -1; }
  // A different version makes every stored response of this request stale.
  virtual std::int64_t cacheVersion() const { return 0; }
  // Part of the cache name, to separate caches (for instance by user).
  virtual Json cacheSensitiveData() const { return nullptr; }

  // When true, start() always goes to the network.
  bool ignoreCache = false;
  // Whether the current response came from the cache.
  bool isDataFromCache() const { return dataFromCache_; }

  // Serves from the cache when every test passes (calling the complete filter, delegate
  // and success block at once, without the agent or accessories); else the network.
  void start() override;
  // The network, skipping every cache test.
  void startWithoutCache();
  // The cached response when served from the cache, else the network's.
  Json responseJSONObject() const override;
  // After a network success: the inherited filter, then the response is stored.
  void requestCompleteFilter() override;
  // Writes `jsonResponse` and the cache version, only with a positive lifetime and when
  // the data did not come from the cache. Failures are silent.
  void saveJsonResponseToCacheFile(const Json& jsonResponse);

  // ---- Cache files ----
  // The cache directory after filters, created (and tagged) when missing.
  std::string cacheBasePath() const;
  // MD5 of "Method:%ld Host:%@ Url:%@ Argument:%@ AppVersion:%@ Sensitive:%@".
  std::string cacheFileName() const;
  std::string cacheFilePath() const;
  std::string cacheVersionFilePath() const;
  // The stored version: 0 when the file is missing, nullopt when it can't be read.
  std::optional<std::int64_t> cacheVersionFileContent() const;
  // Whole seconds since the file was modified; -1 (logged) when its attributes can't be read.
  std::int64_t cacheFileDuration(const std::string& path) const;

  // Makes `path` a directory: created with its parents when missing, a plain file in
  // the way is replaced. Logs "create cache directory failed, error = ..." on failure.
  static void checkDirectory(const std::string& path);
  static void createBaseDirectoryAtPath(const std::string& path);

  // What the texts of the two cache files hold: the stored response (nullopt when the
  // text is not a response file of this format, or stores null) and the stored version
  // (nullopt when it is not a version file holding an integer).
  static std::optional<Json> cachedResponseOfText(std::string_view text);
  static std::optional<std::int64_t> cacheVersionOfText(std::string_view text);

 private:
  std::optional<Json> loadCacheData() const;

  std::optional<Json> cacheJson_;
  bool dataFromCache_ = false;
};

}  // namespace qmv
