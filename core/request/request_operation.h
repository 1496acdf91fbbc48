#pragma once
// One HTTP transfer carrying a request: the response once it ended, and its identity
// (hash) under which the agent records the request. Used on the interface thread only.
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "core/common/json.h"
#include "platform/http_transport.h"

namespace qmv {

class RequestOperation : public std::enable_shared_from_this<RequestOperation> {
 public:
  using Completion = std::function<void(const std::shared_ptr<RequestOperation>&)>;

  RequestOperation();

  // Whether the operation has ended and nothing but `owner` holds it, so that renew() may
  // ready it for the next transfer in place of a new one.
  static bool renewable(const std::shared_ptr<RequestOperation>& owner) {
    return owner && owner.use_count() == 1 && !owner->executing_;
  }
  // As if new: a hash of its own, no response, not cancelled. REQUIRES: renewable.
  void renew();

  // Unique for the life of the process.
  std::uint64_t hash() const { return hash_; }
  // Empty (status 0) until the transfer ends.
  const HttpResponse& response() const { return response_; }
  // The response body decoded as JSON; null when it is not JSON. Decoded once.
  const Json& responseObject() const;
  // Hands the body over, leaving the response without one (responseObject() reads null
  // from then on): a large answer read on another thread is then held once, by its reader,
  // and freed as soon as it has been read.
  std::string takeBody();

  bool isExecuting() const { return executing_; }
  bool isCancelled() const { return cancelled_; }

  // Sends `request` through `transport`. `completion` runs on the main loop when the
  // transfer ends, with success or error alike; it never runs for a cancelled operation.
  void start(std::shared_ptr<HttpTransport> transport, HttpRequest&& request, Completion completion);
  // Stops the transfer. No effect once the operation has ended.
  void cancel();

 private:
  std::uint64_t hash_;
  HttpResponse response_;
  // The last transfer's response once renewed: its buffers go with the next request for
  // the transport to fill again.
  HttpResponse spare_;
  mutable std::optional<Json> responseObject_;
  std::shared_ptr<HttpTransport> transport_;
  // Kept here rather than in the transport's callback, which then holds only the
  // operation whatever the completion captures, and so needs no allocation.
  Completion completion_;
  TransferId transferId_ = 0;
  bool executing_ = false;
  bool cancelled_ = false;
};

}  // namespace qmv
