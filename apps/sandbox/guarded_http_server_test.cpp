#include "apps/sandbox/guarded_http_server.h"

#include <arpa/inet.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <string>
#include <thread>
#include <vector>

#include "apps/sandbox/sandbox_test_support.h"

namespace qmv::sandbox::testing {
namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

// A connection from `from` (any 127.x.y.z is this machine); -1 when it cannot be made.
int connectTo(int port, const char* from = nullptr) {
  const int fd = ::socket(AF_INET, SOCK_STREAM, 0);
  if (from != nullptr) {
    sockaddr_in local{};
    local.sin_family = AF_INET;
    ::inet_pton(AF_INET, from, &local.sin_addr);
    if (::bind(fd, reinterpret_cast<sockaddr*>(&local), sizeof local) != 0) {
      ::close(fd);
      return -1;
    }
  }
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(static_cast<uint16_t>(port));
  ::inet_pton(AF_INET, "127.0.0.1", &address.sin_addr);
  if (::connect(fd, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0) {
    ::close(fd);
    return -1;
  }
  return fd;
}

// Whether the server ends the connection (end of stream or reset) before `deadline`.
bool closedBy(int fd, Clock::time_point deadline) {
  char byte;
  for (;;) {
    const auto left = std::chrono::duration_cast<milliseconds>(deadline - Clock::now()).count();
    if (left <= 0) return false;
    pollfd watched{fd, POLLIN, 0};
    if (::poll(&watched, 1, static_cast<int>(left)) <= 0) continue;
    const ssize_t n = ::recv(fd, &byte, 1, MSG_DONTWAIT);
    if (n == 0 || (n < 0 && errno != EAGAIN && errno != EINTR)) return true;
  }
}

// Sends one request on `fd` and reads its whole answer: whether it is a 200 within two seconds.
bool askedAndAnswered(int fd) {
  const std::string request = "GET /qmv/app/v3/getCategoryList HTTP/1.1\r\nHost: x\r\n\r\n";
  if (::send(fd, request.data(), request.size(), MSG_NOSIGNAL) != static_cast<ssize_t>(request.size())) return false;
  const auto deadline = Clock::now() + milliseconds(2000);
  std::string answer;
  for (;;) {
    if (const size_t end = answer.find("\r\n\r\n"); end != std::string::npos) {
      const size_t at = answer.find("Content-Length: ");
      if (at == std::string::npos || at > end) return false;
      const size_t length = std::stoul(answer.substr(at + 16));
      if (answer.size() >= end + 4 + length) return answer.rfind("HTTP/1.1 200", 0) == 0;
    }
    const auto left = std::chrono::duration_cast<milliseconds>(deadline - Clock::now()).count();
    if (left <= 0) return false;
    pollfd watched{fd, POLLIN, 0};
    if (::poll(&watched, 1, static_cast<int>(left)) <= 0) continue;
    char buffer[4096];
    const ssize_t n = ::recv(fd, buffer, sizeof buffer, 0);
    if (n <= 0) return false;
    answer.append(buffer, static_cast<size_t>(n));
  }
}

TEST_F(SandboxTest, KeptAliveConnectionsAnswerWithoutWaitingForAcknowledgements) {
  // Under Nagle, a second answer on a connection waits for the client's delayed
  // acknowledgement of the first (40 ms on Linux) between its headers and its body.
  httplib::Client& http = api_->raw();
  http.set_keep_alive(true);
  std::vector<double> times;
  for (int i = 0; i < 31; ++i) {
    const auto start = Clock::now();
    auto res = http.Get("/oss/art/category_11.png");
    times.push_back(std::chrono::duration<double, std::milli>(Clock::now() - start).count());
    ASSERT_TRUE(res);
    ASSERT_EQ(res->status, 200);
  }
  std::sort(times.begin(), times.end());
  EXPECT_LT(times[times.size() / 2], 25.0);
}

TEST(SandboxConnections, SlowAndSilentPeersNeitherStallOthersNorKeepTheirWorker) {
  const auto home = freshHome();
  const auto start = [&](int workers) {
    SandboxOptions options{home};
    options.limits.workers = workers;
    options.limits.idle = milliseconds(1500);
    options.limits.exchange = milliseconds(1000);
    auto server = std::make_unique<SandboxServer>(options);
    EXPECT_TRUE(server->start().ok());
    return server;
  };
  // Whether a client is answered, within a second.
  const auto answeredPromptly = [](int port) {
    const auto began = Clock::now();
    ApiClient api(port);
    api.raw().set_read_timeout(8, 0);
    const bool answered = api.get("getCategoryList").value("success", "") == "0";
    return answered && Clock::now() - began < milliseconds(1000);
  };
  {
    // Eight peers trickling a request line a byte at a time, fifty connected and silent.
    auto server = start(ServerLimits{}.workers);
    std::vector<int> slow, silent;
    for (int i = 0; i < 8; ++i) slow.push_back(connectTo(server->port()));
    for (int i = 0; i < 50; ++i) silent.push_back(connectTo(server->port()));
    std::atomic<bool> trickling{true};
    std::thread trickler([&] {
      const std::string line = "GET /qmv/app/v3/getCategoryList HTTP/1.1\r\n";
      for (size_t k = 0; trickling; k = (k + 1) % line.size()) {
        for (const int fd : slow) ::send(fd, &line[k], 1, MSG_NOSIGNAL);
        std::this_thread::sleep_for(milliseconds(200));
      }
    });
    const auto began = Clock::now();
    EXPECT_TRUE(answeredPromptly(server->port()));
    // Each is cut off: the trickling ones at the end of their exchange, the silent ones
    // when their idle time is over.
    for (const int fd : slow) EXPECT_TRUE(closedBy(fd, began + milliseconds(4000)));
    EXPECT_TRUE(closedBy(silent.front(), began + milliseconds(4000)));
    trickling = false;
    trickler.join();
    for (const int fd : slow) ::close(fd);
    for (const int fd : silent) ::close(fd);
  }
  {
    // With every worker held, silent connections make room within a poll slice, while a
    // client asking back to back keeps its connection.
    auto server = start(2);
    const int busy = connectTo(server->port());
    std::vector<int> silent;
    for (int i = 0; i < 10; ++i) silent.push_back(connectTo(server->port()));
    std::this_thread::sleep_for(milliseconds(20));
    EXPECT_TRUE(askedAndAnswered(busy));
    EXPECT_TRUE(askedAndAnswered(busy));
    EXPECT_TRUE(answeredPromptly(server->port()));
    ::close(busy);
    for (const int fd : silent) ::close(fd);
  }
  std::filesystem::remove_all(home);
}

// A hostile peer opening 256 connections and trickling their headers once kept 64 workers
// for ten seconds each and left everyone else waiting. Now the peer holds no worker, only
// its share of connections, each until its header deadline; a client behind its address
// still gets in.
TEST(SandboxConnections, ManySlowConnectionsFromOnePeerNeitherDelayOthersNorStayOpen) {
  const auto home = freshHome();
  SandboxOptions options{home};
  options.limits.header = milliseconds(1000);
  options.limits.idle = milliseconds(3000);
  SandboxServer server(options);
  ASSERT_TRUE(server.start().ok());
  std::vector<int> slow;
  for (int i = 0; i < 256; ++i) {
    const int fd = connectTo(server.port(), "127.0.0.2");
    ASSERT_GE(fd, 0);
    ::send(fd, "G", 1, MSG_NOSIGNAL);
    slow.push_back(fd);
  }
  const auto began = Clock::now();
  double slowest = 0;
  for (int i = 0; i < 20; ++i) {
    const int fd = connectTo(server.port());
    const auto start = Clock::now();
    EXPECT_TRUE(askedAndAnswered(fd));
    slowest = std::max(slowest, std::chrono::duration<double, std::milli>(Clock::now() - start).count());
    ::close(fd);
  }
  const int neighbour = connectTo(server.port(), "127.0.0.2");
  EXPECT_TRUE(askedAndAnswered(neighbour));
  ::close(neighbour);
  EXPECT_LT(slowest, 500.0);
  // Past its share the peer's oldest trickles are closed at once; the rest go at the
  // header deadline.
  int closed = 0;
  for (const int fd : slow) closed += closedBy(fd, Clock::now() + milliseconds(5)) ? 1 : 0;
  EXPECT_GE(closed, 256 - ServerLimits{}.connectionsPerPeer);
  for (const int fd : slow) EXPECT_TRUE(closedBy(fd, began + milliseconds(2500)));
  for (const int fd : slow) ::close(fd);
  server.stop();
  std::filesystem::remove_all(home);
}

// A portrait upload declaring a gigabyte: one answer, then the end of the connection, the
// bytes after the head not taken for a second request.
TEST_F(SandboxTest, AHugeDeclaredBodyIsRefusedUnreadAndItsConnectionClosed) {
  const int fd = connectTo(server_->port());
  ASSERT_GE(fd, 0);
  const std::string head = "PUT /oss/" + std::string(kDemoPhone) +
                           ".png HTTP/1.1\r\nHost: x\r\nCookie: sessionId=" + api_->login() +
                           "\r\nContent-Length: 1000000000\r\n\r\nGET / HTTP/1.1\r\n\r\n";
  ASSERT_EQ(::send(fd, head.data(), head.size(), MSG_NOSIGNAL), static_cast<ssize_t>(head.size()));
  timeval timeout{5, 0};
  ::setsockopt(fd, SOL_SOCKET, SO_RCVTIMEO, &timeout, sizeof timeout);
  std::string answer;
  char buffer[4096];
  for (ssize_t n; (n = ::recv(fd, buffer, sizeof buffer, 0)) > 0;) answer.append(buffer, static_cast<size_t>(n));
  ::close(fd);
  EXPECT_EQ(answer.rfind("HTTP/1.1 413", 0), 0u) << answer;
  EXPECT_EQ(answer.find("HTTP/1.1", 1), std::string::npos) << answer;
}

}  // namespace
}  // namespace qmv::sandbox::testing
