#include "apps/sandbox/sandbox_server.h"

#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <sstream>
#include <thread>

#include "apps/sandbox/sandbox_test_support.h"

namespace qmv::sandbox::testing {
namespace {

TEST_F(SandboxTest, ServesTheEnvelopeAndAnswersUnknownPathsWith404) {
  EXPECT_EQ(server_->baseUrl(), "http://127.0.0.1:" + std::to_string(server_->port()) + "/qmv/app/v3/");
  const Json catalogue = api_->get("getCategoryList");
  EXPECT_EQ(code(catalogue), "0");
  EXPECT_EQ(catalogue["message"], "");
  EXPECT_EQ(api_->get("getNoSuchThing"), Json({{"status", 404}}));
  EXPECT_EQ(api_->get("../static/dial/index.html").value("status", 0), 404);
  auto res = api_->raw().Get("/qmv/app/v2/getCategoryList");
  ASSERT_TRUE(res);
  EXPECT_EQ(res->status, 404);
  // A GET endpoint asked with POST is not served.
  EXPECT_EQ(api_->post("getCategoryList").value("status", 0), 405);
}

TEST_F(SandboxTest, EveryCatalogueEndpointIsServedWithItsMethod) {
  const auto names = [](const char* list) {
    std::vector<std::string> all;
    std::istringstream in(list);
    for (std::string name; in >> name;) all.push_back(name);
    return all;
  };
  const auto gets = names(
      "getUserLogin getMobileCode getCheckCode4ChgMobile getCheckCode getUserLogout getUserInfo getCategoryList "
      "getCategorTemplates1 getSearchList getTypeSearchList getAreaList getMapList getStoreDetailInfo "
      "getCommodityDetailInfo getRemarkMeByUser getMyFavorite getMyCommodityFavorite getCarouselList "
      "getRecommendStore getPopularList getMyMessage getMyReadMessage getIndianaProduct getMyPosts getOrderDetail "
      "getMyVoucher getTopUpListForUser getBoundBankCard getMyContacts getIndirectContacts getMyRemark getWheels "
      "getWheelResult");
  const auto posts = names(
      "postUserRegisterWeb postFindPassword postChangePassword postChangeSelf postPortrait PostGrade postBookmark "
      "postCollectCommodity postFeedback postPayForStore postPayForIndiana postPayForActivity postRefund "
      "bindBankCard unBindingBankCard withDraw");
  ASSERT_EQ(gets.size() + posts.size(), 49u);
  for (const auto& [list, post] : {std::pair{&gets, false}, std::pair{&posts, true}}) {
    for (const auto& name : *list) {
      const Json reply = post ? api_->post(name) : api_->get(name);
      EXPECT_TRUE(reply.contains("success") && reply.contains("message") && reply.contains("data")) << name;
    }
  }
}

// Hostile, malformed or missing arguments on any endpoint, each checked before its handler
// runs: a failure envelope that says why (the expired-session code where a member is
// needed), nothing stored, and the server still answering. Login and logout moving a
// session in and out of the guarded endpoints is the orders and account contracts' part.
TEST_F(SandboxTest, BadArgumentsGiveAFailureEnvelopeNeverACrashAndStoreNothing) {
  const std::string session = api_->login();
  const auto pay = [&](const char* fee, const char* channel = "3") {
    return Args{{"sessionId", session}, {"totalFee", fee}, {"accountType", channel}, {"storeId", "3"}};
  };
  const auto feedback = [&](const std::string& text, const std::string& contact = "", const char* type = "0") {
    return Args{{"sessionId", session}, {"concent", text}, {"contact", contact}, {"type", type}};
  };
  const struct {
    bool post;
    const char* name;
    Args args;
    const char* code;
    const char* message;  // null: any message
  } cases[] = {
      {false, "getTypeSearchList", {{"page", "abc"}}, "1", nullptr},
      {false, "getTypeSearchList", {{"sort", "9"}}, "1", nullptr},
      {false, "getTypeSearchList", {{"type", "x"}, {"page", "1"}}, "1", nullptr},
      {false, "getPopularList", {{"page", "-1"}}, "1", nullptr},
      {false, "getPopularList", {{"page", "2x"}}, "1", "页码格式不正确"},
      {false, "getStoreDetailInfo", {{"storeId", "99999999999999999999999"}}, "1", nullptr},
      {false, "getStoreDetailInfo", {{"storeId", "1;"}}, "1", "商家格式不正确"},
      {false, "getCommodityDetailInfo", {{"commodityId", "1' OR '1'='1"}}, "1", nullptr},
      {false, "getMyPosts", {{"sessionId", session}, {"type", "7"}}, "1", nullptr},
      {false, "getRemarkMeByUser", {{"storeId", "1"}, {"star", "six"}}, "1", nullptr},
      {false, "getWheelResult", {{"sessionId", session}, {"id", ""}}, "1", nullptr},
      {false, "getSearchList", {{"keyword", std::string(257, 'k')}}, "1", "关键字过长"},
      {false, "getSearchList", {{"keyword", "\xc3"}, {"area", "371300"}}, "1", "关键字格式不正确"},
      {false, "getMobileCode", {{"mobile", "12912345678"}}, "1", "请输入正确的手机号"},
      {true, "postChangeSelf", {{"sessionId", session}, {"nickName", "bad\xff\xfe"}}, "1", "昵称格式不正确"},
      {true, "postPayForStore", pay("1e3"), "1", nullptr},
      {true, "postPayForStore", pay("0"), "1", nullptr},
      {true, "postPayForStore", pay("-5"), "1", nullptr},
      {true, "postPayForStore", pay("12.5"), "1", nullptr},
      {true, "postPayForStore", pay(""), "1", nullptr},
      {true, "postPayForStore", pay("100", "7"), "1", "支付方式不正确"},
      {true, "/sandbox/pay/complete", {{"prepay_id", std::string(65, 'p')}}, "1", "支付单过长"},
      // Feedback is bounded in characters (500 Chinese ones, 1500 bytes, fit; see below).
      {true, "postFeedback", feedback(""), "1", "请输入反馈内容"},
      {true, "postFeedback", feedback(" \n "), "1", "请输入反馈内容"},
      {true, "postFeedback", feedback(std::string(1001, 'f')), "1", "反馈内容过长"},
      {true, "postFeedback", feedback("好用", std::string(51, '1')), "1", "联系方式过长"},
      {true, "postFeedback", feedback("好用", "qq", "1"), "1", "参数错误"},
      {true, "postFeedback",
       feedback("好用",
                "a\x1b"
                "b"),
       "1", "联系方式格式不正确"},
      // A member's endpoints without a session, or with one the server never gave.
      {true, "postPayForStore", {{"totalFee", "100"}, {"accountType", "3"}}, "2", nullptr},
      {false, "getUserInfo", {{"sessionId", "not-a-session"}}, "2", nullptr},
  };
  for (const auto& c : cases) {
    const Json reply = c.post ? api_->post(c.name, c.args) : api_->get(c.name, c.args);
    EXPECT_EQ(code(reply), c.code) << c.name << ' ' << reply.dump();
    if (c.message != nullptr) {
      EXPECT_EQ(reply.value("message", ""), c.message) << c.name;
    } else if (std::string(c.code) == "1") {
      EXPECT_FALSE(reply.value("message", "").empty()) << c.name;
    }
  }
  for (const char* name : {"getUserInfo", "getMyPosts", "getBoundBankCard", "getMyContacts", "getWheels"}) {
    EXPECT_EQ(code(api_->get(name)), "2") << name;
  }
  std::string most;
  for (int i = 0; i < 500; ++i) most += "好";
  EXPECT_EQ(code(api_->post("postFeedback", feedback(most, std::string(50, '1')))), "0");
  EXPECT_EQ(api_->post("postFeedback", feedback(most + "x"))["message"], "反馈内容过长");
  EXPECT_EQ(code(api_->post("postFeedback", feedback("第一行\n第二行"))), "0") << "multi-line text where it belongs";
  // A raw body that is not a form is refused, not fatal.
  auto res = api_->raw().Post("/qmv/app/v3/postFeedback", std::string("\x00\xff{]", 5), "application/json");
  ASSERT_TRUE(res);
  EXPECT_EQ(code(parseJson(res->body)), "2");
  // Nothing was stored or taken, and the server still answers.
  const Json member = api_->get("getUserInfo", {{"sessionId", session}})["data"];
  EXPECT_EQ(member["nickName"], "演示会员");
  EXPECT_EQ(member["balance"], std::to_string(kDemoBalanceFen));
  EXPECT_EQ(code(api_->get("getCarouselList")), "0");
}

TEST_F(SandboxTest, DemoDataIsSeededOnceAndPersistsAcrossRestarts) {
  std::string session = api_->login();
  EXPECT_EQ(api_->balance(session), kDemoBalanceFen);
  const Json pay = api_->post("postPayForStore",
                              {{"sessionId", session}, {"totalFee", "1234"}, {"accountType", "3"}, {"storeId", "2"}});
  ASSERT_EQ(code(pay), "0");
  server_->stop();
  server_ = std::make_unique<SandboxServer>(SandboxOptions{home_, 0, "127.0.0.1", true});
  ASSERT_TRUE(server_->start().ok());
  api_ = std::make_unique<ApiClient>(server_->port());
  session = api_->login();
  EXPECT_EQ(api_->balance(session), kDemoBalanceFen - 1234) << "the home's data was seeded again";
  EXPECT_TRUE(std::filesystem::exists(home_ / "sandbox.db"));
}

TEST_F(SandboxTest, ServesTheSixPagesWithTheirTitlesAndAppLinks) {
  const std::pair<const char*, const char*> pages[] = {
      {"/static/coinone/index.html", "一元夺宝"},    {"/static/lebbs/index.html", "圈子"},
      {"/static/dial/index.html", "幸运大转盘"},     {"/static/address/index.html", "绑定地址"},
      {"/static/experience/index.html", "个人等级"}, {"/static/lebbs/myTopic.html", "我的帖子"}};
  for (const auto& [path, title] : pages) {
    auto res = api_->raw().Get(path);
    ASSERT_TRUE(res);
    EXPECT_EQ(res->status, 200) << path;
    EXPECT_NE(res->body.find(std::string("<title>") + title + "</title>"), std::string::npos) << path;
    EXPECT_NE(res->body.find("qmv://login"), std::string::npos) << path;
  }
  auto coin = api_->raw().Get("/static/coinone/index.html");
  EXPECT_NE(coin->body.find("qmv://pay?productId=1&series=12&acount=1"), std::string::npos);
  auto missing = api_->raw().Get("/static/nothing.html");
  EXPECT_EQ(missing->status, 404);

  // The page names the member of the "sessionId" cookie, and nobody for a dead session.
  const std::string session = api_->login();
  auto member = api_->raw().Get("/static/dial/index.html", {{"Cookie", "appVersion=1; sessionId=" + session}});
  EXPECT_NE(member->body.find("会员: 演示会员 13800000000"), std::string::npos) << member->body;
  auto stranger = api_->raw().Get("/static/dial/index.html", {{"Cookie", "sessionID=" + session + "; sessionId=x"}});
  EXPECT_NE(stranger->body.find("未登录"), std::string::npos) << stranger->body;

  // The invitation link's page shows its code, and nothing of a code that is no code.
  auto invited = api_->raw().Get("/static/register/index.html?inviteID=100001");
  EXPECT_NE(invited->body.find("qmv://register?inviteID=100001"), std::string::npos) << invited->body;
  auto hostile = api_->raw().Get("/static/register/index.html?inviteID=%3Cscript%3E");
  EXPECT_EQ(hostile->status, 200);
  EXPECT_EQ(hostile->body.find("<script>"), std::string::npos) << hostile->body;
  EXPECT_NE(hostile->body.find("邀请码无效"), std::string::npos);
}

TEST(SandboxServerLifecycle, ReportsABusyPortAndAnUnusableHome) {
  const auto home = freshHome();
  SandboxServer first(SandboxOptions{home, 0, "127.0.0.1", true});
  ASSERT_TRUE(first.start().ok());
  SandboxServer second(SandboxOptions{freshHome(), first.port(), "127.0.0.1", true});
  EXPECT_FALSE(second.start().ok());
  EXPECT_EQ(second.port(), 0);
  SandboxServer blocked(SandboxOptions{"/proc/qmv-sandbox-cannot-be-here", 0, "127.0.0.1", true});
  EXPECT_FALSE(blocked.start().ok());
  first.stop();
  first.stop();
  std::filesystem::remove_all(home);
}

// The socket-free entry the request fuzzer drives, and the recording that seeds it: the
// same parsing and routing as a connection, an unreadable request answered 400, and the
// exchange saved so that replaying the saved request gives the same answer.
TEST(SandboxServerInMemory, AnswersRawRequestsAndRecordsThem) {
  const auto home = freshHome();
  const auto record = home / "record";
  ::setenv("QMV_SANDBOX_RECORD", record.c_str(), 1);
  SandboxServer server(SandboxOptions{home, 0, "127.0.0.1", true});
  const std::string request = "GET /qmv/app/v3/getCategoryList HTTP/1.1\r\nHost: h\r\n\r\n";
  const std::string answer = server.answerRequest(request).valueOr("");
  ::unsetenv("QMV_SANDBOX_RECORD");
  EXPECT_EQ(answer.rfind("HTTP/1.1 200 OK\r\n", 0), 0u) << answer;
  const Json envelope = parseJson(answer.substr(answer.find("\r\n\r\n") + 4));
  EXPECT_EQ(envelope["success"], "0");
  EXPECT_EQ(server.answerRequest("GET /qmv/app/v3/getNoSuchThing HTTP/1.1\r\n\r\n").valueOr("").rfind("HTTP/1.1 404", 0), 0u);
  EXPECT_EQ(server.answerRequest("NONSENSE\r\n\r\n").valueOr("").rfind("HTTP/1.1 400", 0), 0u);

  const std::string first = std::to_string(::getpid()) + "-0";
  std::ifstream saved(record / ("request-" + first + ".http"), std::ios::binary);
  const std::string replay{std::istreambuf_iterator<char>(saved), {}};
  EXPECT_EQ(replay.rfind("GET /qmv/app/v3/getCategoryList HTTP/1.1\r\n", 0), 0u) << replay;
  EXPECT_EQ(server.answerRequest(replay).valueOr(""), answer);
  std::ifstream body(record / ("answer-" + first + ".json"), std::ios::binary);
  EXPECT_EQ(parseJson(std::string{std::istreambuf_iterator<char>(body), {}}), envelope);
  std::filesystem::remove_all(home);
}

}  // namespace
}  // namespace qmv::sandbox::testing
