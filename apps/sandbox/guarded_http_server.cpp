#include "apps/sandbox/guarded_http_server.h"

#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

#include "apps/sandbox/deadline_socket_stream.h"

namespace qmv::sandbox {
namespace {

using Clock = DeadlineSocketStream::Clock;

constexpr auto kIdleSlice = std::chrono::milliseconds(50);
// The library listens with a queue of 5: fifty clients connecting at once would see SYNs
// dropped and retried a second later.
constexpr int kListenQueue = 256;

// Set by closeAfterAnswer during an exchange; a worker serves one connection at a time.
thread_local bool closeRequested = false;

// A connection whose peer sent `input` and then closed its side.
class MemoryStream final : public httplib::Stream {
 public:
  explicit MemoryStream(std::string_view input) : input_(input) {}

  bool is_readable() const override { return true; }
  bool is_writable() const override { return true; }
  ssize_t read(char* ptr, size_t size) override {
    const size_t n = std::min(size, input_.size() - position_);
    std::copy_n(input_.data() + position_, n, ptr);
    position_ += n;
    return static_cast<ssize_t>(n);
  }
  ssize_t write(const char* ptr, size_t size) override {
    output_.append(ptr, size);
    return static_cast<ssize_t>(size);
  }
  void get_remote_ip_and_port(std::string& ip, int& port) const override {
    ip = "127.0.0.1";
    port = 0;
  }
  void get_local_ip_and_port(std::string& ip, int& port) const override { get_remote_ip_and_port(ip, port); }
  socket_t socket() const override { return INVALID_SOCKET; }

  std::string& output() { return output_; }

 private:
  std::string_view input_;
  size_t position_ = 0;
  std::string output_;
};

ServerLimits sanitized(ServerLimits limits) {
  limits.workers = std::max(1, limits.workers);
  limits.requestsPerConnection = std::max(1, limits.requestsPerConnection);
  limits.idle = std::max(limits.idle, std::chrono::milliseconds(1));
  limits.exchange = std::max(limits.exchange, std::chrono::milliseconds(1));
  return limits;
}

}  // namespace

GuardedHttpServer::GuardedHttpServer(ServerLimits limits) : limits_(sanitized(limits)) {
  // Only for the Keep-Alive header the library writes: this class enforces both.
  set_keep_alive_max_count(static_cast<size_t>(limits_.requestsPerConnection));
  set_keep_alive_timeout(std::max<time_t>(1, std::chrono::duration_cast<std::chrono::seconds>(limits_.idle).count()));
  new_task_queue = [this] {
    auto* pool = new WorkerPool(static_cast<size_t>(limits_.workers));
    pool_ = pool;
    return pool;
  };
  // Address reuse only: the library's default also shares the port, which would let two
  // sandboxes listen on one fixed port instead of reporting it taken.
  set_socket_options([](int sock) {
    int yes = 1;
    setsockopt(sock, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
  });
}

void GuardedHttpServer::closeAfterAnswer(httplib::Response& res) {
  res.set_header("Connection", "close");
  closeRequested = true;
}

std::string GuardedHttpServer::answerInMemory(std::string_view request) {
  MemoryStream stream(request);
  bool closed = false;
  closeRequested = false;
  process_request(stream, true, closed, nullptr);
  return std::move(stream.output());
}

int GuardedHttpServer::bindTo(const std::string& host, int port) {
  int bound = 0;
  if (port == 0) {
    bound = bind_to_any_port(host);
  } else if (bind_to_port(host, port)) {
    bound = port;
  }
  if (bound > 0) ::listen(svr_sock_, kListenQueue);  // a second listen() only resizes the queue
  return bound > 0 ? bound : 0;
}

bool GuardedHttpServer::awaitRequest(int sock, const DeadlineSocketStream& stream) const {
  if (stream.hasBufferedInput()) return true;
  const auto idleUntil = Clock::now() + limits_.idle;
  for (;;) {
    if (stopping()) return false;
    const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(idleUntil - Clock::now());
    if (left.count() <= 0) return false;
    pollfd watched{sock, POLLIN, 0};
    const int ready = ::poll(&watched, 1, static_cast<int>(std::min(left, kIdleSlice).count()));
    if (ready > 0) return (watched.revents & POLLIN) != 0;
    if (ready < 0 && errno != EINTR) return false;
    // Quiet for a whole slice while others wait for a worker: give way. Not before the
    // first slice: a client asking back to back sends its next request microseconds after
    // the answer, and cutting it then fails the request already on its way.
    const WorkerPool* pool = pool_.load();
    if (pool != nullptr && pool->starved()) return false;
  }
}

bool GuardedHttpServer::process_and_close_socket(socket_t sock) {
  int on = 1;
  setsockopt(sock, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
  DeadlineSocketStream stream(sock, [this] { return stopping(); });
  bool ok = true;
  for (int served = 0; served < limits_.requestsPerConnection; ++served) {
    if (!awaitRequest(sock, stream)) break;
    stream.beginExchange(Clock::now() + limits_.exchange);
    const bool last = served + 1 == limits_.requestsPerConnection || stopping();
    bool closed = false;
    closeRequested = false;
    ok = process_request(stream, last, closed, nullptr) && stream.flush();
    if (!ok || closed || closeRequested) break;
  }
  ::shutdown(sock, SHUT_RDWR);
  ::close(sock);
  return ok;
}

}  // namespace qmv::sandbox
