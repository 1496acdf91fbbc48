// Load on the sandbox: N clients on kept-alive connections ask a read endpoint back to back
// for a while, optionally beside slow clients (one header byte every 2 s, connecting again
// whenever the server closes them) and idle connections (connected, silent). Prints
// requests per second, failures and the latency percentiles of the answered requests.
//
// usage: sandbox_load_bench [--url http://HOST:PORT] [--clients 50] [--seconds 10]
//                           [--path /qmv/app/v3/getCategoryList] [--slow 0] [--idle 0]
//                           [--slow-from 127.0.0.2]
// Without --url it serves an embedded sandbox from a fresh temporary home. --slow-from
// makes the slow and idle connections come from another address than the clients (any
// 127.x.y.z is this machine), as a hostile peer on a network would.
//
// The slow-peer case: --clients 4 --slow 256 --slow-from 127.0.0.2 (p99 under 100 ms).
#include <arpa/inet.h>
#include <httplib.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "apps/sandbox/sandbox_server.h"

namespace {

using Clock = std::chrono::steady_clock;

struct Options {
  std::string host = "127.0.0.1";
  int port = 0;
  int clients = 50;
  int seconds = 10;
  std::string path = "/qmv/app/v3/getCategoryList";
  int slow = 0;
  int idle = 0;
  std::string slowFrom;
};

bool parse(int argc, char** argv, Options& o) {
  for (int i = 1; i + 1 < argc; i += 2) {
    const std::string key = argv[i];
    const std::string value = argv[i + 1];
    if (key == "--url") {
      const auto hostStart = value.find("://");
      const auto colon = value.rfind(':');
      if (hostStart == std::string::npos || colon <= hostStart) return false;
      o.host = value.substr(hostStart + 3, colon - hostStart - 3);
      o.port = std::atoi(value.c_str() + colon + 1);
    } else if (key == "--clients") {
      o.clients = std::atoi(value.c_str());
    } else if (key == "--seconds") {
      o.seconds = std::atoi(value.c_str());
    } else if (key == "--path") {
      o.path = value;
    } else if (key == "--slow") {
      o.slow = std::atoi(value.c_str());
    } else if (key == "--idle") {
      o.idle = std::atoi(value.c_str());
    } else if (key == "--slow-from") {
      o.slowFrom = value;
    } else {
      return false;
    }
  }
  return argc % 2 == 1 && o.clients > 0 && o.seconds > 0;
}

// A connection to the server, from `from` when it is not empty; -1 when refused.
int connectTo(const Options& o, const std::string& from = "") {
  const int fd = ::socket(AF_INET, SOCK_STREAM, 0);
  if (!from.empty()) {
    sockaddr_in local{};
    local.sin_family = AF_INET;
    ::inet_pton(AF_INET, from.c_str(), &local.sin_addr);
    if (::bind(fd, reinterpret_cast<sockaddr*>(&local), sizeof local) != 0) {
      ::close(fd);
      return -1;
    }
  }
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(static_cast<uint16_t>(o.port));
  ::inet_pton(AF_INET, o.host.c_str(), &address.sin_addr);
  if (::connect(fd, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0) {
    ::close(fd);
    return -1;
  }
  return fd;
}

double percentile(const std::vector<double>& sorted, double p) {
  if (sorted.empty()) return 0;
  const auto index = static_cast<size_t>(p * static_cast<double>(sorted.size() - 1) + 0.5);
  return sorted[std::min(index, sorted.size() - 1)];
}

}  // namespace

int main(int argc, char** argv) {
  Options o;
  if (!parse(argc, argv, o)) {
    std::fprintf(stderr,
                 "usage: %s [--url http://HOST:PORT] [--clients N] [--seconds S] [--path P] [--slow N] [--idle N] "
                 "[--slow-from ADDRESS]\n",
                 argv[0]);
    return 2;
  }
  std::unique_ptr<qmv::sandbox::SandboxServer> embedded;
  const auto home = std::filesystem::temp_directory_path() / ("qmv_load_" + std::to_string(::getpid()));
  if (o.port == 0) {
    embedded = std::make_unique<qmv::sandbox::SandboxServer>(qmv::sandbox::SandboxOptions{home});
    if (const qmv::Status started = embedded->start(); !started.ok()) {
      std::fprintf(stderr, "cannot start the sandbox: %s\n", started.message().c_str());
      return 1;
    }
    o.port = embedded->port();
  }

  std::atomic<bool> running{true};
  // Slow clients: a request line trickling in one byte every two seconds.
  std::atomic<long> slowConnections{0};
  std::vector<std::thread> nuisances;
  for (int i = 0; i < o.slow; ++i) {
    nuisances.emplace_back([&] {
      const std::string line = "GET " + o.path + " HTTP/1.1\r\nHost: x\r\nX-Padding: " + std::string(4000, 'a');
      while (running) {
        const int fd = connectTo(o, o.slowFrom);
        if (fd >= 0) ++slowConnections;
        for (size_t k = 0; fd >= 0 && running && k < line.size(); ++k) {
          char byte;
          // Closed by the server (an end of stream or a reset): connect again.
          const ssize_t peeked = ::recv(fd, &byte, 1, MSG_DONTWAIT | MSG_PEEK);
          if (peeked == 0 || (peeked < 0 && errno != EAGAIN && errno != EWOULDBLOCK)) break;
          if (::send(fd, &line[k], 1, MSG_NOSIGNAL) != 1) break;
          for (int t = 0; t < 20 && running; ++t) std::this_thread::sleep_for(std::chrono::milliseconds(100));
        }
        if (fd >= 0) ::close(fd);
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
      }
    });
  }
  std::vector<int> idle;
  for (int i = 0; i < o.idle; ++i) idle.push_back(connectTo(o, o.slowFrom));
  if (o.slow + o.idle > 0) std::this_thread::sleep_for(std::chrono::milliseconds(300));

  std::mutex mutex;
  std::vector<double> latencies;
  std::atomic<long> failures{0};
  const auto end = Clock::now() + std::chrono::seconds(o.seconds);
  std::vector<std::thread> clients;
  for (int i = 0; i < o.clients; ++i) {
    clients.emplace_back([&] {
      httplib::Client http(o.host, o.port);
      http.set_keep_alive(true);
      http.set_read_timeout(5, 0);
      http.set_connection_timeout(5, 0);
      std::vector<double> mine;
      while (Clock::now() < end) {
        const auto start = Clock::now();
        auto res = http.Get(o.path.c_str());
        const double ms = std::chrono::duration<double, std::milli>(Clock::now() - start).count();
        if (res && res->status == 200) {
          mine.push_back(ms);
        } else {
          ++failures;
        }
      }
      std::lock_guard lock(mutex);
      latencies.insert(latencies.end(), mine.begin(), mine.end());
    });
  }
  for (auto& t : clients) t.join();
  running = false;
  for (auto& t : nuisances) t.join();
  for (const int fd : idle) {
    if (fd >= 0) ::close(fd);
  }

  std::sort(latencies.begin(), latencies.end());
  std::printf("%d clients, %d s, %s (slow %d, idle %d%s%s)\n", o.clients, o.seconds, o.path.c_str(), o.slow, o.idle,
              o.slowFrom.empty() ? "" : ", from ", o.slowFrom.c_str());
  if (o.slow > 0) std::printf("slow connections made %ld\n", slowConnections.load());
  std::printf("answered %zu (%.0f req/s), failed %ld\n", latencies.size(),
              static_cast<double>(latencies.size()) / o.seconds, failures.load());
  std::printf("latency ms: p50 %.2f  p90 %.2f  p99 %.2f  max %.2f\n", percentile(latencies, 0.50),
              percentile(latencies, 0.90), percentile(latencies, 0.99), latencies.empty() ? 0.0 : latencies.back());
  if (embedded) {
    embedded->stop();
    std::filesystem::remove_all(home);
  }
  return 0;
}
