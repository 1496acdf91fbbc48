// The portrait screen against a scripted server and a recording object store: what it
// refuses before sending anything, the shrunk JPEG that goes to both places, and that only
// both answering well replaces the stored portrait.
#include "features/member/portrait_view_controller.h"

#include <gtest/gtest.h>

#include "core/common/settings_keys.h"
#include "core/request/net_api_test_support.h"
#include "platform/linux/codec_image_decoder.h"
#include "platform/object_storage.h"

namespace qmv {
namespace {

class RecordingObjectStorage : public ObjectStorage {
 public:
  void download(const std::string&, std::function<void(std::optional<Bytes>)> completion) override {
    completion(std::nullopt);
  }
  void upload(const std::string& name, const Bytes& data, std::function<void(bool)> completion) override {
    uploads.emplace_back(name, std::string(data.begin(), data.end()));
    completion(accept);
  }
  bool accept = true;
  std::vector<std::pair<std::string, std::string>> uploads;
};

class PortraitTest : public testsupport::ApiServerTest {
 protected:
  void SetUp() override {
    ApiServerTest::SetUp();
    GlobalData::sharedInstance().setSelfInfo(
        std::make_shared<UserInfoModel>(Json{{"sessionId", "S1"}, {"userName", "13800000000"}}));
    Env::current().objectStorage = storage_;
    Env::current().imageDecoder = decoder_;
  }
  // A JPEG of `width` x `height` in one grey.
  std::string picture(int width, int height) {
    DecodedImage image;
    image.width = width;
    image.height = height;
    image.stride = static_cast<std::size_t>(width) * 4;
    image.pixels.assign(image.stride * height, '\x60');
    return decoder_->encodeJpeg(image, 90).value();
  }
  std::optional<bool> upload(PortraitViewController& screen, const std::string& bytes) {
    std::optional<bool> stored;
    screen.onFinished = [&](bool ok) { stored = ok; };
    if (!screen.upload(bytes)) return std::nullopt;
    loop_->runUntil([&] { return stored.has_value(); }, std::chrono::seconds(10));
    return stored;
  }
  std::string lastShown() { return overlay_->shown().empty() ? "" : overlay_->shown().back().second; }

  std::shared_ptr<RecordingObjectStorage> storage_ = std::make_shared<RecordingObjectStorage>();
  std::shared_ptr<CodecImageDecoder> decoder_ = std::make_shared<CodecImageDecoder>();
};

TEST_F(PortraitTest, RefusesWhatIsNotAModestPictureBeforeSending) {
  PortraitViewController screen;
  const std::string jpeg = picture(64, 64);
  std::string huge = jpeg;
  huge.replace(huge.find("\xff\xc0") + 5, 4, "\x4e\x20\x4e\x20");  // 20000 x 20000
  const std::pair<std::string, const char*> cases[] = {
      {"just some text", "请选择图片"},
      {jpeg.substr(0, jpeg.size() / 2), "请选择图片"},
      {huge, "图片过大"},
      {jpeg + std::string(PortraitViewController::kMaxPictureBytes, '\0'), "图片过大"},
  };
  for (const auto& [bytes, message] : cases) {
    EXPECT_EQ(upload(screen, bytes), std::nullopt);
    EXPECT_EQ(lastShown(), message);
  }
  EXPECT_TRUE(storage_->uploads.empty());
  EXPECT_TRUE(received().empty());
  EXPECT_EQ(screen.currentPortrait(), "");
}

TEST_F(PortraitTest, SendsTheShrunkJpegToBothAndStoresItOnlyWhenBothTakeIt) {
  PortraitViewController screen;
  settings_->setData({'o', 'l', 'd'}, kHeaderImageNowKey);
  // The object store refuses: nothing more is sent, the old portrait stays.
  storage_->accept = false;
  EXPECT_EQ(upload(screen, picture(1280, 960)), false);
  EXPECT_EQ(lastShown(), "头像上传失败");
  EXPECT_TRUE(received().empty());
  // The server refuses.
  storage_->accept = true;
  answer("postPortrait", R"({"success":"1","message":"图片过大"})");
  EXPECT_EQ(upload(screen, picture(1280, 960)), false);
  EXPECT_EQ(lastShown(), "头像上传失败");
  EXPECT_EQ(screen.currentPortrait(), "old");

  answer("postPortrait", R"({"success":"0","data":{"imgUrl":""}})");
  const int flushes = settings_->synchronizeCount();
  EXPECT_EQ(upload(screen, picture(1280, 960)), true);
  ASSERT_EQ(storage_->uploads.size(), 3u);
  const auto& [name, sent] = storage_->uploads.back();
  EXPECT_EQ(name, "13800000000.png");
  EXPECT_EQ(decoder_->readSize(sent, {}).valueOr({}), (ImageSize{640, 480}));
  EXPECT_EQ(last().endpoint, "postPortrait");
  EXPECT_EQ(last().parts["file"].second, sent);
  EXPECT_EQ(screen.currentPortrait(), sent);
  EXPECT_GT(settings_->synchronizeCount(), flushes);
  // A picture already small enough keeps its size.
  EXPECT_EQ(upload(screen, picture(300, 200)), true);
  EXPECT_EQ(decoder_->readSize(screen.currentPortrait(), {}).valueOr({}), (ImageSize{300, 200}));
}

}  // namespace
}  // namespace qmv
