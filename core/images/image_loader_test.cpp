#include "core/images/image_loader.h"

#include <gtest/gtest.h>

#include <atomic>
#include <filesystem>
#include <fstream>
#include <map>
#include <mutex>
#include <optional>
#include <vector>

#include "core/common/string_util.h"
#include "core/images/disk_image_cache.h"
#include "platform/clock.h"
#include "platform/linux/codec_image_decoder.h"
#include "platform/linux/curl_transport.h"
#include "platform/linux/thread_work_queue.h"
#include "platform/manual_main_loop.h"
#include "platform/testing/loopback_server.h"

namespace qmv {
namespace {

class SettableClock : public Clock {
 public:
  std::int64_t unixSeconds() const override { return seconds; }
  std::atomic<std::int64_t> seconds{1'700'000'000};
};

std::string jpegOf(int width, int height, unsigned char shade) {
  DecodedImage image{width, height, static_cast<std::size_t>(width) * 4, {}};
  image.pixels.assign(image.stride * height, static_cast<char>(shade));
  for (std::size_t i = 3; i < image.pixels.size(); i += 4) image.pixels[i] = static_cast<char>(0xff);
  return CodecImageDecoder().encodeJpeg(image, 80).value();
}

class ImageLoaderTest : public ::testing::Test {
 protected:
  void SetUp() override {
    auto& http = server_.server();
    // A picture whose version, ETag and max-age the test changes; answers 304 to a match.
    http.Get(R"(/pic/(\w+))", [this](const httplib::Request& req, httplib::Response& res) {
      std::lock_guard lock(mutex_);
      ++hits_[req.path];
      conditional_[req.path] = req.get_header_value("If-None-Match");
      if (down_) {
        res.status = 503;
        return;
      }
      res.set_header("ETag", etag_);
      res.set_header("Cache-Control", "max-age=60");
      if (req.get_header_value("If-None-Match") == etag_) {
        res.status = 304;
        return;
      }
      res.set_content(picture_, "image/jpeg");
    });
    // Held until the test releases it, counting how many are open at once.
    http.Get(R"(/slow/(\w+))", [this](const httplib::Request& req, httplib::Response& res) {
      const int now = ++open_;
      for (int seen = maxOpen_; now > seen && !maxOpen_.compare_exchange_weak(seen, now);) {
      }
      {
        std::lock_guard lock(mutex_);
        ++hits_[req.path];
      }
      while (!released_ && !server_.stopping()) server_.sleepUnlessStopping(std::chrono::milliseconds(5));
      --open_;
      res.set_content(picture_, "application/octet-stream");
    });
    http.Get(R"(/hostile/(\w+))", [this](const httplib::Request& req, httplib::Response& res) {
      {
        std::lock_guard lock(mutex_);
        ++hits_[req.path];
      }
      const std::string name = req.matches[1];
      if (name == "html") res.set_content(picture_, "text/html");
      if (name == "garbage") res.set_content(std::string(5000, 'x'), "image/png");
      if (name == "truncated") res.set_content(picture_.substr(0, picture_.size() * 2 / 3), "image/jpeg");
      if (name == "oversize") res.set_content(std::string((std::size_t{10} << 20) + 1, '\xff'), "image/jpeg");
      if (name == "declared") {
        std::string s = picture_;
        const std::size_t frame = s.find("\xff\xc0");
        s[frame + 5] = s[frame + 7] = static_cast<char>(20000 >> 8);
        s[frame + 6] = s[frame + 8] = static_cast<char>(20000 & 0xff);
        res.set_content(s, "image/jpeg");
      }
    });
    server_.start();
    dir_ = std::filesystem::temp_directory_path() / ("qmv_image_loader_" + std::to_string(server_.port()));
    std::filesystem::remove_all(dir_);
  }

  void TearDown() override {
    loader_.reset();
    http_.reset();
    server_.shutdown();
    std::filesystem::remove_all(dir_);
  }

  // A loader as a fresh start would make it: empty memory, the same disk directory.
  ImageLoader& restart(ImageLoaderOptions options = {}) {
    loader_.reset();
    loader_.emplace(loop_, http_, work_, std::make_shared<CodecImageDecoder>(), dir_, clock_, options);
    return *loader_;
  }

  ImageOutcome await(const std::string& path, ImageSize box) {
    std::optional<ImageOutcome> outcome;
    auto ticket = loader_->load(server_.url(path), box, [&](ImageOutcome o) { outcome = std::move(o); });
    loop_->runUntil([&] { return outcome.has_value(); }, std::chrono::milliseconds(10000));
    return outcome.value_or(ImageOutcome{nullptr, ImageSource::kNetwork, ImageLoadError::kUnavailable, "timed out"});
  }

  int hits(const std::string& path) {
    std::lock_guard lock(mutex_);
    return hits_[path];
  }

  std::string conditional(const std::string& path) {
    std::lock_guard lock(mutex_);
    return conditional_[path];
  }

  testsupport::LoopbackServer server_;
  std::mutex mutex_;
  std::map<std::string, int> hits_;
  std::map<std::string, std::string> conditional_;
  std::string etag_ = "\"v1\"";
  std::string picture_ = jpegOf(64, 48, 0x40);
  bool down_ = false;
  std::atomic<bool> released_{false};
  std::atomic<int> open_{0};
  std::atomic<int> maxOpen_{0};

  std::filesystem::path dir_;
  std::shared_ptr<ManualMainLoop> loop_ = std::make_shared<ManualMainLoop>();
  std::shared_ptr<CurlTransport> http_ = std::make_shared<CurlTransport>(loop_);
  std::shared_ptr<ThreadWorkQueue> work_ = std::make_shared<ThreadWorkQueue>(2);
  std::shared_ptr<SettableClock> clock_ = std::make_shared<SettableClock>();
  std::optional<ImageLoader> loader_;
};

TEST_F(ImageLoaderTest, ComesFromMemoryThenDiskAndRevalidatesStaleCopies) {
  restart();
  const ImageOutcome first = await("/pic/a", {32, 32});
  ASSERT_TRUE(first.ok()) << first.message;
  EXPECT_EQ(first.source, ImageSource::kNetwork);
  EXPECT_EQ(first.image->size(), (ImageSize{32, 24}));

  // A memory hit is still delivered later, never inside load().
  bool called = false;
  auto ticket = loader_->load(server_.url("/pic/a"), {32, 32}, [&](ImageOutcome o) {
    called = true;
    EXPECT_EQ(o.source, ImageSource::kMemory);
  });
  EXPECT_FALSE(called);
  loop_->runUntil([&] { return called; }, std::chrono::milliseconds(5000));
  EXPECT_TRUE(called);

  restart();
  const ImageOutcome kept = await("/pic/a", {});
  EXPECT_EQ(kept.source, ImageSource::kDisk);
  EXPECT_EQ(kept.image->size(), (ImageSize{64, 48}));
  EXPECT_EQ(hits("/pic/a"), 1);

  // Past max-age: a conditional GET; the 304 keeps the bytes and makes them fresh again.
  clock_->seconds += 61;
  restart();
  EXPECT_EQ(await("/pic/a", {16, 16}).source, ImageSource::kDisk);
  EXPECT_EQ(hits("/pic/a"), 2);
  EXPECT_EQ(conditional("/pic/a"), "\"v1\"");
  EXPECT_EQ(loader_->cachedBytes(server_.url("/pic/a")), picture_);
  restart();
  EXPECT_EQ(await("/pic/a", {16, 16}).source, ImageSource::kDisk);
  EXPECT_EQ(hits("/pic/a"), 2);

  // A changed picture replaces the kept one.
  const std::string old = picture_;
  {
    std::lock_guard lock(mutex_);
    etag_ = "\"v2\"";
    picture_ = jpegOf(80, 40, 0x90);
  }
  clock_->seconds += 61;
  restart();
  const ImageOutcome changed = await("/pic/a", {});
  EXPECT_EQ(changed.source, ImageSource::kNetwork);
  EXPECT_EQ(changed.image->size(), (ImageSize{80, 40}));
  EXPECT_EQ(loader_->cachedBytes(server_.url("/pic/a")), picture_);

  // Failing: a stale kept copy beats a placeholder.
  clock_->seconds += 61;
  restart();
  {
    std::lock_guard lock(mutex_);
    down_ = true;
  }
  const ImageOutcome offline = await("/pic/a", {});
  EXPECT_EQ(offline.source, ImageSource::kDisk);
  EXPECT_TRUE(offline.ok());
  {
    std::lock_guard lock(mutex_);
    down_ = false;
  }

  // The object store met at another port on a later start (nothing listens on port 1)
  // still finds the pictures it kept, and only its own.
  ImageLoaderOptions store;
  store.objectStoreBase = server_.url("/pic");
  restart(store);
  ASSERT_EQ(await("/pic/b", {}).source, ImageSource::kNetwork);
  store.objectStoreBase = "http://127.0.0.1:1/pic";
  std::optional<ImageOutcome> moved;
  auto ticketMoved = restart(store).load("http://127.0.0.1:1/pic/b", {}, [&](ImageOutcome o) { moved = std::move(o); });
  loop_->runUntil([&] { return moved.has_value(); }, std::chrono::milliseconds(10000));
  ASSERT_TRUE(moved && moved->ok()) << (moved ? moved->message : "timed out");
  EXPECT_EQ(moved->source, ImageSource::kDisk);
  EXPECT_EQ(hits("/pic/b"), 1);
  EXPECT_FALSE(loader_->cachedBytes("http://127.0.0.1:1/elsewhere/b").has_value());

  // Forgotten: memory and disk both ask the server again.
  restart();
  ASSERT_EQ(await("/pic/a", {}).source, ImageSource::kDisk);
  loader_->forget(server_.url("/pic/a"));
  EXPECT_EQ(await("/pic/a", {}).source, ImageSource::kNetwork);
}

TEST_F(ImageLoaderTest, EvictsLeastRecentlyUsedByBytes) {
  // Room for two 32x24 pictures in memory.
  ImageLoaderOptions options;
  options.memoryBytes = 2 * 32 * 24 * 4 + 100;
  restart(options);
  for (const char* path : {"/pic/a", "/pic/b"}) EXPECT_EQ(await(path, {32, 32}).source, ImageSource::kNetwork);
  EXPECT_EQ(await("/pic/a", {32, 32}).source, ImageSource::kMemory);
  EXPECT_EQ(await("/pic/c", {32, 32}).source, ImageSource::kNetwork);
  EXPECT_EQ(await("/pic/a", {32, 32}).source, ImageSource::kMemory);
  EXPECT_EQ(await("/pic/b", {32, 32}).source, ImageSource::kDisk);

  // The disk: room for three entries of 100 bytes; a read counts as a use.
  const auto disk = dir_ / "disk";
  {
    DiskImageCache cache(disk, 300, clock_);
    for (const char* url : {"x", "y", "z"}) ASSERT_TRUE(cache.store(url, std::string(100, *url), {}));
    EXPECT_TRUE(cache.read("x"));
    ASSERT_TRUE(cache.store("w", std::string(100, 'w'), {}));
    EXPECT_FALSE(cache.lookup("y"));
    EXPECT_TRUE(cache.lookup("x") && cache.lookup("z") && cache.lookup("w"));
    EXPECT_FALSE(cache.store("big", std::string(301, 'b'), {}));
    EXPECT_EQ(cache.bytes(), 300u);
  }
  // Damaged entries found at start are misses and are removed; the rest survive.
  std::ofstream(disk / (StringUtil::getmd5WithString("x") + ".meta")) << "size nonsense\n";
  std::ofstream(disk / StringUtil::getmd5WithString("z"), std::ios::app) << "extra";
  DiskImageCache reopened(disk, 300, clock_);
  EXPECT_FALSE(reopened.lookup("x"));
  EXPECT_FALSE(reopened.lookup("z"));
  EXPECT_EQ(reopened.read("w"), std::string(100, 'w'));
  EXPECT_EQ(reopened.bytes(), 100u);
  EXPECT_FALSE(std::filesystem::exists(disk / StringUtil::getmd5WithString("z")));
}

TEST_F(ImageLoaderTest, SharesOneTransferPerUrlAndDropsCancelledTickets) {
  restart();
  std::map<int, ImageOutcome> outcomes;
  std::vector<ImageTicket> tickets;
  const std::vector<ImageSize> boxes = {{16, 16}, {16, 16}, {32, 32}, {}};
  for (int i = 0; i < 4; ++i) {
    tickets.push_back(loader_->load(server_.url("/slow/shared"), boxes[i], [&, i](ImageOutcome o) { outcomes[i] = o; }));
  }
  // Six more URLs: no more than four transfers at once.
  for (int i = 4; i < 10; ++i) {
    tickets.push_back(loader_->load(server_.url("/slow/p" + std::to_string(i)), {}, [&, i](ImageOutcome o) {
      outcomes[i] = o;
    }));
  }
  // Cancelled, and dropped: neither ticket is ever called.
  bool cancelledCalled = false;
  {
    auto dropped = loader_->load(server_.url("/slow/gone"), {}, [&](ImageOutcome) { cancelledCalled = true; });
    auto cancelled = loader_->load(server_.url("/slow/gone"), {}, [&](ImageOutcome) { cancelledCalled = true; });
    cancelled.cancel();
  }
  loop_->runUntil([] { return false; }, std::chrono::milliseconds(300));
  EXPECT_LE(maxOpen_.load(), 4);
  released_ = true;
  loop_->runUntil([&] { return outcomes.size() == 10; }, std::chrono::milliseconds(10000));
  loop_->runUntil([] { return false; }, std::chrono::milliseconds(100));
  ASSERT_EQ(outcomes.size(), 10u);
  EXPECT_EQ(hits("/slow/shared"), 1);
  EXPECT_FALSE(cancelledCalled);
  EXPECT_LE(maxOpen_.load(), 4);
  for (const auto& [i, o] : outcomes) ASSERT_TRUE(o.ok()) << i << ": " << o.message;
  EXPECT_EQ(outcomes[1].image->size(), (ImageSize{16, 12}));
  EXPECT_EQ(outcomes[2].image->size(), (ImageSize{32, 24}));
  EXPECT_EQ(outcomes[3].image->size(), (ImageSize{64, 48}));
}

TEST_F(ImageLoaderTest, HostileAnswersFailAndAreNeverKept) {
  restart();
  const std::map<std::string, ImageLoadError> cases = {
      {"/hostile/html", ImageLoadError::kContentType},   {"/hostile/garbage", ImageLoadError::kUnsupported},
      {"/hostile/truncated", ImageLoadError::kCorrupt}, {"/hostile/oversize", ImageLoadError::kTooLarge},
      {"/hostile/declared", ImageLoadError::kTooLarge},  {"/missing/x", ImageLoadError::kNetwork},
  };
  for (const auto& [path, error] : cases) {
    const ImageOutcome outcome = await(path, {32, 32});
    EXPECT_FALSE(outcome.ok()) << path;
    EXPECT_EQ(outcome.error, error) << path << ": " << outcome.message;
  }
  // Nothing kept: asking again goes back to the server.
  EXPECT_EQ(await("/hostile/truncated", {32, 32}).error, ImageLoadError::kCorrupt);
  EXPECT_EQ(hits("/hostile/truncated"), 2);
  EXPECT_FALSE(loader_->cachedBytes(server_.url("/hostile/declared")));
  EXPECT_EQ(DiskImageCache(dir_, 1 << 20, clock_).bytes(), 0u);
}

}  // namespace
}  // namespace qmv
