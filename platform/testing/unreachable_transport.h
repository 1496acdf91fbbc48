#pragma once
// HTTP for tests that never mean to reach a server: every transfer fails as if the host
// could not be reached, on the main loop like a real failure.
#include <memory>
#include <utility>

#include "platform/http_transport.h"
#include "platform/main_loop.h"

namespace qmv {

class UnreachableTransport : public HttpTransport {
 public:
  explicit UnreachableTransport(std::shared_ptr<MainLoop> loop) : loop_(std::move(loop)) {}

  TransferId send(HttpRequest&& request, Completion completion) override {
    loop_->post([url = std::move(request.url), completion = std::move(completion)] {
      HttpResponse response;
      response.error = TransportError::connection;
      response.errorMessage = "no server is reachable from this test: " + url;
      if (completion) completion(std::move(response));
    });
    return ++sent_;
  }
  void cancel(TransferId) override {}

 private:
  std::shared_ptr<MainLoop> loop_;
  TransferId sent_ = 0;
};

}  // namespace qmv
