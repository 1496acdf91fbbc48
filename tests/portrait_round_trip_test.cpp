// The portrait across starts of the application against the embedded sandbox: the picture
// uploaded comes back, as the same JPEG, with the next login; logout removes it.
#include <gtest/gtest.h>

#include <fstream>
#include <iterator>

#include "platform/linux/codec_image_decoder.h"
#include "platform/testing/temp_home.h"
#include "tests/cli_runner.h"

namespace qmv {
namespace {

// ./portrait.jpg lands in the working directory; a failed assertion must not leave the
// rest of the binary in a removed one.
class ScopedWorkingDirectory {
 public:
  explicit ScopedWorkingDirectory(const std::filesystem::path& to) { std::filesystem::current_path(to); }
  ~ScopedWorkingDirectory() { std::filesystem::current_path(previous_); }
  ScopedWorkingDirectory(const ScopedWorkingDirectory&) = delete;
  ScopedWorkingDirectory& operator=(const ScopedWorkingDirectory&) = delete;

 private:
  std::filesystem::path previous_ = std::filesystem::current_path();
};

std::string readFile(const std::filesystem::path& path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

TEST(PortraitRoundTripTest, TheUploadedPortraitComesBackWithTheNextLoginAndGoesAtLogout) {
  TempHome home;
  const auto run = [&](std::vector<std::string> args) { return testsupport::runQmv(home.home(), std::move(args)); };
  const CodecImageDecoder codecs;
  DecodedImage image;
  image.width = 1000;
  image.height = 800;
  image.stride = 4000;
  image.pixels.assign(image.stride * image.height, '\x90');
  const auto picture = home.home() / "chosen.jpg";
  std::ofstream(picture, std::ios::binary) << codecs.encodeJpeg(image, 95).value();
  const ScopedWorkingDirectory inHome(home.home());

  ASSERT_EQ(run({"login", "13800000000", "qmv123"}).status, 0);
  const auto uploaded = run({"portrait", picture.string()});
  ASSERT_EQ(uploaded.status, 0) << uploaded.out << uploaded.err;
  ASSERT_EQ(run({"portrait"}).status, 0);
  const std::string sent = readFile("portrait.jpg");
  EXPECT_EQ(codecs.readSize(sent, {}).valueOr({}), (ImageSize{640, 512}));

  ASSERT_EQ(run({"logout"}).status, 0);
  const auto none = run({"portrait"});
  EXPECT_NE(none.status, 0);
  std::filesystem::remove("portrait.jpg");
  EXPECT_TRUE(none.has("暂无头像")) << none.out << none.err;

  ASSERT_EQ(run({"login", "13800000000", "qmv123"}).status, 0);
  const auto again = run({"portrait"});
  EXPECT_EQ(again.status, 0) << again.out << again.err;
  EXPECT_EQ(readFile("portrait.jpg"), sent);
}

}  // namespace
}  // namespace qmv
