// The CLI run in-process against a hostile server, a damaged settings file and a full
// disk: no answer may crash a run, leave it silent, or make it claim what did not happen.
#include <gtest/gtest.h>
#include <sqlite3.h>
#include <sys/stat.h>

#include <algorithm>
#include <chrono>

#include "apps/qmv/cli_app.h"
#include "core/common/log.h"
#include "core/common/settings_keys.h"
#include "platform/linux/sqlite_settings_store.h"
#include "platform/testing/forwarding_settings_store.h"
#include "tests/cli_runner.h"
#include "tests/fault_server.h"

namespace qmv {
namespace {

using testsupport::FaultServer;

constexpr const char* kPassword = "qmv123";
constexpr const char* kConnectionFailed = "连接服务器失败,请稍后再试";

class HostilePeersTest : public testsupport::CliHomeTest {
 protected:
  testsupport::CliRun run(const std::string& fault, std::vector<std::string> args) {
    args.insert(args.begin(), {"--server", server_.url(fault)});
    return testsupport::runQmv(home_.home(), std::move(args));
  }

  static FaultServer server_;
};

FaultServer HostilePeersTest::server_;

TEST_F(HostilePeersTest, UnreadableAnswersFailAndSayWhy) {
  std::vector<std::string> warnings;
  ScopedLogSink sink([&warnings](const std::string& line) { warnings.push_back(line); });
  const auto warned = [&warnings](const std::string& part) {
    const bool found = std::any_of(warnings.begin(), warnings.end(),
                                   [&part](const std::string& w) { return w.find(part) != std::string::npos; });
    warnings.clear();
    return found;
  };
  for (const char* fault : {"deep-data", "deep-message", "garbage", "truncated"}) {
    warnings.clear();
    const auto login = run(fault, {"login", FaultServer::kPhone, kPassword});
    EXPECT_EQ(login.status, 1) << fault << "\n" << login.out;
    EXPECT_EQ(login.out, "") << fault << ": an answer without an envelope has no message to show";
    EXPECT_TRUE(setting(kPasswordKey).is_null()) << fault << ": a failed login stores no password";
    EXPECT_TRUE(warned("the answer of getUserLogin could not be read")) << fault;
    EXPECT_EQ(run(fault, {"search", "火锅"}).status, 1) << fault;
    EXPECT_TRUE(warned("the answer of getSearchList could not be read")) << fault;
  }

  // "success" "0" with a "data" that is no record: nothing is signed in or shown, and the
  // run says why.
  warnings.clear();
  const auto login = run("wrong-data", {"login", FaultServer::kPhone, kPassword});
  EXPECT_EQ(login.status, 1) << login.out;
  EXPECT_TRUE(warned("the answer of getUserLogin carried no \"data\" object"));
  for (const char* command : {"store", "activity"}) {
    EXPECT_EQ(run("wrong-data", {command, "1"}).status, 1) << command;
    EXPECT_TRUE(warned("carried no \"data\" object")) << command;
  }
  const auto search = run("wrong-data", {"search", "火锅"});
  EXPECT_EQ(search.status, 1);
  EXPECT_EQ(search.out, "") << "no empty page is shown for a page that could not be read";
  EXPECT_TRUE(warned("the answer of getSearchList carried no \"data\" object"));
}

TEST_F(HostilePeersTest, FailuresSayWhatHappenedInsteadOfShowingNothing) {
  std::vector<std::string> warnings;
  ScopedLogSink sink([&warnings](const std::string& line) { warnings.push_back(line); });
  const auto warned = [&warnings](const std::string& line) {
    const bool found = std::find(warnings.begin(), warnings.end(), line) != warnings.end();
    warnings.clear();
    return found;
  };
  ASSERT_EQ(run("member", {"login", FaultServer::kPhone, kPassword}).status, 0);

  // The stored account cannot be signed in: the run says why, not that nobody ever was.
  const auto unreachable = testsupport::runQmv(home_.home(), {"--server", "http://127.0.0.1:9/qmv/app/v3/", "orders"});
  EXPECT_EQ(unreachable.status, 1);
  EXPECT_TRUE(unreachable.said("not signed in: the automatic login with the stored account failed: ")) << unreachable.err;
  EXPECT_FALSE(unreachable.said("qmv login")) << unreachable.err;
  const auto oversized = run("huge", {"contacts"});
  EXPECT_EQ(oversized.status, 1);
  EXPECT_TRUE(oversized.said("failed: answer larger than 8388608 bytes")) << oversized.err;
  const auto invalid = testsupport::runQmv(home_.home(), {"--server", "localhost:8080/qmv/app/v3/", "wheel"});
  EXPECT_EQ(invalid.status, 1);
  EXPECT_TRUE(invalid.said("\"localhost:8080/qmv/app/v3/\" (--server) is not an http or https URL")) << invalid.err;

  // The order list of a signed-in member: each failure is said, none reads as "no orders".
  const auto expired = run("expired", {"orders"});
  EXPECT_EQ(expired.status, 1);
  EXPECT_EQ(expired.out, "");
  EXPECT_TRUE(warned("getMyPosts: the session has expired"));
  EXPECT_TRUE(expired.said("signed out by the server")) << expired.err;
  const auto bare = run("bare-refusal", {"orders"});
  EXPECT_EQ(bare.status, 1);
  EXPECT_EQ(bare.out, "");
  EXPECT_TRUE(warned("getMyPosts: refused without a message"));
  const auto broken = run("broken", {"orders"});
  EXPECT_EQ(broken.status, 1);
  EXPECT_EQ(broken.out, std::string(kConnectionFailed) + "\n");
  EXPECT_TRUE(warned("getMyPosts: HTTP status 500"));
  // A list answered as an object is no empty list, wherever a list is read.
  for (const auto& [command, endpoint] : {std::pair{"orders", "getMyPosts"}, {"contacts", "getMyContacts"}}) {
    const auto object = run("list-object", {command});
    EXPECT_EQ(object.status, 1) << command;
    EXPECT_FALSE(object.has("no orders")) << object.out;
    EXPECT_TRUE(warned(std::string("the answer of ") + endpoint + " carried no \"dataList\" array")) << command;
  }

  // A later page that fails keeps the rows before it on show, and the run fails.
  const auto orders = run("second-page-fails", {"orders", "--page", "2"});
  EXPECT_EQ(orders.status, 1);
  EXPECT_TRUE(orders.has("订单号:O1 | 套餐")) << orders.out;
  EXPECT_TRUE(orders.has(kConnectionFailed)) << orders.out;
  EXPECT_TRUE(warned("getMyPosts: HTTP status 500"));
  const auto stores = run("second-page-fails", {"search", "店", "--page", "2"});
  EXPECT_EQ(stores.status, 1);
  EXPECT_TRUE(stores.has("一店")) << stores.out;
  EXPECT_TRUE(stores.has("page 1\n")) << "page 2 stays the one to ask for: " << stores.out;

  // A refund the server accepts while the order stays to be used is no refund.
  const auto refund = run("refund-noop", {"refund", "O1", "--answer", "确定"});
  EXPECT_EQ(refund.status, 1);
  EXPECT_TRUE(refund.said("the server accepted the refund, but order O1 still reads 待使用")) << refund.err;
}

TEST_F(HostilePeersTest, OversizedAnswersFailAsConnectionFailuresAtOnce) {
  std::vector<std::string> warnings;
  ScopedLogSink sink([&warnings](const std::string& line) { warnings.push_back(line); });
  for (const char* fault : {"huge", "endless"}) {
    warnings.clear();
    const auto started = std::chrono::steady_clock::now();
    const auto search = run(fault, {"search", "火锅"});
    const auto took = std::chrono::steady_clock::now() - started;
    EXPECT_EQ(search.status, 1) << fault;
    EXPECT_EQ(search.out, std::string(kConnectionFailed) + "\n") << fault;
    EXPECT_NE(std::find(warnings.begin(), warnings.end(), "getSearchList: answer larger than 8388608 bytes"),
              warnings.end())
        << fault << ": the reason beside the message";
    // Well inside the 10-second transfer timeout: the limit ended it, not the clock.
    EXPECT_LT(took, std::chrono::seconds(5)) << fault;
  }
}

TEST_F(HostilePeersTest, KeywordsThatAreNoWordsAreNotRemembered) {
  const auto login = run("too-large", {"login", FaultServer::kPhone, kPassword});
  EXPECT_EQ(login.out, std::string(kConnectionFailed) + "\n");
  const std::string keyword(1 << 20, 'k');  // the server refuses the URI (414)
  for (const std::string& word : {keyword, std::string("\xff")}) {
    const auto search = run("too-large", {"search", word});
    EXPECT_EQ(search.status, 1);
    EXPECT_EQ(search.out.substr(0, search.out.find('\n')), kConnectionFailed);
  }
  EXPECT_EQ(run("too-large", {"search", "火锅"}).status, 1);
  EXPECT_EQ(setting(kSearchKeyWordsKey), Json::array({"火锅"}));
}

TEST_F(HostilePeersTest, TerminalControlsFromTheServerArriveEscaped) {
  const auto refused = run("escapes", {"login", "13900000000", kPassword});
  EXPECT_EQ(refused.status, 1);
  const std::string escaped = "\\x1b]0;owned\\x07\\x1b[2J\\x0dfake\\x00\\u009b1m\\u202egnp\\u200b\\ufeff\n";
  EXPECT_EQ(refused.out, "密码错误" + escaped);
  const auto member = run("escapes", {"login", FaultServer::kPhone, kPassword});
  EXPECT_EQ(member.status, 0);
  EXPECT_TRUE(member.has("昵称: " + escaped)) << member.out;
  for (const std::string& raw :
       {std::string("\x1b"), std::string("\x07"), std::string("\r"), std::string(1, '\0'), std::string("\xc2\x9b"),
        std::string("\u202E"), std::string("\u200B"), std::string("\uFEFF")}) {
    EXPECT_EQ((refused.out + member.out).find(raw), std::string::npos) << "a raw control reached the terminal";
  }
}

TEST_F(HostilePeersTest, ExtremeNumbersAreRangeChecked) {
  const auto me = run("extreme", {"login", FaultServer::kPhone, kPassword});
  EXPECT_EQ(me.status, 0) << me.out;
  EXPECT_TRUE(me.has("余额: ￥1" + std::string(298, '0') + ".00\n")) << me.out;
  EXPECT_TRUE(me.has("-9223372036854775808/0\n")) << me.out;
  EXPECT_TRUE(me.has("距离下一等级还需要9223372036854775807经验\n")) << me.out;

  // South of the equator the position has no Baidu form: no route, rather than "nan".
  const auto route = run("extreme", {"--at", "-33.86,151.2", "route", "1"});
  EXPECT_EQ(route.status, 1);
  EXPECT_EQ(route.out, "未获取到用户当前位置\n");
  EXPECT_TRUE(run("extreme", {"--at", "35.05,118.33", "route", "1"}).has("baidumap://map/direction?origin=35.0"));
  // Stores off the globe have no distance and no route.
  const auto far = run("extreme", {"--at", "35.05,118.33", "route", "2"});
  EXPECT_EQ(far.status, 1);
  EXPECT_TRUE(far.has("位置信息错误\n")) << far.out;
  const auto rows = run("extreme", {"--at", "35.05,118.33", "search", "远"});
  EXPECT_TRUE(rows.has("7 远店 |  | --km |") && rows.has("8 无店 |  | --km |")) << rows.out;

  // Arguments outside the globe are usage errors, not numbers to print.
  for (const char* lat : {"1e300", "nan", "inf", "90.5", "-91"}) {
    const auto converted = testsupport::runQmv(home_.home(), {"convert", "wgs-gcj", lat, "100"});
    EXPECT_EQ(converted.status, 2) << lat << "\n" << converted.out;
  }
  EXPECT_EQ(testsupport::runQmv(home_.home(), {"convert", "wgs-gcj", "35", "180.01"}).status, 2);
  EXPECT_EQ(testsupport::runQmv(home_.home(), {"convert", "wgs-gcj", "-90", "-180"}).status, 0);
}

TEST_F(HostilePeersTest, DamagedStoredValueIsIgnoredAndFilesArePrivate) {
  const std::filesystem::path fresh = home_.home() / "fresh";
  {
    auto opened = SqliteSettingsStore::openInHome(fresh);
    ASSERT_TRUE(opened.ok()) << opened.status().message();
  }
  ::chmod((fresh / "settings.db").c_str(), 0644);  // as an earlier version left it
  sqlite3* db = nullptr;
  ASSERT_EQ(sqlite3_open((fresh / "settings.db").c_str(), &db), SQLITE_OK);
  std::string deep(FaultServer::kDeep, '[');
  deep += std::string(FaultServer::kDeep, ']');
  for (const char* key : {kSearchKeyWordsKey, kRecordCityKey, kUserPhoneKey}) {
    const std::string sql = std::string("INSERT INTO settings VALUES ('") + key + "', 'array', '" + deep + "')";
    ASSERT_EQ(sqlite3_exec(db, sql.c_str(), nullptr, nullptr, nullptr), SQLITE_OK);
  }
  sqlite3_close(db);

  const auto history = testsupport::runQmv(fresh, {"--server", server_.url("member"), "history"});
  EXPECT_EQ(history.status, 0) << history.out;
  EXPECT_EQ(history.out, "暂无历史记录\n");
  EXPECT_EQ(testsupport::runQmv(fresh, {"--server", server_.url("member"), "me"}).status, 1);
  EXPECT_EQ(testsupport::runQmv(fresh, {"--server", server_.url("member"), "search", "火锅"}).status, 1);
  EXPECT_EQ(testsupport::runQmv(fresh, {"--server", server_.url("member"), "history"}).out, "历史搜索\n  火锅\n");

  // The password and the session are the member's alone.
  const std::filesystem::path made = home_.home() / "made";
  EXPECT_EQ(testsupport::runQmv(made, {"--server", server_.url("member"), "login", FaultServer::kPhone, kPassword})
                .status,
            0);
  struct stat status {};
  for (const auto& [path, mode] : {std::pair{made, 0700}, {made / "settings.db", 0600}, {fresh / "settings.db", 0600}}) {
    ASSERT_EQ(::stat(path.c_str(), &status), 0) << path;
    EXPECT_EQ(status.st_mode & 0777, static_cast<unsigned>(mode)) << path;
  }
}

TEST_F(HostilePeersTest, LoginOnAFullDiskSaysSoAndFails) {
  cli::CliApp::settingsWrapperForTesting() = [](std::shared_ptr<SettingsStore> store) {
    return std::make_shared<testsupport::FullDiskSettingsStore>(std::move(store));
  };
  const auto login = run("member", {"login", FaultServer::kPhone, kPassword});
  cli::CliApp::settingsWrapperForTesting() = nullptr;
  EXPECT_EQ(login.status, 1);
  EXPECT_EQ(login.out, "账号信息保存失败,请检查存储空间\n") << "no member is shown as signed in";
  EXPECT_TRUE(setting(kPasswordKey).is_null());
}

}  // namespace
}  // namespace qmv
