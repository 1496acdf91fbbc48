#include "core/request/cached_request.h"

#include <filesystem>
#include <fstream>

#include "core/request/network_util.h"
#include "core/request/request_test_support.h"

namespace qmv {
namespace {

using namespace std::chrono_literals;
namespace fs = std::filesystem;
using testsupport::Events;

class CounterRequest : public CachedRequest {
 public:
  std::int64_t lifetime = 60;
  std::int64_t version = 0;
  Json argument;
  Json sensitive;
  Events* events = nullptr;

  std::string requestUrl() const override { return "counter"; }
  Json requestArgument() const override { return argument; }
  std::int64_t cacheTimeInSeconds() const override { return lifetime; }
  std::int64_t cacheVersion() const override { return version; }
  Json cacheSensitiveData() const override { return sensitive; }
  // The timestamp must not split the cache.
  Json cacheFileNameFilterForRequestArgument(const Json& argument) const override {
    Json kept = argument;
    if (kept.is_object()) kept.erase("ts");
    return kept;
  }
  void requestCompleteFilter() override {
    if (events) events->push_back("completeFilter");
    CachedRequest::requestCompleteFilter();
  }
};

class CachedRequestTest : public testsupport::RequestTest {
 protected:
  std::shared_ptr<CounterRequest> makeCounter() {
    auto r = std::make_shared<CounterRequest>();
    r->argument = {{"page", 1}};
    return r;
  }
  // The counter the answer carried, from the network or the cache.
  int fetch(const std::shared_ptr<CounterRequest>& r) {
    EXPECT_EQ(run(r), "success");
    return r->responseJSONObject().value("n", -1);
  }
};

class DirectoryFilter : public CacheDirPathFilter {
 public:
  explicit DirectoryFilter(std::string sub) : sub_(std::move(sub)) {}
  std::string filterCacheDirPath(const std::string& path, const BaseRequest&) override {
    return (fs::path(path) / sub_).string();
  }

 private:
  std::string sub_;
};

TEST_F(CachedRequestTest, HitsUntilTheStoredResponseIsTooOldOrOfAnotherVersion) {
  auto r = makeCounter();
  EXPECT_EQ(fetch(r), 1);
  EXPECT_FALSE(r->isDataFromCache());
  ASSERT_TRUE(fs::exists(r->cacheFilePath()));
  EXPECT_EQ(r->cacheVersionFileContent(), 0);

  // A hit: filter, delegate and block at once, with no agent and no accessories.
  Events events;
  testsupport::RecordingDelegate delegate(events);
  r->events = &events;
  r->delegate = &delegate;
  r->addAccessory(std::make_shared<testsupport::RecordingAccessory>(events));
  r->startWithCompletionBlockWithSuccess([&](BaseRequest&) { events.push_back("success"); }, nullptr);
  EXPECT_EQ(events, (Events{"completeFilter", "delegateFinished", "success"}));
  EXPECT_TRUE(r->isDataFromCache());
  EXPECT_EQ(r->responseJSONObject()["n"], 1);
  EXPECT_FALSE(r->successCompletionBlock);
  EXPECT_EQ(NetworkAgent::sharedInstance().requestCount(), 0u);
  r->events = nullptr;
  r->delegate = nullptr;
  r->requestAccessories.clear();

  // Older than the lifetime: the network again, and the new answer is stored.
  fs::last_write_time(r->cacheFilePath(), fs::file_time_type::clock::now() - 120s);
  EXPECT_EQ(fetch(r), 2);
  EXPECT_FALSE(r->isDataFromCache());
  EXPECT_EQ(fetch(r), 2);

  // A new version invalidates without deleting; the old version is stale too afterwards.
  r->version = 7;
  EXPECT_EQ(fetch(r), 3);
  EXPECT_EQ(r->cacheVersionFileContent(), 7);
  EXPECT_EQ(fetch(r), 3);
  r->version = 0;
  EXPECT_EQ(fetch(r), 4);

  r->ignoreCache = true;
  EXPECT_EQ(fetch(r), 5);
  r->ignoreCache = false;
  r->startWithoutCache();
  loop_->runUntil([&] { return !r->isExecuting(); }, 10s);
  EXPECT_EQ(r->responseJSONObject()["n"], 6);
}

TEST_F(CachedRequestTest, CacheNamesFollowArgumentVersionAndSensitiveData) {
  auto first = makeCounter();
  first->argument = {{"page", 1}, {"ts", 100}};
  auto second = makeCounter();
  second->argument = {{"page", 1}, {"ts", 200}};
  EXPECT_EQ(first->cacheFilePath(), second->cacheFilePath());
  EXPECT_EQ(fetch(first), 1);
  EXPECT_EQ(fetch(second), 1);  // shares the first one's file
  EXPECT_TRUE(second->isDataFromCache());

  auto otherPage = makeCounter();
  otherPage->argument = {{"page", 2}};
  EXPECT_NE(otherPage->cacheFileName(), first->cacheFileName());
  auto otherUser = makeCounter();
  otherUser->argument = {{"page", 1}};
  otherUser->sensitive = "user-42";
  EXPECT_NE(otherUser->cacheFileName(), first->cacheFileName());

  const std::string before = first->cacheFileName();
  NetworkUtil::overrideAppVersionString("99.0");
  EXPECT_NE(first->cacheFileName(), before);
  EXPECT_EQ(fetch(first), 2);
  NetworkUtil::overrideAppVersionString(std::nullopt);
  EXPECT_EQ(first->cacheFileName(), before);
}

TEST_F(CachedRequestTest, LifetimesAndDamagedFilesFallBackToTheNetworkSilently) {
  auto never = makeCounter();
  never->lifetime = 0;
  EXPECT_EQ(fetch(never), 1);
  EXPECT_FALSE(fs::exists(never->cacheFilePath()));
  never->lifetime = -1;
  EXPECT_EQ(fetch(never), 2);
  EXPECT_FALSE(fs::exists(never->cacheFilePath()));

  auto r = makeCounter();
  EXPECT_EQ(fetch(r), 3);
  const std::string path = r->cacheFilePath();
  std::string whole;
  {
    std::ifstream in(path, std::ios::binary);
    whole.assign(std::istreambuf_iterator<char>(in), {});
  }
  testsupport::LogCapture log;
  int expected = 4;
  for (const std::string& damaged : {whole.substr(0, whole.size() / 2), std::string("\x00\xff garbage", 10),
                                     std::string(R"({"format":"other","json":{"n":99}})"), std::string("")}) {
    { std::ofstream(path, std::ios::binary | std::ios::trunc) << damaged; }
    EXPECT_EQ(fetch(r), expected) << damaged;
    EXPECT_EQ(fetch(r), expected);  // the good answer was written back
    ++expected;
  }
  { std::ofstream(r->cacheVersionFilePath(), std::ios::binary | std::ios::trunc) << "7"; }
  EXPECT_EQ(fetch(r), expected);
  EXPECT_FALSE(log.contains("Error get attributes for file at " + path + ": No such file or directory"));
  EXPECT_EQ(r->cacheFileDuration(path + ".missing"), -1);
  EXPECT_TRUE(log.contains("Error get attributes for file at " + path + ".missing: No such file or directory"));
}

TEST_F(CachedRequestTest, CacheDirectoryIsFilteredCreatedTaggedAndRepaired) {
  auto& config = NetworkConfig::sharedInstance();
  config.addCacheDirPathFilter(std::make_shared<DirectoryFilter>("user"));
  config.addCacheDirPathFilter(std::make_shared<DirectoryFilter>("v2"));
  const fs::path expected = home_ / "Library" / "RequestCache" / "user" / "v2";
  auto r = makeCounter();
  EXPECT_EQ(r->cacheBasePath(), expected.string());
  EXPECT_TRUE(fs::is_directory(expected));
  EXPECT_TRUE(fs::exists(expected / "CACHEDIR.TAG"));

  // A plain file where the directory belongs is replaced.
  fs::remove_all(expected);
  { std::ofstream(expected) << "in the way"; }
  CachedRequest::checkDirectory(expected.string());
  EXPECT_TRUE(fs::is_directory(expected));

  testsupport::LogCapture log;
  const fs::path blocked = home_ / "blocker";
  { std::ofstream(blocked) << "file"; }
  CachedRequest::createBaseDirectoryAtPath((blocked / "sub").string());
  EXPECT_TRUE(log.contains("create cache directory failed, error = Not a directory"));
  EXPECT_TRUE(fs::is_regular_file(blocked));
}

}  // namespace
}  // namespace qmv
