#include "apps/sandbox/parameter_rules.h"

#include <set>

#include "apps/sandbox/endpoint_table.h"
#include "apps/sandbox/sandbox_test_support.h"

namespace qmv::sandbox::testing {
namespace {

// A member's 4.4 MB nickname once made his inviter's contacts unlistable and himself
// unable to sign in; every field now has a size and a kind, checked before any handler.
TEST_F(SandboxTest, ArgumentsBeyondTheirSizeOrKindAreRefusedAndNothingIsStored) {
  const std::string zhang = api_->login("13800000001");
  ASSERT_FALSE(zhang.empty());
  const auto changeNickName = [&](const std::string& value) {
    return api_->post("postChangeSelf", {{"sessionId", zhang}, {"nickName", value}});
  };
  // As a multipart text part: a form body that large the library refuses by itself.
  const auto huge = api_->raw().Post(
      "/qmv/app/v3/postChangeSelf",
      httplib::MultipartFormDataItems{{"sessionId", zhang, "", ""}, {"nickName", std::string(4400000, 'x'), "", ""}});
  ASSERT_TRUE(huge);
  EXPECT_EQ(parseJson(huge->body)["message"], "昵称过长");
  EXPECT_EQ(changeNickName(std::string(65, 'x'))["message"], "昵称过长");
  for (const std::string& bad : {std::string("a\x01z"), std::string("\xe4\xb8"),
                                 std::string("\xe2\x80\xae"
                                             "abc")}) {
    const Json refused = changeNickName(bad);
    EXPECT_EQ(code(refused), "1");
    EXPECT_EQ(refused["message"], "昵称格式不正确");
  }
  EXPECT_EQ(api_->get("getUserInfo", {{"sessionId", zhang}})["data"]["nickName"], "张三");
  ASSERT_EQ(code(changeNickName("阿三")), "0");
  EXPECT_EQ(api_->get("getMyContacts", {{"sessionId", api_->login()}})["data"]["dataList"][0]["name"], "阿三");
  EXPECT_FALSE(api_->login("13800000001").empty());
}

TEST(SandboxParameterRules, EveryEndpointHasItsRules) {
  EndpointTable table;
  registerAllHandlers(table);
  std::set<std::string> endpoints = {kCompletionRoute};
  for (const auto& [name, endpoint] : table.all()) endpoints.insert(name);
  const auto listed = endpointsWithParameters();
  EXPECT_EQ(std::set<std::string>(listed.begin(), listed.end()), endpoints);
}

}  // namespace
}  // namespace qmv::sandbox::testing
