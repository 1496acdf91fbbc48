#pragma once
// ConnectionGate: where the sandbox server's connections wait between accept and a worker.
// A connection takes a worker only once its request has arrived (the header block, and a
// small body whole); until then, and between kept-alive requests, it waits in one epoll
// loop where it costs a descriptor and a buffer. So a peer that trickles header bytes, or
// connects and says nothing, holds no thread, and nothing answered waits behind it; the
// accept thread hands a socket over without ever reading from it.
//
// Bounds: connections per peer (peerKey): a peer over its share loses the waiting
// connection that has had the longest to send its request (trickling ones before silent
// ones), so a peer cannot keep more open, and a client behind the same address as a
// hostile one still gets in; connections in all, past which new ones are closed at accept;
// a deadline for a request's header block from its first byte, and for the first byte
// while idle; and workers per peer, so that peers whose requests did arrive (a slow large
// body, a reader that does not read) cannot hold every worker either.
#include <sys/epoll.h>

#include <atomic>
#include <chrono>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "apps/sandbox/sandbox_server.h"
#include "apps/sandbox/worker_pool.h"

namespace qmv::sandbox {

class ConnectionGate {
 public:
  using Clock = std::chrono::steady_clock;

  struct Connection {
    int fd = -1;
    std::string peer;  // peerKey of the remote address
    // Bytes read and not yet served (the next request, and any pipelined after it).
    std::string input;
    // When the request now arriving sent its first byte; when the connection began to wait
    // for one.
    Clock::time_point firstByte;
    Clock::time_point waitingSince;
    int served = 0;
    // How far `input` is known to hold no end of a header block, and, once one is found,
    // how many bytes the request needs before it is served (0 until then).
    size_t scanned = 0;
    size_t needed = 0;
  };

  // Serves the request that has arrived on `connection`, on a worker; true to keep the
  // connection for another request. It may leave unread bytes in `input`.
  using Serve = std::function<bool(Connection&)>;

  ConnectionGate(const ServerLimits& limits, Serve serve);
  ~ConnectionGate();  // shuts down
  ConnectionGate(const ConnectionGate&) = delete;
  ConnectionGate& operator=(const ConnectionGate&) = delete;

  // Takes an accepted socket to wait for its request, or closes it at once when the
  // connections in all are at their limit. Never blocks on the peer.
  void admit(int fd);
  // Closes every waiting connection and waits for the workers. Safe to call more than once.
  void shutdown();

  static constexpr size_t kMaxHeaderBytes = 16 * 1024;
  static constexpr size_t kBufferedBody = 64 * 1024;

 private:
  using Owned = std::unique_ptr<Connection>;

  // Whether the request in `connection.input` has arrived far enough to be served: its
  // header block whole and, when it announces a body of at most kBufferedBody bytes, that
  // body too (larger bodies, chunked ones and ones waiting for "100 Continue" are read by
  // the worker). Also true past kMaxHeaderBytes, for the parser to refuse. Remembers how
  // far it looked, so that a request trickling in is not scanned over and over.
  static bool requestArrived(Connection& connection);

  void loop();
  // The loop's steps; REQUIRE: on the loop thread.
  void watch(Owned connection);
  void readFrom(int fd);
  void dispatch(Owned connection);
  void expire(Clock::time_point now);
  // Adds to and takes from the waiting connections (watched by epoll or about to be).
  void park(Owned connection);
  Owned unpark(int fd);
  // Closes waiting connections of `peer` until it is within its share.
  void makeRoom(const std::string& peer);
  void close(Owned connection);
  void finished(Owned connection, bool keep);

  const ServerLimits limits_;  // with `connections` within the descriptor limit
  const Serve serve_;
  WorkerPool pool_;
  int epoll_ = -1;
  int wake_ = -1;
  std::thread thread_;
  std::atomic<bool> stopping_{false};

  // Shared with the accept thread and the workers.
  std::mutex mutex_;
  std::unordered_map<std::string, int> connectionsOf_;  // peer -> open connections
  int connections_ = 0;
  std::vector<Owned> admitted_;                   // to be watched by the loop
  std::vector<std::pair<Owned, bool>> returned_;  // served, with keep
  std::vector<std::string> crowded_;              // peers admitted past their share
  bool closed_ = false;                           // the loop has ended

  // The loop thread's own.
  std::unordered_map<int, Owned> waiting_;
  std::unordered_map<std::string, std::unordered_set<int>> waitingOf_;  // peer -> its waiting fds
  std::unordered_map<std::string, int> busyOf_;                         // peer -> connections on workers
  std::unordered_map<std::string, std::deque<Owned>> held_;             // arrived, over the peer's workers
};

}  // namespace qmv::sandbox
