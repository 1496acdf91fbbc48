#include "platform/linux/curl_transport.h"

#include <glib.h>
#include <gtest/gtest.h>
#include <malloc.h>

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <map>
#include <optional>

#include "platform/cookie_store.h"
#include "platform/env.h"
#include "platform/linux/asio_main_loop.h"
#include "platform/linux/curl_cookie_store.h"
#include "platform/linux/glib_main_loop.h"
#include "platform/manual_main_loop.h"
#include "platform/testing/loopback_server.h"
#include "platform/testing/test_env.h"

namespace qmv {
namespace {

using std::chrono::milliseconds;

enum class Driver { workerThread, asioLoop, glibLoop };

// Every case runs on both drivers: a loop that cannot watch sockets gets a worker thread,
// the Asio and GLib loops have curl's sockets watched by the loop itself.
class CurlTransportTest : public ::testing::TestWithParam<Driver> {
 protected:
  void SetUp() override {
    auto& s = server_.server();
    s.Get("/missing", [](const httplib::Request&, httplib::Response& res) {
      res.status = 404;
      res.set_content(R"({"error":"none here"})", "application/json");
    });
    const auto slow = [this](const httplib::Request&, httplib::Response& res) {
      server_.sleepUnlessStopping(milliseconds(3000));
      res.set_content("late", "text/plain");
    };
    s.Get("/slow", slow);
    s.Post("/slow", slow);
    // Twelve bytes, one every 100 ms; or one chunk and then silence.
    s.Get("/dribble", [this](const httplib::Request&, httplib::Response& res) {
      res.set_chunked_content_provider("text/plain", [this](size_t offset, httplib::DataSink& sink) {
        if (offset >= 12 || server_.stopping()) {
          sink.done();
          return true;
        }
        server_.sleepUnlessStopping(milliseconds(100));
        return sink.write("x", 1);
      });
    });
    s.Get("/stall", [this](const httplib::Request&, httplib::Response& res) {
      res.set_chunked_content_provider("text/plain", [this](size_t offset, httplib::DataSink& sink) {
        if (offset > 0) server_.sleepUnlessStopping(milliseconds(5000));
        return sink.write("x", 1);
      });
    });
    s.Get("/moved", [this](const httplib::Request&, httplib::Response& res) {
      ++movedAsked_;
      res.set_redirect("/missing");
    });
    // What a hostile server sets beside its session: cookies for other hosts and for a
    // whole public suffix ("localhost" is one: unlisted names fall under the "*" rule).
    s.Get("/login", [](const httplib::Request&, httplib::Response& res) {
      for (const char* cookie : {"sessionId=abc; Path=/", "foreign=1; Domain=127.0.0.2", "wide=1; Domain=localhost",
                                 "shared=1; Domain=shop.localhost", "theme=dark; Max-Age=3600"}) {
        res.headers.emplace("Set-Cookie", cookie);
      }
      res.set_content("ok", "text/plain");
    });
    s.Get("/logout", [](const httplib::Request&, httplib::Response& res) {
      res.set_header("Set-Cookie", "sessionId=; Max-Age=0; Path=/");
      res.set_content("ok", "text/plain");
    });
    s.Get("/whoami", [](const httplib::Request& req, httplib::Response& res) {
      res.set_content(req.get_header_value("Cookie"), "text/plain");
    });
    // httplib answers a Range header with 206 and the rest of the content.
    s.Get("/file",
          [](const httplib::Request&, httplib::Response& res) { res.set_content(kFile, "application/octet-stream"); });
    s.Get("/count", [this](const httplib::Request& req, httplib::Response& res) {
      const int now = ++active_;
      for (int seen = peak_; now > seen && !peak_.compare_exchange_weak(seen, now);) {
      }
      server_.sleepUnlessStopping(milliseconds(60));
      --active_;
      res.set_content(req.get_param_value("n"), "text/plain");
    });
    s.Get("/echo", [](const httplib::Request& req, httplib::Response& res) {
      res.set_content(req.get_param_value("n"), "text/plain");
    });
    // Closes the connection after answering, so that the next request needs a new socket
    // (which the kernel tends to give the number of the one just closed).
    s.Get("/close", [](const httplib::Request& req, httplib::Response& res) {
      res.set_header("Connection", "close");
      res.set_content(req.get_param_value("n"), "text/plain");
    });
    s.Get("/endless", [this](const httplib::Request&, httplib::Response& res) {
      res.set_chunked_content_provider("text/plain", [this](std::size_t, httplib::DataSink& sink) {
        static const std::string chunk(4096, 'x');
        return !server_.stopping() && sink.write(chunk.data(), chunk.size());
      });
    });
    const auto inspect = [](const httplib::Request& req, httplib::Response& res) {
      res.set_content(req.method + "|" + req.get_header_value("Authorization") + "|" + req.body, "text/plain");
    };
    s.Get("/inspect", inspect);
    s.Post("/inspect", inspect);
    s.Get("/headers", [](const httplib::Request&, httplib::Response& res) {
      for (int i = 0; i < 1000; ++i) res.set_header("X-Filler-" + std::to_string(i), std::string(100, 'h'));
      res.set_content("ok", "text/plain");
    });
    server_.start();
    if (GetParam() == Driver::asioLoop) {
      loop_ = std::make_shared<AsioMainLoop>();
    } else if (GetParam() == Driver::glibLoop) {
      context_ = g_main_context_new();
      loop_ = std::make_shared<GLibMainLoop>(context_);
    } else {
      loop_ = std::make_shared<ManualMainLoop>();
    }
    transport_ = std::make_unique<CurlTransport>(loop_, cookies_);
  }

  void TearDown() override {
    transport_.reset();
    loop_.reset();
    if (context_ != nullptr) g_main_context_unref(context_);
  }

  // Runs what the loop has queued, such as progress reports.
  void drain() {
    loop_->runUntil([] { return false; }, milliseconds(20));
  }

  HttpResponse sendAndWait(HttpRequest request) {
    std::optional<HttpResponse> got;
    transport_->send(std::move(request), [&](HttpResponse r) { got = std::move(r); });
    EXPECT_TRUE(loop_->runUntil([&] { return got.has_value(); }, milliseconds(10000)));
    return got.value_or(HttpResponse{});
  }

  static constexpr const char* kFile = "0123456789abcdefghijklmnopqrstuvwxyz";
  testsupport::LoopbackServer server_;
  std::atomic<int> active_{0};
  std::atomic<int> peak_{0};
  std::atomic<int> movedAsked_{0};
  GMainContext* context_ = nullptr;
  std::shared_ptr<MainLoop> loop_;
  std::shared_ptr<CurlCookieStore> cookies_ = std::make_shared<CurlCookieStore>();
  std::unique_ptr<CurlTransport> transport_;
};

INSTANTIATE_TEST_SUITE_P(Drivers, CurlTransportTest,
                         ::testing::Values(Driver::workerThread, Driver::asioLoop, Driver::glibLoop),
                         [](const auto& info) {
                           return info.param == Driver::asioLoop   ? "AsioLoop"
                                  : info.param == Driver::glibLoop ? "GLibLoop"
                                                                   : "WorkerThread";
                         });

TEST_P(CurlTransportTest, StatusesErrorsAndTimeouts) {
  HttpRequest missing;
  missing.url = server_.url("/missing");
  HttpResponse r = sendAndWait(missing);
  EXPECT_EQ(r.status, 404);
  EXPECT_EQ(r.error, TransportError::none);
  EXPECT_EQ(r.body, R"({"error":"none here"})");

  // A redirect is followed; the final answer's status and fields are reported.
  HttpRequest moved;
  moved.url = server_.url("/moved");
  r = sendAndWait(moved);
  EXPECT_EQ(r.status, 404);
  EXPECT_TRUE(std::none_of(r.headers.begin(), r.headers.end(), [](const auto& h) { return h.first == "Location"; }));
  // Sent again, it starts from its own address, not from where the last one ended.
  EXPECT_EQ(sendAndWait(moved).status, 404);
  EXPECT_EQ(movedAsked_, 2);

  HttpRequest slow;
  slow.url = server_.url("/slow");
  slow.timeout = milliseconds(150);
  r = sendAndWait(slow);
  EXPECT_EQ(r.error, TransportError::timeout);
  EXPECT_EQ(r.status, 0);
  // Sent and then silent: the same limit once the body is out.
  slow.method = "POST";
  slow.body = "a=1";
  r = sendAndWait(slow);
  EXPECT_EQ(r.error, TransportError::timeout);
  EXPECT_EQ(r.status, 0);

  HttpRequest refused;
  refused.url = "http://127.0.0.1:1/nothing";
  r = sendAndWait(refused);
  EXPECT_EQ(r.error, TransportError::connection);
  EXPECT_FALSE(r.errorMessage.empty());
}

TEST_P(CurlTransportTest, AnswersBeyondTheLimitFailWithoutBeingKept) {
  HttpRequest fits;
  fits.url = server_.url("/file");
  fits.maxResponseBytes = 4096;
  EXPECT_EQ(sendAndWait(fits).body, kFile);
  // A length announced above the limit, a body that never ends, endless header fields.
  for (const char* path : {"/file", "/endless", "/headers"}) {
    HttpRequest request;
    request.url = server_.url(path);
    request.maxResponseBytes = path == std::string("/file") ? std::strlen(kFile) - 1 : 64 * 1024;
    const HttpResponse r = sendAndWait(request);
    EXPECT_EQ(r.error, TransportError::tooLarge) << path << ": " << r.errorMessage;
    EXPECT_EQ(r.status, 0) << path;
    EXPECT_TRUE(r.body.empty()) << path;
  }
}

TEST_P(CurlTransportTest, TheTimeoutLimitsSilenceNotTheWholeTransfer) {
  using Clock = std::chrono::steady_clock;
  HttpRequest moving;
  moving.url = server_.url("/dribble");
  moving.timeout = milliseconds(300);
  auto start = Clock::now();
  HttpResponse r = sendAndWait(moving);
  EXPECT_EQ(r.error, TransportError::none) << r.errorMessage;
  EXPECT_EQ(r.body, std::string(12, 'x'));
  EXPECT_GE(Clock::now() - start, milliseconds(1000)) << "the transfer outlasted its limit";

  HttpRequest stalled;
  stalled.url = server_.url("/stall");
  stalled.timeout = milliseconds(300);
  start = Clock::now();
  r = sendAndWait(stalled);
  EXPECT_EQ(r.error, TransportError::timeout);
  EXPECT_EQ(r.status, 0);
  EXPECT_LT(Clock::now() - start, milliseconds(2500)) << "not held for the server's five seconds";
}

TEST_P(CurlTransportTest, CancelStopsARunningTransferAtOnce) {
  HttpRequest slow;
  slow.url = server_.url("/slow");
  std::optional<HttpResponse> got;
  const auto id = transport_->send(std::move(slow), [&](HttpResponse r) { got = std::move(r); });
  // Let the transfer reach the server before cancelling it.
  loop_->runUntil([] { return false; }, milliseconds(100));
  const auto before = std::chrono::steady_clock::now();
  transport_->cancel(id);
  ASSERT_TRUE(loop_->runUntil([&] { return got.has_value(); }, milliseconds(2000)));
  EXPECT_LT(std::chrono::steady_clock::now() - before, milliseconds(1000));
  EXPECT_EQ(got->error, TransportError::cancelled);
  transport_->cancel(id);  // finished ids are ignored
}

TEST_P(CurlTransportTest, CookiesFollowABrowsersRules) {
  const auto get = [&](const std::string& host, const std::string& path) {
    HttpRequest request;
    request.url = "http://" + host + ":" + std::to_string(server_.port()) + path;
    return sendAndWait(request).body;
  };
  const auto names = [&] {
    std::map<std::string, bool> hostOnly;
    for (const Cookie& c : cookies_->cookies()) hostOnly[c.name + "@" + c.domain] = c.hostOnly;
    return hostOnly;
  };
  // Whatever a host sets is its own, or its domain's when that domain is no public suffix.
  get("127.0.0.1", "/login");
  get("a.shop.localhost", "/login");
  EXPECT_EQ(names(), (std::map<std::string, bool>{{"sessionId@127.0.0.1", true},
                                                  {"theme@127.0.0.1", true},
                                                  {"sessionId@a.shop.localhost", true},
                                                  {"theme@a.shop.localhost", true},
                                                  {"shared@shop.localhost", false}}));
  EXPECT_EQ(get("b.shop.localhost", "/whoami"), "shared=1");
  EXPECT_EQ(get("localhost", "/whoami"), "");
  const std::string own = get("127.0.0.1", "/whoami");
  EXPECT_TRUE(own == "sessionId=abc; theme=dark" || own == "theme=dark; sessionId=abc") << own;

  // A session ended by the server or deleted by the client is no longer sent.
  get("127.0.0.1", "/logout");
  EXPECT_EQ(get("127.0.0.1", "/whoami"), "theme=dark");
  cookies_->deleteCookie({"theme", "", "127.0.0.1"});
  EXPECT_EQ(get("127.0.0.1", "/whoami"), "");
  EXPECT_EQ(names().count("theme@127.0.0.1"), 0u);

  // The client's own cookies go through the same rules.
  EXPECT_TRUE(cookies_->setCookie({"deviceId", "d-1", "127.0.0.1"}));
  EXPECT_EQ(get("127.0.0.1", "/whoami"), "deviceId=d-1");
  Cookie wide{"wide", "1", "localhost"};
  wide.hostOnly = false;
  EXPECT_FALSE(cookies_->setCookie(wide)) << "a public suffix";
  wide.domain = "co.uk";
  EXPECT_FALSE(cookies_->setCookie(wide)) << "a public suffix";
  wide.domain = "127.0.0.1";
  EXPECT_FALSE(cookies_->setCookie(wide)) << "an address has no subdomains";
  EXPECT_FALSE(cookies_->setCookie({"sessionId", "a; evil=1", "127.0.0.1"}));
  EXPECT_FALSE(cookies_->setCookie({"sessionId", "a\r\nX-Injected: 1", "127.0.0.1"}));
  EXPECT_FALSE(cookies_->setCookie({"sessionId", "a", ""}));
  EXPECT_EQ(get("127.0.0.1", "/whoami"), "deviceId=d-1");
}

TEST_P(CurlTransportTest, ResumedDownloadAppendsOrRewritesThePartialFile) {
  const auto dir = std::filesystem::temp_directory_path() / ("qmv_curl_" + std::to_string(server_.port()));
  std::filesystem::create_directories(dir);
  const auto path = dir / "part.bin";
  { std::ofstream(path, std::ios::binary) << "0123456789"; }

  std::vector<std::int64_t> progress;
  HttpRequest download;
  download.url = server_.url("/file");
  download.downloadPath = path.string();
  download.resume = true;
  download.progress = [&](std::int64_t received, std::int64_t expected) {
    progress.push_back(received);
    EXPECT_EQ(expected, 36);
  };
  HttpResponse r = sendAndWait(download);
  drain();
  EXPECT_EQ(r.status, 206);
  std::ifstream in(path, std::ios::binary);
  std::string content((std::istreambuf_iterator<char>(in)), {});
  EXPECT_EQ(content, kFile);
  ASSERT_FALSE(progress.empty());
  EXPECT_EQ(progress.back(), 36);

  // Without resume the partial content is replaced, not appended to.
  { std::ofstream(path, std::ios::binary) << "garbage"; }
  download.resume = false;
  download.progress = nullptr;
  EXPECT_EQ(sendAndWait(download).status, 200);
  std::ifstream again(path, std::ios::binary);
  EXPECT_EQ(std::string((std::istreambuf_iterator<char>(again)), {}), kFile);
  std::filesystem::remove_all(dir);
}

TEST_P(CurlTransportTest, RunsAtMostFourAtOnceAndSurvivesClosedConnections) {
  std::vector<std::string> bodies;
  for (int i = 0; i < 10; ++i) {
    HttpRequest r;
    r.url = server_.url("/count?n=" + std::to_string(i));
    transport_->send(std::move(r), [&](HttpResponse response) { bodies.push_back(response.body); });
  }
  ASSERT_TRUE(loop_->runUntil([&] { return bodies.size() == 10; }, milliseconds(10000)));
  EXPECT_EQ(peak_.load(), CurlTransport::kMaxConcurrentTransfers);
  std::sort(bodies.begin(), bodies.end());
  EXPECT_EQ(bodies, (std::vector<std::string>{"0", "1", "2", "3", "4", "5", "6", "7", "8", "9"}));

  // Connections the server closes alternate with kept-alive ones; a socket curl closed
  // must never be waited on again, even when its number comes back.
  for (int i = 0; i < 30; ++i) {
    HttpRequest r;
    r.url = server_.url((i % 3 == 0 ? "/close?n=" : "/echo?n=") + std::to_string(i));
    const HttpResponse response = sendAndWait(r);
    ASSERT_EQ(response.error, TransportError::none) << i << ": " << response.errorMessage;
    EXPECT_EQ(response.body, std::to_string(i));
  }
}

// One request at a time: each takes the handle the one before gave back, which must
// carry no option of that request (a plain GET's handle is reused without a reset).
TEST_P(CurlTransportTest, AReusedHandleKeepsNothingOfTheRequestBefore) {
  HttpRequest get;
  get.url = server_.url("/inspect");
  EXPECT_EQ(sendAndWait(get).body, "GET||");
  HttpRequest untimed = get;  // sets no connect timeout of its own
  untimed.timeout = milliseconds(0);
  EXPECT_EQ(sendAndWait(untimed).body, "GET||");
  EXPECT_EQ(sendAndWait(get).body, "GET||");
  HttpRequest post = get;
  post.method = "POST";
  post.body = "a=1";
  post.contentType = "application/x-www-form-urlencoded";
  post.basicAuth = BasicAuth{"user", "secret"};
  EXPECT_EQ(sendAndWait(post).body, "POST|Basic dXNlcjpzZWNyZXQ=|a=1");
  EXPECT_EQ(sendAndWait(get).body, "GET||");
  HttpRequest head = get;
  head.method = "HEAD";
  const HttpResponse headAnswer = sendAndWait(head);
  EXPECT_EQ(headAnswer.status, 200);
  EXPECT_EQ(headAnswer.body, "");
  EXPECT_EQ(sendAndWait(get).body, "GET||");
  // A spare response lends its buffers, never what it held.
  HttpRequest withSpare = get;
  withSpare.spare.status = 500;
  withSpare.spare.body = "stale body";
  withSpare.spare.error = TransportError::other;
  withSpare.spare.errorMessage = "stale";
  for (const HttpRequest* request : {&withSpare, &head}) {
    HttpRequest lending = *request;
    lending.spare = withSpare.spare;
    const HttpResponse fresh = sendAndWait(std::move(lending));
    EXPECT_EQ(fresh.status, 200);
    EXPECT_EQ(fresh.body, request == &head ? "" : "GET||");
    EXPECT_EQ(fresh.error, TransportError::none);
    EXPECT_EQ(fresh.errorMessage, "");
  }
  // Plain GETs in turn: one's header fields are not sent with the next.
  HttpRequest withField;
  withField.url = server_.url("/whoami");
  withField.headers = {{"Cookie", "manual=1"}};
  EXPECT_EQ(sendAndWait(withField).body, "manual=1");
  HttpRequest withoutField = withField;
  withoutField.headers.clear();
  EXPECT_EQ(sendAndWait(withoutField).body, "");
  EXPECT_EQ(sendAndWait(withField).body, "manual=1");
  // Each address reaches the handle, one that curl's parser refuses included.
  HttpRequest echo;
  for (const char* n : {"1", "2"}) {
    echo.url = server_.url("/echo?n=") + n;
    EXPECT_EQ(sendAndWait(echo).body, n);
  }
  HttpRequest malformed;
  malformed.url = "http://[::1/echo";
  const HttpResponse refused = sendAndWait(malformed);
  EXPECT_EQ(refused.status, 0);
  EXPECT_NE(refused.error, TransportError::none);
  EXPECT_FALSE(refused.errorMessage.empty());
  echo.url = server_.url("/echo?n=3");
  EXPECT_EQ(sendAndWait(echo).body, "3");
}

// The proxy variables are looked for when a transport is made: one made without any
// tells curl to use none (sparing it the look-ups at every transfer), and one made with
// them leaves curl to follow them.
TEST_P(CurlTransportTest, ProxiesComeFromTheEnvironmentAsTheTransportFoundIt) {
  for (const char* name : {"http_proxy", "all_proxy", "ALL_PROXY"}) {
    if (std::getenv(name) != nullptr) GTEST_SKIP() << name << " is set here";
  }
  server_.server().Get(R"(http://proxied\.invalid/echo)", [](const httplib::Request& req, httplib::Response& res) {
    res.set_content("via proxy " + req.get_param_value("n"), "text/plain");
  });
  ASSERT_EQ(setenv("http_proxy", server_.url("/").c_str(), 1), 0);
  struct Unset {
    ~Unset() { unsetenv("http_proxy"); }
  } unset;
  HttpRequest far;
  far.url = "http://proxied.invalid/echo?n=7";
  EXPECT_EQ(sendAndWait(far).error, TransportError::connection);
  transport_ = std::make_unique<CurlTransport>(loop_, cookies_);
  const HttpResponse proxied = sendAndWait(far);
  EXPECT_EQ(proxied.body, "via proxy 7") << proxied.errorMessage;
}

// Handles pass from transfer to transfer, plain GETs' without a reset and others' with
// one; each must keep sending the store's cookies, and none may gather anything per
// transfer (curl keeps every cookie file it is given, and reads them all each time).
TEST_P(CurlTransportTest, ReusedHandlesKeepTheirCookiesAndGrowNothing) {
  HttpRequest login;
  login.url = server_.url("/login");
  sendAndWait(login);
  HttpRequest whoami;
  whoami.url = server_.url("/whoami");
  HttpRequest authorised = whoami;
  authorised.basicAuth = BasicAuth{"user", "secret"};
  const auto heapInUse = [] { return mallinfo2().uordblks; };
  std::size_t before = 0;
  for (int i = 0; i < 700; ++i) {
    if (i == 100) before = heapInUse();
    const std::string sent = sendAndWait(i % 2 == 0 ? authorised : whoami).body;
    ASSERT_TRUE(sent == "sessionId=abc; theme=dark" || sent == "theme=dark; sessionId=abc") << i << ": " << sent;
  }
  const std::size_t after = heapInUse();
  EXPECT_LT(after, before + 12 * 1024) << "grew by " << after - before << " bytes over 600 transfers";

  // A handle that served the store and then a transfer without one: that transfer neither
  // sends the store's cookies nor keeps what it is sent, in the store or anywhere else.
  CurlTransport fromEnv(loop_, nullptr);
  const auto send = [&](const HttpRequest& request, std::shared_ptr<CookieStore> store) {
    Env env;
    env.mainLoop = loop_;
    env.cookies = std::move(store);
    ScopedEnv scoped(completedForTesting(std::move(env)));
    std::optional<HttpResponse> got;
    fromEnv.send(HttpRequest(request), [&](HttpResponse r) { got = std::move(r); });
    EXPECT_TRUE(loop_->runUntil([&] { return got.has_value(); }, milliseconds(10000)));
    return got.value_or(HttpResponse{}).body;
  };
  EXPECT_NE(send(whoami, cookies_).find("sessionId=abc"), std::string::npos);
  EXPECT_EQ(send(whoami, nullptr), "");
  HttpRequest logout = whoami;
  logout.url = server_.url("/logout");
  send(logout, nullptr);
  send(login, nullptr);
  EXPECT_EQ(send(whoami, nullptr), "");
  EXPECT_NE(send(whoami, cookies_).find("sessionId=abc"), std::string::npos);
}

TEST_P(CurlTransportTest, DestroyingTheTransportDropsRunningAndQueuedTransfers) {
  int called = 0;
  HttpRequest slow;
  slow.url = server_.url("/slow");
  for (int i = 0; i < CurlTransport::kMaxConcurrentTransfers + 1; ++i) {
    transport_->send(HttpRequest(slow), [&](HttpResponse) { ++called; });
  }
  loop_->runUntil([] { return false; }, milliseconds(100));
  transport_.reset();
  drain();
  EXPECT_EQ(called, 0);
}

// A watching loop runs completions straight from its socket's callback; one that ends
// the transport there must leave the rest of that callback safe.
TEST_P(CurlTransportTest, ACompletionMayDestroyTheTransport) {
  HttpRequest slow;
  slow.url = server_.url("/slow");
  int slowCalled = 0;
  transport_->send(std::move(slow), [&](HttpResponse) { ++slowCalled; });
  HttpRequest quick;
  quick.url = server_.url("/echo?n=7");
  std::optional<HttpResponse> got;
  transport_->send(std::move(quick), [&](HttpResponse r) {
    got = std::move(r);
    transport_.reset();
  });
  ASSERT_TRUE(loop_->runUntil([&] { return got.has_value(); }, milliseconds(10000)));
  EXPECT_EQ(got->body, "7");
  EXPECT_EQ(transport_, nullptr);
  drain();
  EXPECT_EQ(slowCalled, 0);
}

}  // namespace
}  // namespace qmv
