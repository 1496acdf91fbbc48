// `qmv picture` against the embedded sandbox's object store: the first start fetches the
// picture from the network, the next (in the same shell) finds it on disk; --out saves the original bytes.
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

  // One shell, so that both lines reach the same sandbox (its port, and so the URL, differs
  // from start to start).
  const auto saved = home_.home() / "saved.jpg";
  const auto shell = run({"shell"}, "picture 13800000000.png --size 200\npicture 13800000000.png --out " +
                                        saved.string() + "\n");
  ASSERT_EQ(shell.status, 0) << shell.out << shell.err;
  const auto network = shell.out.find("来源: 网络");
  EXPECT_NE(network, std::string::npos) << shell.out;
  EXPECT_TRUE(shell.has("尺寸: 200×133")) << shell.out;
  EXPECT_NE(shell.out.find("来源: 磁盘", network), std::string::npos) << shell.out;
  EXPECT_TRUE(shell.has("尺寸: 640×427")) << shell.out;
  std::ifstream in(saved, std::ios::binary);
  const std::string bytes{std::istreambuf_iterator<char>(in), {}};
  EXPECT_EQ(codecs.readSize(bytes, {}).valueOr({}), (ImageSize{640, 427}));

  const auto missing = run({"picture", "nobody.png"});
  EXPECT_EQ(missing.status, 1);
  EXPECT_TRUE(missing.said("picture: network: HTTP 404")) << missing.err;
}

}  // namespace
}  // namespace qmv
