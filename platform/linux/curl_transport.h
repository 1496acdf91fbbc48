#pragma once
// The HTTP port over libcurl: a curl multi handle with at most `maxConcurrent` transfers
// at once (the rest wait in order), timeouts, real cancellation of running transfers,
// downloads resumed into partial files, and cookies kept and sent by the shared cookie
// store's engine (a CurlCookieStore; a store of another kind, a test's plain list, leaves
// transfers without cookies). Proxies are curl's, from the environment, if it named one
// when the transport was made.
//
// Given a loop that is also an IoWatcher (the Asio and GLib loops), the loop watches
// curl's sockets and transfers run on the loop's thread; given any other loop (or none),
// a worker thread of its own drives them. Either way completions and progress run on the
// main loop given at construction, else on the one installed in Env when send() is
// called (the worker posts them; a watching loop runs a completion as soon as curl has
// let go of its transfer), and a transfer sent with a main loop starts once that loop
// runs its next task, so that the sends of one turn go out together.
#include <atomic>
#include <memory>

#include "platform/http_transport.h"

namespace qmv {

class CookieStore;
class CurlCookieStore;
class MainLoop;

namespace curl_detail {
class CurlDriver;
}

class CurlTransport : public HttpTransport {
 public:
  static constexpr int kMaxConcurrentTransfers = 4;

  // `loop` or `cookies` null: taken from Env::current() when a transfer is sent.
  explicit CurlTransport(std::shared_ptr<MainLoop> loop = nullptr, std::shared_ptr<CookieStore> cookies = nullptr,
                         int maxConcurrent = kMaxConcurrentTransfers);
  // Cancels every transfer (their completions are dropped).
  // REQUIRES: with a watching loop, called on its thread or while it is not running.
  ~CurlTransport() override;
  CurlTransport(const CurlTransport&) = delete;
  CurlTransport& operator=(const CurlTransport&) = delete;

  TransferId send(HttpRequest&& request, Completion completion) override;
  void cancel(TransferId id) override;

 private:
  std::shared_ptr<MainLoop> loop_;  // outlives the driver, which may use its reactor
  std::shared_ptr<CurlCookieStore> cookies_;
  std::atomic<TransferId> nextId_{1};
  std::unique_ptr<curl_detail::CurlDriver> driver_;
};

}  // namespace qmv
