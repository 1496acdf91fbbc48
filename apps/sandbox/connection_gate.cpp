#include "apps/sandbox/connection_gate.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/eventfd.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <optional>
#include <string_view>

#include "apps/sandbox/peer_address.h"
#include "core/common/string_util.h"

namespace qmv::sandbox {
namespace {

constexpr int kLoopSliceMs = 50;
// Descriptors kept free for the database, the object store and the listening socket.
constexpr int kSpareDescriptors = 128;

std::string remoteAddress(int fd) {
  sockaddr_storage address{};
  socklen_t length = sizeof address;
  if (::getpeername(fd, reinterpret_cast<sockaddr*>(&address), &length) != 0) return "";
  char text[INET6_ADDRSTRLEN] = {};
  if (address.ss_family == AF_INET) {
    ::inet_ntop(AF_INET, &reinterpret_cast<const sockaddr_in&>(address).sin_addr, text, sizeof text);
  } else if (address.ss_family == AF_INET6) {
    ::inet_ntop(AF_INET6, &reinterpret_cast<const sockaddr_in6&>(address).sin6_addr, text, sizeof text);
  }
  return text;
}

bool equalsIgnoringCase(std::string_view a, std::string_view b) {
  return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin(), [](char x, char y) {
           return (x >= 'A' && x <= 'Z' ? x + 32 : x) == (y >= 'A' && y <= 'Z' ? y + 32 : y);
         });
}

// The value of the header field `name` in the header block `head` (request line first).
std::optional<std::string_view> field(std::string_view head, std::string_view name) {
  size_t start = head.find('\n');
  while (start != std::string_view::npos && start + 1 < head.size()) {
    const size_t end = head.find('\n', start + 1);
    const std::string_view line = head.substr(start + 1, end == std::string_view::npos ? head.npos : end - start - 1);
    const size_t colon = line.find(':');
    if (colon != std::string_view::npos && equalsIgnoringCase(trimmed(line.substr(0, colon)), name)) {
      return trimmed(line.substr(colon + 1));
    }
    start = end;
  }
  return std::nullopt;
}

// `limits` with the connections in all within the process's descriptor limit, so that
// accept never fails for want of one.
ServerLimits withinDescriptors(ServerLimits limits) {
  rlimit files{};
  if (::getrlimit(RLIMIT_NOFILE, &files) == 0 && files.rlim_cur != RLIM_INFINITY) {
    limits.connections = static_cast<int>(
        std::min<long long>(limits.connections, static_cast<long long>(files.rlim_cur) - kSpareDescriptors));
  }
  limits.connections = std::max(1, limits.connections);
  limits.connectionsPerPeer = std::max(1, limits.connectionsPerPeer);
  limits.workersPerPeer = std::max(1, limits.workersPerPeer);
  return limits;
}

}  // namespace

bool ConnectionGate::requestArrived(Connection& connection) {
  const std::string& input = connection.input;
  if (connection.needed == 0) {
    const size_t from = connection.scanned >= 3 ? connection.scanned - 3 : 0;
    size_t end = input.find("\r\n\r\n", from);
    size_t separator = 4;
    if (const size_t bare = input.find("\n\n", from); bare != std::string::npos && bare < end) {
      end = bare;
      separator = 2;
    }
    if (end == std::string::npos) {
      connection.scanned = input.size();
      return input.size() >= kMaxHeaderBytes;
    }
    connection.needed = end + separator;
    const std::string_view head(input.data(), end);
    const auto length = field(head, "Content-Length");
    // Bodies the worker reads itself, and lengths left for the parser to refuse.
    if (end < kMaxHeaderBytes && !field(head, "Transfer-Encoding") && !field(head, "Expect") && length &&
        !length->empty() && length->size() <= 18 && length->find_first_not_of("0123456789") == std::string_view::npos) {
      const size_t bytes = std::stoull(std::string(*length));
      if (bytes <= kBufferedBody) connection.needed += bytes;
    }
  }
  return input.size() >= connection.needed;
}

ConnectionGate::ConnectionGate(const ServerLimits& limits, Serve serve)
    : limits_(withinDescriptors(limits)),
      serve_(std::move(serve)),
      pool_(static_cast<size_t>(std::max(1, limits.workers))) {
  epoll_ = ::epoll_create1(EPOLL_CLOEXEC);
  wake_ = ::eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC);
  epoll_event event{};
  event.events = EPOLLIN;
  event.data.fd = wake_;
  if (epoll_ >= 0 && wake_ >= 0 && ::epoll_ctl(epoll_, EPOLL_CTL_ADD, wake_, &event) == 0) {
    thread_ = std::thread([this] { loop(); });
  } else {
    closed_ = true;
  }
}

ConnectionGate::~ConnectionGate() {
  shutdown();
  if (epoll_ >= 0) ::close(epoll_);
  if (wake_ >= 0) ::close(wake_);
}

void ConnectionGate::admit(int fd) {
  const std::string peer = peerKey(remoteAddress(fd));
  {
    std::lock_guard lock(mutex_);
    if (!closed_ && connections_ < limits_.connections) {
      ++connections_;
      if (++connectionsOf_[peer] > limits_.connectionsPerPeer) crowded_.push_back(peer);
      const int on = 1;
      ::setsockopt(fd, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
      ::fcntl(fd, F_SETFL, ::fcntl(fd, F_GETFL) | O_NONBLOCK);
      auto connection = std::make_unique<Connection>();
      connection->fd = fd;
      connection->peer = peer;
      connection->waitingSince = Clock::now();
      admitted_.push_back(std::move(connection));
      fd = -1;
    }
  }
  if (fd >= 0) {
    ::close(fd);
    return;
  }
  const uint64_t one = 1;
  [[maybe_unused]] const ssize_t written = ::write(wake_, &one, sizeof one);
}

void ConnectionGate::shutdown() {
  stopping_ = true;
  if (wake_ >= 0) {
    const uint64_t one = 1;
    [[maybe_unused]] const ssize_t written = ::write(wake_, &one, sizeof one);
  }
  if (thread_.joinable()) thread_.join();
  pool_.shutdown();
}

void ConnectionGate::loop() {
  epoll_event events[256];
  auto nextSweep = Clock::now();
  while (!stopping_) {
    const int ready = ::epoll_wait(epoll_, events, 256, kLoopSliceMs);
    for (int i = 0; i < ready; ++i) {
      if (events[i].data.fd == wake_) {
        uint64_t count = 0;
        [[maybe_unused]] const ssize_t got = ::read(wake_, &count, sizeof count);
      } else {
        readFrom(events[i].data.fd);
      }
    }
    std::vector<Owned> admitted;
    std::vector<std::pair<Owned, bool>> returned;
    std::vector<std::string> crowded;
    {
      std::lock_guard lock(mutex_);
      admitted.swap(admitted_);
      returned.swap(returned_);
      crowded.swap(crowded_);
    }
    for (auto& connection : admitted) watch(std::move(connection));
    for (auto& [connection, keep] : returned) finished(std::move(connection), keep);
    for (const std::string& peer : crowded) makeRoom(peer);
    if (const auto now = Clock::now(); now >= nextSweep) {
      expire(now);
      nextSweep = now + std::chrono::milliseconds(kLoopSliceMs);
    }
  }
  std::vector<Owned> left;
  {
    std::lock_guard lock(mutex_);
    closed_ = true;
    for (auto& connection : admitted_) left.push_back(std::move(connection));
    for (auto& entry : returned_) left.push_back(std::move(entry.first));
    admitted_.clear();
    returned_.clear();
  }
  for (auto& [fd, connection] : waiting_) left.push_back(std::move(connection));
  waiting_.clear();
  waitingOf_.clear();
  for (auto& [peer, queue] : held_) {
    for (auto& connection : queue) left.push_back(std::move(connection));
  }
  held_.clear();
  for (auto& connection : left) close(std::move(connection));
}

void ConnectionGate::watch(Owned connection) {
  if (requestArrived(*connection)) {
    dispatch(std::move(connection));
    return;
  }
  epoll_event event{};
  event.events = EPOLLIN | EPOLLRDHUP;
  event.data.fd = connection->fd;
  if (::epoll_ctl(epoll_, EPOLL_CTL_ADD, connection->fd, &event) != 0) {
    close(std::move(connection));
    return;
  }
  park(std::move(connection));
}

void ConnectionGate::readFrom(int fd) {
  const auto it = waiting_.find(fd);
  if (it == waiting_.end()) return;
  Connection& connection = *it->second;
  constexpr size_t kMostBuffered = kMaxHeaderBytes + kBufferedBody + 4;
  bool ended = false;
  char buffer[16 * 1024];
  while (!requestArrived(connection) && connection.input.size() < kMostBuffered) {
    const size_t room = std::min(sizeof buffer, kMostBuffered - connection.input.size());
    const ssize_t got = ::recv(fd, buffer, room, MSG_DONTWAIT);
    if (got > 0) {
      if (connection.input.empty()) connection.firstByte = Clock::now();
      connection.input.append(buffer, static_cast<size_t>(got));
      continue;
    }
    if (got < 0 && (errno == EAGAIN || errno == EWOULDBLOCK)) break;
    if (got < 0 && errno == EINTR) continue;
    ended = true;  // the peer closed its side, or the connection failed
    break;
  }
  // A request that arrived whole is answered even when the peer has stopped sending.
  if (!requestArrived(connection) && !ended) return;
  Owned owned = unpark(fd);
  ::epoll_ctl(epoll_, EPOLL_CTL_DEL, fd, nullptr);
  if (requestArrived(*owned)) {
    dispatch(std::move(owned));
  } else {
    close(std::move(owned));
  }
}

void ConnectionGate::dispatch(Owned connection) {
  int& busy = busyOf_[connection->peer];
  if (busy >= limits_.workersPerPeer) {
    held_[connection->peer].push_back(std::move(connection));
    return;
  }
  ++busy;
  pool_.enqueue([this, raw = connection.release()] {
    Owned served(raw);
    const bool keep = serve_(*served);
    std::unique_lock lock(mutex_);
    if (closed_) {
      lock.unlock();
      close(std::move(served));
      return;
    }
    returned_.emplace_back(std::move(served), keep);
    lock.unlock();
    const uint64_t one = 1;
    [[maybe_unused]] const ssize_t written = ::write(wake_, &one, sizeof one);
  });
}

void ConnectionGate::finished(Owned connection, bool keep) {
  const std::string peer = connection->peer;
  --busyOf_[peer];
  // The peer's arrived requests go first, in their order, then this connection's next one.
  for (auto held = held_.find(peer); held != held_.end() && busyOf_[peer] < limits_.workersPerPeer;
       held = held_.find(peer)) {
    Owned next = std::move(held->second.front());
    held->second.pop_front();
    if (held->second.empty()) held_.erase(held);
    dispatch(std::move(next));
  }
  if (!keep) {
    close(std::move(connection));
  } else {
    // What is left in the input is the next request.
    connection->waitingSince = Clock::now();
    connection->scanned = 0;
    connection->needed = 0;
    if (!connection->input.empty()) connection->firstByte = connection->waitingSince;
    watch(std::move(connection));
  }
  if (const auto busy = busyOf_.find(peer); busy != busyOf_.end() && busy->second == 0) busyOf_.erase(busy);
}

void ConnectionGate::expire(Clock::time_point now) {
  std::vector<int> late;
  for (const auto& [fd, connection] : waiting_) {
    const bool idle = connection->input.empty();
    if ((idle && now - connection->waitingSince >= limits_.idle) ||
        (!idle && now - connection->firstByte >= std::min(limits_.header, limits_.exchange))) {
      late.push_back(fd);
    }
  }
  for (const int fd : late) close(unpark(fd));
  // Arrived requests waiting for one of their peer's workers are let go at their deadline.
  for (auto it = held_.begin(); it != held_.end();) {
    auto& queue = it->second;
    while (!queue.empty() && now - queue.front()->firstByte >= limits_.exchange) {
      close(std::move(queue.front()));
      queue.pop_front();
    }
    it = queue.empty() ? held_.erase(it) : std::next(it);
  }
}

void ConnectionGate::makeRoom(const std::string& peer) {
  const auto since = [](const Connection& c) { return c.input.empty() ? c.waitingSince : c.firstByte; };
  for (;;) {
    {
      std::lock_guard lock(mutex_);
      const auto held = connectionsOf_.find(peer);
      if (held == connectionsOf_.end() || held->second <= limits_.connectionsPerPeer) return;
    }
    // A partial request that has taken longest, else the longest silence: a client that
    // asks whole requests, and waits only between them, is the last to go.
    // None waiting means all of the peer's are being served: it is over its share until
    // one of them ends.
    const auto mine = waitingOf_.find(peer);
    if (mine == waitingOf_.end()) return;
    const Connection* victim = nullptr;
    for (const int fd : mine->second) {
      const Connection* connection = waiting_.at(fd).get();
      if (victim == nullptr || (!connection->input.empty() && victim->input.empty()) ||
          (connection->input.empty() == victim->input.empty() && since(*connection) < since(*victim))) {
        victim = connection;
      }
    }
    close(unpark(victim->fd));
  }
}

void ConnectionGate::park(Owned connection) {
  const int fd = connection->fd;
  waitingOf_[connection->peer].insert(fd);
  waiting_[fd] = std::move(connection);
}

ConnectionGate::Owned ConnectionGate::unpark(int fd) {
  const auto it = waiting_.find(fd);
  Owned connection = std::move(it->second);
  waiting_.erase(it);
  const auto mine = waitingOf_.find(connection->peer);
  mine->second.erase(fd);
  if (mine->second.empty()) waitingOf_.erase(mine);
  return connection;
}

void ConnectionGate::close(Owned connection) {
  ::shutdown(connection->fd, SHUT_RDWR);
  ::close(connection->fd);
  std::lock_guard lock(mutex_);
  --connections_;
  const auto it = connectionsOf_.find(connection->peer);
  if (it != connectionsOf_.end() && --it->second <= 0) connectionsOf_.erase(it);
}

}  // namespace qmv::sandbox
