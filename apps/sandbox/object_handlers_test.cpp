#include "apps/sandbox/object_handlers.h"

#include "apps/sandbox/sandbox_test_support.h"

namespace qmv::sandbox::testing {
namespace {

using ObjectHandlersTest = SandboxTest;

TEST_F(ObjectHandlersTest, StoresObjectsAsFilesAndRefusesNamesOutsideItsDirectory) {
  httplib::Client& http = api_->raw();
  const std::string bytes("\xFF\xD8\x00jpeg\xFF\xD9", 9);
  auto put = http.Put("/oss/13800000000.png", bytes, "application/octet-stream");
  ASSERT_TRUE(put);
  EXPECT_EQ(put->status, 200);
  auto got = http.Get("/oss/13800000000.png");
  ASSERT_TRUE(got);
  EXPECT_EQ(got->status, 200);
  EXPECT_EQ(got->body, bytes);
  EXPECT_TRUE(std::filesystem::exists(home_ / "oss" / "13800000000.png"));

  // Replacing keeps one object with the new bytes.
  ASSERT_TRUE(http.Put("/oss/13800000000.png", "v2", "application/octet-stream"));
  EXPECT_EQ(http.Get("/oss/13800000000.png")->body, "v2");

  EXPECT_EQ(http.Get("/oss/absent.png")->status, 404);
  EXPECT_EQ(http.Put("/oss/.hidden", "x", "text/plain")->status, 400);
  EXPECT_EQ(http.Get("/oss/..%2Fsandbox.db")->status, 404);
  EXPECT_EQ(http.Put("/oss/..%2Fescape", "x", "text/plain")->status, 404);
  EXPECT_FALSE(std::filesystem::exists(home_ / "escape"));
}

}  // namespace
}  // namespace qmv::sandbox::testing
