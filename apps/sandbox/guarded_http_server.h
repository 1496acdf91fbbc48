#pragma once
// GuardedHttpServer: cpp-httplib's server with the connection handling the sandbox needs
// to face a LAN. The library's own loop hands each accepted connection to a worker that
// then waits on the peer: a peer that trickles its headers, or sends nothing, holds a
// worker for as long as it keeps sending a byte before each read timeout, and enough of
// them stall every other client. Here a connection waits for its request in the
// ConnectionGate and reaches a worker only once the request has arrived; the gate bounds
// connections and workers per peer and the time a header block may take, and every
// exchange on a worker has a deadline (DeadlineSocketStream). Answers leave without
// Nagle's delay, in one segment where they fit.
#include <httplib.h>

#include <atomic>
#include <string>
#include <string_view>

#include "apps/sandbox/connection_gate.h"
#include "apps/sandbox/sandbox_server.h"
#include "core/common/result.h"

namespace qmv::sandbox {

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
  // returns the bytes of the answer, or invalidArgument when the request could not be read
  // well enough to answer. No socket is involved, so the parsing and routing can be driven
  // by a fuzzer or a test.
  Result<std::string> answerInMemory(std::string_view request);

 private:
  // Hands an accepted socket to the gate (on the accepting thread; never blocks).
  bool process_and_close_socket(socket_t sock) override;
  // Serves the request that has arrived on `connection`, on a worker; true to keep it.
  bool serveArrived(ConnectionGate::Connection& connection);
  bool stopping() const { return svr_sock_ == INVALID_SOCKET; }

  const ServerLimits limits_;
  std::atomic<ConnectionGate*> gate_{nullptr};
};

}  // namespace qmv::sandbox
