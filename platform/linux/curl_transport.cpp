#include "platform/linux/curl_transport.h"

#include "platform/env.h"
#include "platform/linux/curl_cookie_store.h"
#include "platform/linux/detail/curl_driver.h"
#include "platform/linux/detail/curl_transfer.h"
#include "platform/linux/io_watcher.h"

namespace qmv {

CurlTransport::CurlTransport(std::shared_ptr<MainLoop> loop, std::shared_ptr<CookieStore> cookies, int maxConcurrent)
    : loop_(std::move(loop)), cookies_(std::dynamic_pointer_cast<CurlCookieStore>(std::move(cookies))) {
  if (auto* watcher = dynamic_cast<IoWatcher*>(loop_.get())) {
    driver_ = curl_detail::makeLoopDriver(*loop_, *watcher, maxConcurrent);
  } else {
    driver_ = curl_detail::makeThreadDriver(maxConcurrent);
  }
}

CurlTransport::~CurlTransport() = default;

TransferId CurlTransport::send(HttpRequest&& request, Completion completion) {
  const TransferId id = nextId_++;
  driver_->send(std::make_unique<curl_detail::Transfer>(
      id, std::move(request), std::move(completion), loop_ ? loop_ : Env::current().mainLoop,
      cookies_ ? cookies_ : std::dynamic_pointer_cast<CurlCookieStore>(Env::current().cookies)));
  return id;
}

void CurlTransport::cancel(TransferId id) { driver_->cancel(id); }

}  // namespace qmv
