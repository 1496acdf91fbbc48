#pragma once
// A cpp-httplib server on a loopback address (127.0.0.1 unless told) and a free port,
// served from its own thread, for tests and benchmarks. Register routes on server() and then call start(). Handlers
// that wait (slow routes) should poll stopping() so that shutdown does not wait for them.
#include <httplib.h>

#include <atomic>
#include <chrono>
#include <string>
#include <thread>
#include <utility>

namespace qmv::testsupport {

class LoopbackServer {
 public:
  // `host`: another loopback address (127.0.0.2) stands for another host.
  explicit LoopbackServer(std::string host = "127.0.0.1") : host_(std::move(host)) {}
  ~LoopbackServer() { shutdown(); }
  LoopbackServer(const LoopbackServer&) = delete;
  LoopbackServer& operator=(const LoopbackServer&) = delete;

  httplib::Server& server() { return server_; }

  // Binds, starts serving and waits until the server accepts connections.
  void start() {
    // Headers and body go out in separate writes; without this Nagle holds the second
    // until the peer's delayed acknowledgement.
    server_.set_tcp_nodelay(true);
    // Keep connections for the whole run, as a client's server would, instead of
    // closing them after five requests.
    server_.set_keep_alive_max_count(1000000);
    port_ = server_.bind_to_any_port(host_);
    thread_ = std::thread([this] { server_.listen_after_bind(); });
    while (!server_.is_running()) std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }

  void shutdown() {
    stopping_ = true;
    if (thread_.joinable()) {
      server_.stop();
      thread_.join();
    }
  }

  int port() const { return port_; }
  // "http://<host>:<port>" followed by `path`.
  std::string url(const std::string& path = "") const { return "http://" + host_ + ":" + std::to_string(port_) + path; }
  bool stopping() const { return stopping_; }

  // Sleeps up to `duration`, returning early when the server is shutting down.
  void sleepUnlessStopping(std::chrono::milliseconds duration) const {
    const auto until = std::chrono::steady_clock::now() + duration;
    while (!stopping_ && std::chrono::steady_clock::now() < until) {
      std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
  }

 private:
  std::string host_;
  httplib::Server server_;
  std::thread thread_;
  int port_ = 0;
  std::atomic<bool> stopping_{false};
};

}  // namespace qmv::testsupport
