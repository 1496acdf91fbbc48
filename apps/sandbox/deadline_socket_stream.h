#pragma once
// DeadlineSocketStream: the sandbox server's view of one accepted connection. Every read
// and write of an exchange (one request and its answer) must finish before the exchange's
// deadline, however the peer spaces its bytes: a client that trickles a header byte every
// few seconds is cut off at the deadline instead of holding a worker for hours. Reads are
// buffered (the request parser reads byte by byte), starting with what was read before the
// connection reached a worker. Writes are gathered until `flush`, the
// next read or a full buffer, so that an answer's headers and body leave in one send
// instead of two; they never raise SIGPIPE. Waits are cut into short slices so that a
// stopping server is noticed promptly.
#include <httplib.h>

#include <chrono>
#include <functional>
#include <string>

namespace qmv::sandbox {

class DeadlineSocketStream : public httplib::Stream {
 public:
  using Clock = std::chrono::steady_clock;

  // `sock` stays owned by the caller; `input` is read before the socket. `stopping` is
  // polled while waiting.
  DeadlineSocketStream(int sock, std::string input, std::function<bool()> stopping);

  // Starts the next exchange: everything it reads and writes must be done by `deadline`.
  void beginExchange(Clock::time_point deadline) { deadline_ = deadline; }
  // The bytes read and not parsed (a pipelined request), taken out of the stream.
  std::string takeUnread();

  bool is_readable() const override;
  bool is_writable() const override;
  // Up to `size` bytes; 0 at the end of the stream, -1 on an error, the deadline or a stop.
  ssize_t read(char* ptr, size_t size) override;
  // Takes all `size` bytes (sending them once enough are gathered), or -1 on an error, the
  // deadline or a stop.
  ssize_t write(const char* ptr, size_t size) override;
  // Sends what the writes gathered; false on an error, the deadline or a stop.
  bool flush();
  void get_remote_ip_and_port(std::string& ip, int& port) const override;
  void get_local_ip_and_port(std::string& ip, int& port) const override;
  socket_t socket() const override { return sock_; }

 private:
  // Waits until `events` (POLLIN or POLLOUT) are ready; false on the deadline or a stop.
  bool waitFor(short events) const;
  // Sends `size` bytes from `data`; false on an error, the deadline or a stop.
  bool sendAll(const char* data, size_t size);

  int sock_;
  std::function<bool()> stopping_;
  Clock::time_point deadline_ = Clock::now();
  bool hasBufferedInput() const { return begin_ < input_.size(); }

  std::string input_;
  size_t begin_ = 0;
  std::string pending_;
};

}  // namespace qmv::sandbox
