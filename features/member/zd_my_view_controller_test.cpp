// The member tab: the record's lines, the stored portrait decoded small (and nothing for a
// picture that cannot be read), the badge on the messages entry alone, and the entries'
// screens with their arguments.
#include "features/member/zd_my_view_controller.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "core/common/settings_keys.h"
#include "core/request/net_api_test_support.h"
#include "platform/linux/codec_image_decoder.h"

namespace qmv {
namespace {

class ZDMyTest : public testsupport::ApiServerTest {
 protected:
  void SetUp() override {
    ApiServerTest::SetUp();
    Env::current().imageDecoder = decoder_;
  }
  void store(const std::string& bytes) {
    settings_->setData(std::vector<std::uint8_t>(bytes.begin(), bytes.end()), kHeaderImageNowKey);
  }
  std::size_t indexOf(const std::string& title) {
    const auto entries = ZDMyViewController::entries();
    return std::find_if(entries.begin(), entries.end(), [&](const auto& e) { return e.title == title; }) -
           entries.begin();
  }
  std::shared_ptr<CodecImageDecoder> decoder_ = std::make_shared<CodecImageDecoder>();
};

TEST_F(ZDMyTest, ShowsTheRecordAndAPortraitShrunkToTheTabOnlyWhenOneCanBeRead) {
  DecodedImage wide;
  wide.width = 640;
  wide.height = 320;
  wide.stride = 640 * 4;
  wide.pixels.assign(wide.stride * 320, '\x80');
  store(decoder_->encodeJpeg(wide, 85).value());

  ZDMyViewController screen;
  EXPECT_FALSE(screen.hasMember());
  EXPECT_EQ(screen.nameText(), "");
  EXPECT_EQ(screen.portrait(), nullptr) << "a portrait left from someone else is not shown signed out";

  GlobalData::sharedInstance().setSelfInfo(std::make_shared<UserInfoModel>(
      Json{{"sessionId", "S1"}, {"userName", "13812345678"}, {"phone", "13812345678"}}));
  EXPECT_EQ(screen.nameText(), "1381***5678") << "no nick name: the account name, which is a phone, masked";
  EXPECT_EQ(screen.phoneText(), "1381***5678");
  EXPECT_TRUE(screen.levelText().starts_with("LV"));
  const DecodedImage* portrait = screen.portrait();
  ASSERT_NE(portrait, nullptr);
  EXPECT_EQ(portrait->size(), (ImageSize{128, 64}));

  store("\xff\xd8 not really a picture");
  EXPECT_EQ(screen.portrait(), nullptr);
  store("");
  EXPECT_EQ(screen.portrait(), nullptr);
}

TEST_F(ZDMyTest, BadgesOnlyTheMessagesEntryAndOpensEntriesWithTheirArguments) {
  logIn("S1");
  answer("getMyMessage", Json{{"success", "0"}, {"data", {{"dataList", {{{"isRead", "0"}}, {{"isRead", "1"}}}}}}}.dump());
  ZDMyViewController screen;
  bool changed = false;
  screen.onChanged = [&] { changed = true; };
  screen.viewWillAppear();
  loop_->runUntil([&] { return changed; }, std::chrono::seconds(10));
  for (std::size_t i = 0; i < ZDMyViewController::entries().size(); ++i) {
    EXPECT_EQ(screen.badgeOf(i), i == indexOf("我的消息") ? "1" : "") << i;
  }

  screen.openEntry(indexOf("我的订单"));
  screen.openEntry(indexOf("个人等级"));
  screen.openEntry(ZDMyViewController::entries().size());
  const auto layer = navigator_->layers().back();
  ASSERT_EQ(layer.size(), 2u) << "an index past the end opens nothing";
  EXPECT_EQ(layer[0].name, "QXMyOrderViewController");
  EXPECT_EQ(layer[0].payload, (Json{{"type", 0}}));
  EXPECT_EQ(layer[1].name, "QXH5ViewController");
  EXPECT_EQ(layer[1].payload, (Json{{"h5Type", 4}}));
}

}  // namespace
}  // namespace qmv
