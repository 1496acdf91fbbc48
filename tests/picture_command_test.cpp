// `qmv picture` against the embedded sandbox's object store: the first start fetches the
// picture from the network, the next finds it on disk; --out saves the original bytes.
#include <gtest/gtest.h>

#include <fstream>
#include <iterator>

#include "platform/linux/codec_image_decoder.h"
#include "tests/cli_runner.h"

namespace qmv {
namespace {

class PictureCommandTest : public testsupport::DemoMemberCliTest {};

TEST_F(PictureCommandTest, FetchesOnceThenReadsTheDiskCacheAndSavesTheOriginal) {
  const CodecImageDecoder codecs;
  DecodedImage image{750, 500, 750 * 4, std::string(750 * 500 * 4, '\x70')};
  const auto chosen = home_.home() / "chosen.jpg";
  std::ofstream(chosen, std::ios::binary) << codecs.encodeJpeg(image, 90).value();
  // The portrait lands in the object store as "<member>.png", at most 640 px a side.
  const auto uploaded = run({"portrait", chosen.string()});
  ASSERT_EQ(uploaded.status, 0) << uploaded.out << uploaded.err;

  const auto first = run({"picture", "13800000000.png", "--size", "200"});
  ASSERT_EQ(first.status, 0) << first.out << first.err;
  EXPECT_TRUE(first.has("来源: 网络")) << first.out;
  EXPECT_TRUE(first.has("尺寸: 200×133")) << first.out;

  const auto saved = home_.home() / "saved.jpg";
  const Json again = data({"picture", "13800000000.png", "--out", saved.string()});
  EXPECT_EQ(again.value("source", ""), "disk");
  EXPECT_EQ(again.value("width", 0), 640);
  std::ifstream in(saved, std::ios::binary);
  const std::string bytes{std::istreambuf_iterator<char>(in), {}};
  EXPECT_EQ(codecs.readSize(bytes, {}).valueOr({}), (ImageSize{640, 427}));

  const auto missing = run({"picture", "nobody.png"});
  EXPECT_EQ(missing.status, 1);
  EXPECT_TRUE(missing.said("picture: network: HTTP 404")) << missing.err;
}

}  // namespace
}  // namespace qmv
