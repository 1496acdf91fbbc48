#pragma once
// SandboxServer: a local HTTP server implementing the application server's contract as the
// client sees it. Every endpoint of the API catalogue is served under /qmv/app/v3/<name>
// with the response envelope {"success", "message", "data"}; sessions, balances, orders and
// the rest live in <home>/sandbox.db. Besides the application API it serves the server-hosted
// pages under /static/, pictures under /sandbox/img/ and /sandbox/portrait/, an object store
// under /oss/ (GET and PUT, files in <home>/oss), map tiles under /tiles/ (map_tiles.h),
// and the payment completion POST /sandbox/pay/complete (prepay_id, result = success|fail|cancel, sign)
// through which the sandbox payment adapters finish a payment the way a vendor application
// would; "sign" proves the adapter holds the home's payment key (payment_key.h).
//
// Embedding: construct, start() (binds and serves on its own thread), stop() or destroy.
//
// With QMV_SANDBOX_RECORD=<dir> in the environment every exchange is saved in <dir>: the
// request as raw HTTP (request-<pid>-<n>.http) and the answer's body (answer-<pid>-<n>.json
// for the application API, answer-<pid>-<n>.body otherwise); the fuzzers' seeds come from there.
#include <chrono>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "core/common/result.h"
#include "core/common/status.h"

namespace qmv::sandbox {

// The SMS code of demo mode: every code request is answered with it (and it is logged).
inline constexpr const char* kDemoSmsCode = "123456";

// How long and how much a peer may take of the server. A connection waits for its request
// without a worker (see ConnectionGate) and takes one only while it is served.
struct ServerLimits {
  // Requests served at once; more arrived ones wait for a worker.
  int workers = 64;
  // How long a connection may sit between requests (or before its first one).
  std::chrono::milliseconds idle{5000};
  // From a request's first byte until its header block (and a small body) is in.
  std::chrono::milliseconds header{5000};
  // From the first byte of a request to the last byte of its answer.
  std::chrono::milliseconds exchange{10000};
  // Requests on one connection before it is closed.
  int requestsPerConnection = 1000;
  // Connections one peer (an IPv4 address, an IPv6 /64) may hold open (past them its
  // longest-waiting one is closed), and how many of its requests are served at once.
  int connectionsPerPeer = 64;
  int workersPerPeer = 16;
  // Connections open in all (also kept within the process's descriptor limit).
  int connections = 4096;
};

struct SandboxOptions {
  std::filesystem::path home;
  int port = 0;
  std::string host = "127.0.0.1";
  // When false, codes are random six-digit texts (still logged to stderr).
  bool demoSmsCode = true;
  // The database in memory only, gone with the server (objects are still files in home):
  // for running many requests with no disk behind each.
  bool memoryStore = false;
  ServerLimits limits{};
  // The clock password back-off is measured by; empty: the steady clock. Tests move it
  // instead of waiting.
  std::function<std::chrono::steady_clock::time_point()> clock{};
  // Directory of the client's shipped databases, whose area table the sandbox serves;
  // empty: where the client itself finds them (HomeFileLocations).
  std::filesystem::path resources{};
  // The store's page cache in KiB; 0 keeps SQLite's default (2 MB). A sandbox embedded in a
  // client shares its process: there a small one keeps the pages that a fresh home's
  // seeding wrote (about 500 kB) and that the area table's answer read from staying
  // resident next to the client's own memory.
  int pageCacheKiB = 0;
};

class SandboxServer {
 public:
  explicit SandboxServer(SandboxOptions options);
  ~SandboxServer();  // stops
  SandboxServer(const SandboxServer&) = delete;
  SandboxServer& operator=(const SandboxServer&) = delete;

  // Creates the home when missing, opens <home>/sandbox.db, seeds the demo world on first
  // use, binds (port 0 = a free port) and serves on a thread. Calling it while running does
  // nothing.
  Status start();
  // Stops serving and waits for the serving thread; safe to call more than once.
  void stop();
  // The bound port (0 before a successful start).
  int port() const;
  // "http://<host>:<port>/qmv/app/v3/"
  std::string baseUrl() const;
  // "http://<host>:<port>"
  std::string rootUrl() const;
  // The key completions must be signed with (sandboxCompletionSignature), for the payment
  // applications standing in for the vendors; "" before the home is opened.
  std::string paymentKey() const;

  // Serves one raw HTTP request without any socket and returns the raw answer, or why the
  // home could not be opened (as start() does on first use, but without binding) or the
  // request not be read.
  Result<std::string> answerRequest(std::string_view request);

  // Remembers the database as it is now (opening the home when needed), and puts it back
  // as remembered, so that each of many requests starts from the same world; after the
  // first return the database lives in memory only. Not while serving.
  Status rememberState();
  Status returnToState();

 private:
  struct Impl;
  std::unique_ptr<Impl> impl_;
};

}  // namespace qmv::sandbox
