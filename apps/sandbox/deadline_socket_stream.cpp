#include "apps/sandbox/deadline_socket_stream.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

namespace qmv::sandbox {
namespace {

constexpr auto kWaitSlice = std::chrono::milliseconds(50);
// Gathered output is sent once it reaches this size.
constexpr size_t kSendChunk = 64 * 1024;
// Bytes asked of the socket at once.
constexpr size_t kReadChunk = 4096;

void describe(const sockaddr_storage& address, std::string& ip, int& port) {
  char text[INET6_ADDRSTRLEN] = {};
  if (address.ss_family == AF_INET) {
    const auto& v4 = reinterpret_cast<const sockaddr_in&>(address);
    ::inet_ntop(AF_INET, &v4.sin_addr, text, sizeof text);
    port = ntohs(v4.sin_port);
  } else if (address.ss_family == AF_INET6) {
    const auto& v6 = reinterpret_cast<const sockaddr_in6&>(address);
    ::inet_ntop(AF_INET6, &v6.sin6_addr, text, sizeof text);
    port = ntohs(v6.sin6_port);
  }
  ip = text;
}

}  // namespace

DeadlineSocketStream::DeadlineSocketStream(int sock, std::string input, std::function<bool()> stopping)
    : sock_(sock), stopping_(std::move(stopping)), input_(std::move(input)) {}

std::string DeadlineSocketStream::takeUnread() {
  std::string unread = input_.substr(begin_);
  input_.clear();
  begin_ = 0;
  return unread;
}

bool DeadlineSocketStream::waitFor(short events) const {
  for (;;) {
    if (stopping_ && stopping_()) return false;
    const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(deadline_ - Clock::now());
    if (left.count() <= 0) return false;
    pollfd watched{sock_, events, 0};
    const int ready = ::poll(&watched, 1, static_cast<int>(std::min(left, kWaitSlice).count()));
    if (ready > 0) return true;  // including hang-ups and errors: the next call reports them
    if (ready < 0 && errno != EINTR) return false;
  }
}

bool DeadlineSocketStream::is_readable() const { return hasBufferedInput() || waitFor(POLLIN); }

bool DeadlineSocketStream::is_writable() const { return waitFor(POLLOUT); }

ssize_t DeadlineSocketStream::read(char* ptr, size_t size) {
  if (size == 0) return 0;
  // An interim answer ("100 Continue") must be out before the body it asks for comes in.
  if (!pending_.empty() && !flush()) return -1;
  while (!hasBufferedInput()) {
    if (!waitFor(POLLIN)) return -1;
    input_.resize(kReadChunk);
    begin_ = 0;
    const ssize_t got = ::recv(sock_, input_.data(), input_.size(), MSG_DONTWAIT);
    input_.resize(got > 0 ? static_cast<size_t>(got) : 0);
    if (got == 0) return 0;
    if (got < 0) {
      if (errno == EAGAIN || errno == EWOULDBLOCK || errno == EINTR) continue;
      return -1;
    }
  }
  const size_t n = std::min(size, input_.size() - begin_);
  std::memcpy(ptr, input_.data() + begin_, n);
  begin_ += n;
  return static_cast<ssize_t>(n);
}

ssize_t DeadlineSocketStream::write(const char* ptr, size_t size) {
  if (pending_.size() + size < kSendChunk) {
    pending_.append(ptr, size);
    return static_cast<ssize_t>(size);
  }
  // A full chunk leaves at once, and the rest of a large write (a whole table's answer)
  // from where it is: gathered here too, it would be held twice.
  const size_t head = kSendChunk - std::min(pending_.size(), kSendChunk);
  pending_.append(ptr, std::min(head, size));
  if (!flush()) return -1;
  if (size > head && !sendAll(ptr + head, size - head)) return -1;
  return static_cast<ssize_t>(size);
}

bool DeadlineSocketStream::flush() {
  const bool sent = sendAll(pending_.data(), pending_.size());
  pending_.clear();
  return sent;
}

bool DeadlineSocketStream::sendAll(const char* data, size_t size) {
  size_t sent = 0;
  while (sent < size) {
    const ssize_t n = ::send(sock_, data + sent, size - sent, MSG_DONTWAIT | MSG_NOSIGNAL);
    if (n > 0) {
      sent += static_cast<size_t>(n);
      continue;
    }
    if ((n < 0 && errno != EAGAIN && errno != EWOULDBLOCK && errno != EINTR) || !waitFor(POLLOUT)) return false;
  }
  return true;
}

void DeadlineSocketStream::get_remote_ip_and_port(std::string& ip, int& port) const {
  sockaddr_storage address{};
  socklen_t length = sizeof address;
  if (::getpeername(sock_, reinterpret_cast<sockaddr*>(&address), &length) == 0) describe(address, ip, port);
}

void DeadlineSocketStream::get_local_ip_and_port(std::string& ip, int& port) const {
  sockaddr_storage address{};
  socklen_t length = sizeof address;
  if (::getsockname(sock_, reinterpret_cast<sockaddr*>(&address), &length) == 0) describe(address, ip, port);
}

}  // namespace qmv::sandbox
