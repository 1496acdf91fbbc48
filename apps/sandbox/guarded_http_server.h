#pragma once
// GuardedHttpServer: cpp-httplib's server with the connection handling the sandbox needs
// to face a LAN. The library's own loop lets a peer hold a worker as long as it sends a byte
// before each read timeout, keeps idle connections for their whole keep-alive time however
// many others wait, and answers with headers and body in two segments, so that a kept-alive
// client's delayed acknowledgement stalls every later answer by ~40 ms under Nagle. Here:
// Nagle is off, every exchange has a deadline (DeadlineSocketStream), workers come from a
// growing WorkerPool, and connections idle between requests give way to waiting ones.
#include <httplib.h>

#include <atomic>
#include <string>
#include <string_view>

#include "apps/sandbox/sandbox_server.h"
#include "apps/sandbox/worker_pool.h"

namespace qmv::sandbox {

class DeadlineSocketStream;

class GuardedHttpServer : public httplib::Server {
 public:
  explicit GuardedHttpServer(ServerLimits limits);

  // Binds `host`:`port` (0: a free port) with a listen queue long enough for a burst of
  // clients; returns the bound port, or 0 when the address cannot be used.
  int bindTo(const std::string& host, int port);

  // Called by a handler: the connection closes once `res` is sent (and `res` says so), for
  // an answer that leaves the request's body unread. REQUIRES: on the handler's thread.
  static void closeAfterAnswer(httplib::Response& res);

  // Serves the one request in `request` as if it arrived on a connection of its own and
  // returns the bytes of the answer (empty when the request could not be read). No socket
  // is involved, so the parsing and routing can be driven by a fuzzer or a test.
  std::string answerInMemory(std::string_view request);

 private:
  bool process_and_close_socket(socket_t sock) override;
  // Waits for the next request on a connection: true when its first byte is there; false
  // when the peer leaves, the idle time ends, a connection waits for a worker, or the
  // server stops.
  bool awaitRequest(int sock, const DeadlineSocketStream& stream) const;
  bool stopping() const { return svr_sock_ == INVALID_SOCKET; }

  const ServerLimits limits_;
  std::atomic<WorkerPool*> pool_{nullptr};
};

}  // namespace qmv::sandbox
