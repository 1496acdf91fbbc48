#pragma once
// The HTTP port over libcurl: one worker thread drives a curl multi handle with at most
// `maxConcurrent` transfers at once (the rest wait in order), enforces timeouts, cancels
// running transfers for real, resumes downloads into partial files, and keeps cookies in
// the shared cookie store. Completions and progress are posted to the main loop given at
// construction, else to the one installed in Env when send() is called. A transfer sent
// with a main loop starts once that loop runs its next task, so that the sends of one
// turn go out together.
#include <memory>

#include "platform/http_transport.h"

namespace qmv {

class CookieStore;
class MainLoop;

class CurlTransport : public HttpTransport {
 public:
  static constexpr int kMaxConcurrentTransfers = 4;

  // `loop` or `cookies` null: taken from Env::current() when a transfer is sent.
  explicit CurlTransport(std::shared_ptr<MainLoop> loop = nullptr, std::shared_ptr<CookieStore> cookies = nullptr,
                         int maxConcurrent = kMaxConcurrentTransfers);
  // Cancels every transfer (their completions are dropped) and joins the worker.
  ~CurlTransport() override;
  CurlTransport(const CurlTransport&) = delete;
  CurlTransport& operator=(const CurlTransport&) = delete;

  TransferId send(HttpRequest request, Completion completion) override;
  void cancel(TransferId id) override;

 private:
  class Worker;
  std::unique_ptr<Worker> worker_;
};

}  // namespace qmv
