#pragma once
// What moves the transfers of the libcurl adapter: a worker thread polling its own multi
// handle, or a main loop that watches curl's sockets itself (any loop that is also an
// IoWatcher). The second runs transfers on the loop's thread with no hand-off between
// threads, which is what makes small requests cheap; the first serves loops that cannot
// watch descriptors.
#include <memory>

#include "platform/http_transport.h"

namespace qmv {
class IoWatcher;
class MainLoop;
}  // namespace qmv

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
// `watcher` is `loop` seen as an IoWatcher; both outlive the driver.
std::unique_ptr<CurlDriver> makeLoopDriver(MainLoop& loop, IoWatcher& watcher, int maxConcurrent);

}  // namespace qmv::curl_detail
