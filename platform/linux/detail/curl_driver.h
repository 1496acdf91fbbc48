#pragma once
// What moves the transfers of the libcurl adapter: a worker thread polling its own multi
// handle, or the reactor of an Asio main loop watching curl's sockets. The second runs
// transfers on the loop's thread with no hand-off between threads, which is what makes
// small requests cheap; the first serves loops that cannot watch descriptors.
#include <memory>

#include "platform/http_transport.h"

namespace asio {
class io_context;
}

namespace qmv::curl_detail {

struct Transfer;

class CurlDriver {
 public:
  virtual ~CurlDriver() = default;
  // Thread-safe. Takes the transfer; its completion runs exactly once unless the driver
  // is destroyed first.
  virtual void send(std::unique_ptr<Transfer> transfer) = 0;
  // Thread-safe. Completes a queued or running transfer as cancelled.
  virtual void cancel(TransferId id) = 0;
};

std::unique_ptr<CurlDriver> makeThreadDriver(int maxConcurrent);
// REQUIRES: destroyed on the loop's thread, or while the loop is not running.
std::unique_ptr<CurlDriver> makeLoopDriver(asio::io_context& io, int maxConcurrent);

}  // namespace qmv::curl_detail
