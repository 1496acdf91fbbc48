#include "apps/sandbox/guarded_http_server.h"

#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>

#include "apps/sandbox/deadline_socket_stream.h"

namespace qmv::sandbox {
namespace {

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

// The library's task queue, standing for the gate: the accepting thread runs each job at
// once, and the job only hands the socket to the gate.
class GateQueue final : public httplib::TaskQueue {
 public:
  GateQueue(const ServerLimits& limits, ConnectionGate::Serve serve) : gate(limits, std::move(serve)) {}
  void enqueue(std::function<void()> job) override { job(); }
  void shutdown() override { gate.shutdown(); }

  ConnectionGate gate;
};

ServerLimits sanitized(ServerLimits limits) {
  limits.workers = std::max(1, limits.workers);
  limits.requestsPerConnection = std::max(1, limits.requestsPerConnection);
  limits.idle = std::max(limits.idle, std::chrono::milliseconds(1));
  limits.exchange = std::max(limits.exchange, std::chrono::milliseconds(1));
  limits.header = std::max(limits.header, std::chrono::milliseconds(1));
  return limits;
}

}  // namespace

GuardedHttpServer::GuardedHttpServer(ServerLimits limits) : limits_(sanitized(limits)) {
  // Only for the Keep-Alive header the library writes: this class enforces both.
  set_keep_alive_max_count(static_cast<size_t>(limits_.requestsPerConnection));
  set_keep_alive_timeout(std::max<time_t>(1, std::chrono::duration_cast<std::chrono::seconds>(limits_.idle).count()));
  new_task_queue = [this] {
    auto* queue = new GateQueue(limits_, [this](ConnectionGate::Connection& c) { return serveArrived(c); });
    gate_ = &queue->gate;
    return queue;
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

Result<std::string> GuardedHttpServer::answerInMemory(std::string_view request) {
  MemoryStream stream(request);
  bool closed = false;
  closeRequested = false;
  process_request(stream, true, closed, nullptr);
  if (stream.output().empty()) return Status::invalidArgument("the request could not be read");
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

bool GuardedHttpServer::process_and_close_socket(socket_t sock) {
  ConnectionGate* gate = gate_.load();
  if (gate == nullptr) {
    ::close(sock);
    return false;
  }
  gate->admit(sock);
  return true;
}

bool GuardedHttpServer::serveArrived(ConnectionGate::Connection& connection) {
  DeadlineSocketStream stream(connection.fd, std::move(connection.input), [this] { return stopping(); });
  stream.beginExchange(connection.firstByte + limits_.exchange);
  ++connection.served;
  const bool last = connection.served >= limits_.requestsPerConnection || stopping();
  bool closed = false;
  closeRequested = false;
  const bool ok = process_request(stream, last, closed, nullptr) && stream.flush();
  connection.input = stream.takeUnread();
  return ok && !closed && !closeRequested && !last;
}

}  // namespace qmv::sandbox
