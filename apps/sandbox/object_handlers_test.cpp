#include "apps/sandbox/object_handlers.h"

#include "apps/sandbox/sandbox_test_support.h"

namespace qmv::sandbox::testing {
namespace {

using ObjectHandlersTest = SandboxTest;

constexpr const char* kOctets = "application/octet-stream";

TEST_F(ObjectHandlersTest, MembersWriteOnlyTheirOwnPortraitsAndReadsStayOpen) {
  httplib::Client& http = api_->raw();
  const std::string bytes("\xFF\xD8\x00jpeg\xFF\xD9", 9);
  const std::string mine = "/oss/" + std::string(kDemoPhone) + ".png";
  EXPECT_EQ(http.Put(mine, bytes, kOctets)->status, 401);
  EXPECT_EQ(http.Put(mine + "?sessionId=0123456789abcdef0123456789abcdef", bytes, kOctets)->status, 401);
  const auto demoPortrait = http.Get(mine);  // drawn for him at seeding, untouched by refusals
  ASSERT_TRUE(demoPortrait);
  EXPECT_EQ(demoPortrait->status, 200);
  EXPECT_NE(demoPortrait->body, bytes);

  const std::string session = api_->login();
  const httplib::Headers signedIn = {{"Cookie", "theme=dark; sessionId=" + session}};
  ASSERT_EQ(http.Put(mine, signedIn, bytes, kOctets)->status, 200);
  auto got = http.Get(mine);  // anyone may read
  ASSERT_TRUE(got);
  EXPECT_EQ(got->status, 200);
  EXPECT_EQ(got->body, bytes);
  // Another member's portrait, or any other name, is not his to write.
  EXPECT_EQ(http.Put("/oss/13800000001.png", signedIn, "x", kOctets)->status, 403);
  EXPECT_EQ(http.Put(mine + ".sh", signedIn, "x", kOctets)->status, 403);
  EXPECT_EQ(http.Put("/oss/.hidden", signedIn, "x", kOctets)->status, 400);
  EXPECT_EQ(http.Put("/oss/..%2Fescape", signedIn, "x", kOctets)->status, 404);
  EXPECT_FALSE(std::filesystem::exists(home_ / "escape"));
  EXPECT_EQ(http.Get("/oss/..%2Fsandbox.db")->status, 404);
  EXPECT_EQ(http.Get("/oss/absent.png")->status, 404);

  // A client without cookies names the session in the query; replacing keeps one object.
  ASSERT_EQ(http.Put(mine + "?sessionId=" + session, "v2", kOctets)->status, 200);
  EXPECT_EQ(http.Get(mine)->body, "v2");
  // Past the cap nothing is stored, and the connection goes on serving.
  EXPECT_EQ(http.Put(mine, signedIn, std::string(kMaxObjectBytes + 1, 'x'), kOctets)->status, 413);
  EXPECT_TRUE(http.Get(mine)->body == "v2");

  ASSERT_EQ(code(api_->get("getUserLogout", {{"sessionId", session}})), "0");
  EXPECT_EQ(http.Put(mine, signedIn, "v3", kOctets)->status, 401);
  EXPECT_EQ(http.Get(mine)->body, "v2");
}

}  // namespace
}  // namespace qmv::sandbox::testing
