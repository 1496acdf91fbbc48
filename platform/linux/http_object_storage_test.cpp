#include "platform/linux/http_object_storage.h"

#include <gtest/gtest.h>

#include <map>
#include <mutex>

#include "platform/linux/curl_transport.h"
#include "platform/manual_main_loop.h"
#include "platform/testing/loopback_server.h"

namespace qmv {
namespace {

using Bytes = ObjectStorage::Bytes;

// A bucket served under /bucket/: GET answers stored objects (404 otherwise), PUT stores.
class HttpObjectStorageTest : public ::testing::Test {
 protected:
  void SetUp() override {
    server_.server().Get(R"(/bucket/(.+))", [this](const httplib::Request& req, httplib::Response& res) {
      std::lock_guard lock(mutex_);
      targets_.push_back(req.target);
      const auto it = objects_.find(req.matches[1].str());
      if (it == objects_.end()) {
        res.status = 404;
        res.set_content("missing", "text/plain");
        return;
      }
      res.set_content(it->second, "application/octet-stream");
    });
    server_.server().Put(R"(/bucket/(.+))", [this](const httplib::Request& req, httplib::Response&) {
      std::lock_guard lock(mutex_);
      targets_.push_back(req.target);
      objects_[req.matches[1].str()] = req.body;
    });
    server_.server().Put("/readonly/x", [](const httplib::Request&, httplib::Response& res) { res.status = 403; });
    server_.start();
  }

  template <typename T>
  std::optional<T> wait(std::optional<std::optional<T>>& slot) {
    loop_->runUntil([&] { return slot.has_value(); }, std::chrono::milliseconds(10000));
    return slot.value_or(std::nullopt);
  }

  std::optional<Bytes> download(HttpObjectStorage& storage, const std::string& name) {
    std::optional<std::optional<Bytes>> result;
    storage.download(name, [&](std::optional<Bytes> bytes) { result = std::move(bytes); });
    return wait(result);
  }
  std::optional<bool> upload(HttpObjectStorage& storage, const std::string& name, const Bytes& data) {
    std::optional<std::optional<bool>> result;
    storage.upload(name, data, [&](bool ok) { result = ok; });
    return wait(result);
  }

  testsupport::LoopbackServer server_;
  std::shared_ptr<ManualMainLoop> loop_ = std::make_shared<ManualMainLoop>();
  std::shared_ptr<CurlTransport> http_ = std::make_shared<CurlTransport>(loop_);
  std::mutex mutex_;
  std::map<std::string, std::string> objects_;
  std::vector<std::string> targets_;
};

TEST_F(HttpObjectStorageTest, UploadedBytesComeBackAndNamesStayOneEncodedSegment) {
  HttpObjectStorage storage(server_.url("/bucket/"), http_);
  const Bytes portrait = {0xFF, 0xD8, 0x00, 0x01, 0x7F, 0x80, 0xFF};
  const std::string name = "会员 a/b.png";
  EXPECT_EQ(upload(storage, name, portrait), std::optional<bool>(true));
  EXPECT_EQ(download(storage, name), portrait);
  {
    std::lock_guard lock(mutex_);
    ASSERT_EQ(targets_.size(), 2u);
    EXPECT_EQ(targets_[0], "/bucket/%E4%BC%9A%E5%91%98%20a%2Fb.png");
    EXPECT_EQ(objects_.begin()->second, std::string(portrait.begin(), portrait.end()));
  }
  EXPECT_EQ(storage.urlFor("x.png"), server_.url("/bucket/x.png"));
}

TEST_F(HttpObjectStorageTest, MissingRefusedOrUnreachableObjectsAreFailuresNotBodies) {
  HttpObjectStorage storage(server_.url("/bucket"), http_);
  EXPECT_EQ(download(storage, "absent.png"), std::nullopt);  // 404 body "missing" is not an object
  EXPECT_EQ(download(storage, ""), std::nullopt);
  HttpObjectStorage readonly(server_.url("/readonly"), http_);
  EXPECT_EQ(upload(readonly, "x", {1}), std::optional<bool>(false));

  const std::string closed = server_.url("/bucket");
  server_.shutdown();
  HttpObjectStorage gone(closed, http_);
  EXPECT_EQ(download(gone, "absent.png"), std::nullopt);
  EXPECT_EQ(upload(gone, "x", {1}), std::optional<bool>(false));
}

}  // namespace
}  // namespace qmv
